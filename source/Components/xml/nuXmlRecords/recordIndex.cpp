#include "nuXmlRecords/recordIndex.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "nuXmlRecords/indexText.h"
#include "nuXmlRecords/markupWalk.h"
#include "nuXmlRecords/recordHead.h"
#include "nuXmlRecords/recordMessages.h"

namespace nu {

namespace {

constexpr std::int64_t endLength = 64 * 1024;
/// More places than that serve nobody.
constexpr std::int64_t mostPlaces = 65536;

std::uint64_t digestOf(host::TStream& file, std::int64_t position) {
    std::array<char, 16 * 1024> block;
    std::uint64_t digest = digestStart;
    file.SetPosition(position);
    for (std::int64_t left = endLength; left > 0;) {
        const std::size_t wanted = std::min(block.size(), static_cast<std::size_t>(left));
        const std::size_t got = file.Read(block.data(), wanted);
        if (got == 0 || got > wanted) {
            break;
        }
        digest = continueDigest(digest, {block.data(), got});
        left -= static_cast<std::int64_t>(got);
    }
    return digest;
}

} // namespace

RecordShare shareOf(std::int64_t size, std::int64_t number, std::int64_t count) noexcept {
    __extension__ using Wide = __int128;
    const auto border = [size, count](std::int64_t at) {
        return static_cast<std::int64_t>(static_cast<Wide>(size) * at / count);
    };
    return {border(number), border(number + 1)};
}

FileState FileState::of(host::TStream& file, std::int64_t modified) {
    FileState state{file.GetSize(), modified, 0, 0};
    state.startDigest = digestOf(file, 0);
    state.endDigest = digestOf(file, std::max<std::int64_t>(state.size - endLength, 0));
    file.SetPosition(0);
    return state;
}

RecordIndexer::RecordIndexer(host::TStream& file, std::int64_t spacing)
    : walk_(std::make_unique<MarkupWalk>(file)), spacing_(std::max<std::int64_t>(spacing, 1)),
      next_(spacing_) {}

RecordIndexer::~RecordIndexer() = default;

bool RecordIndexer::Next() { return NextFrom(next_); }

bool RecordIndexer::NextFrom(std::int64_t position) {
    if (!walk_->walkTo(position)) {
        return false;
    }
    next_ = walk_->position() + spacing_;
    return true;
}

RecordStart RecordIndexer::Start() {
    const SourcePlace place = walk_->place();
    return {walk_->position(), place.line, place.column, headAt(*walk_)};
}

RecordIndex RecordIndex::Build(host::TStream& file, std::int64_t modified, std::int64_t spacing,
                               const std::function<void(std::int64_t)>& onProgress) {
    RecordIndex index;
    index.state_ = FileState::of(file, modified);
    RecordIndexer indexer(
        file, spacing > 0 ? spacing : std::max(standardSpacing, index.state_.size / mostPlaces));
    MarkupWalk& walk = indexer.walk();
    while (indexer.Next()) {
        const std::vector<std::string>& tags = walk.openTags();
        const std::size_t kept = walk.takeUnchanged();
        const SourcePlace place = walk.place();
        index.places_.push_back({walk.position(),
                                 place.line,
                                 place.column,
                                 kept,
                                 {tags.begin() + static_cast<std::ptrdiff_t>(kept), tags.end()}});
        if (onProgress) {
            onProgress(walk.position());
        }
    }
    index.prolog_ = walk.prolog();
    // A file that grew meanwhile is none of which anything is known.
    index.Check(file);
    return index;
}

void RecordIndex::Check(host::TStream& file) const {
    const FileState state = FileState::of(file, state_.modified);
    if (state != state_) {
        throw host::Exception(
            host::formatMessage(messages::indexOfAnother,
                                {state.size != state_.size             ? u"its size differs"
                                 : state.endDigest == state_.endDigest ? u"its start differs"
                                                                       : u"its end differs"}));
    }
}

/// The share begins where the first place at or behind its border is.
RecordShare RecordIndex::Share(std::int64_t number, std::int64_t count) const noexcept {
    const RecordShare share = shareOf(state_.size, number, count);
    return {beginOf(share.first), beginOf(share.behind)};
}

std::int64_t RecordIndex::beginOf(std::int64_t position) const noexcept {
    const auto found =
        std::lower_bound(places_.begin(), places_.end(), position,
                         [](const Place& place, std::int64_t at) { return place.position < at; });
    return position <= 0 ? 0 : found == places_.end() ? state_.size : found->position;
}

RecordStart RecordIndex::StartFor(std::int64_t position) const {
    std::vector<std::string_view> open;
    const Place* last = nullptr;
    for (const Place& place : places_) {
        if (place.position > position) {
            break;
        }
        open.resize(place.kept);
        open.insert(open.end(), place.tags.begin(), place.tags.end());
        last = &place;
    }
    if (last == nullptr) {
        return {};
    }
    RecordStart start{last->position, last->line, last->column, prolog_};
    for (const std::string_view tag : open) {
        start.head += tag;
    }
    start.head += '\n';
    return start;
}

void RecordIndex::Save(host::TStream& stream) const {
    IndexTextWriter text;
    text.number(state_.size).number(static_cast<std::uint64_t>(state_.modified));
    text.number(state_.startDigest);
    text.number(state_.endDigest).text(prolog_).number(places_.size()).endLine();
    for (const Place& place : places_) {
        text.number(place.position).number(place.line).number(place.column);
        text.number(place.kept).number(place.tags.size());
        for (const std::string& tag : place.tags) {
            text.text(tag);
        }
        text.endLine();
    }
    const std::string bytes = text.finish();
    stream.WriteBuffer(bytes.data(), bytes.size());
}

RecordIndex RecordIndex::Load(host::TStream& stream) {
    std::string bytes;
    std::array<char, 64 * 1024> block;
    while (const std::size_t got = stream.Read(block.data(), block.size())) {
        bytes.append(block.data(), std::min(got, block.size()));
    }
    IndexTextReader text(bytes);
    RecordIndex index;
    index.state_.size = text.number();
    index.state_.modified = static_cast<std::int64_t>(text.unsignedNumber());
    index.state_.startDigest = text.unsignedNumber();
    index.state_.endDigest = text.unsignedNumber();
    index.prolog_ = text.text();
    const std::int64_t count = text.number();
    std::size_t depth = 0;
    for (std::int64_t number = 0; number < count; ++number) {
        Place place{text.number(),
                    text.number(),
                    text.number(),
                    static_cast<std::size_t>(text.number()),
                    {}};
        for (std::int64_t left = text.number(); left > 0; --left) {
            place.tags.emplace_back(text.text());
        }
        const std::int64_t before = index.places_.empty() ? 0 : index.places_.back().position;
        if (place.kept > depth || place.position <= before) {
            throw host::Exception(messages::noIndex);
        }
        depth = place.kept + place.tags.size();
        index.places_.push_back(std::move(place));
    }
    return index;
}

} // namespace nu
