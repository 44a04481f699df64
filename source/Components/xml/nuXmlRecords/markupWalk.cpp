#include "nuXmlRecords/markupWalk.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>

#include "common/utf8.h"
#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "host/runtime/streamMessages.h"
#include "nuXmlParser/conforming/sourceText.h"
#include "nuXmlParser/conforming/xmlFault.h"
#include "nuXmlRecords/recordMessages.h"
#include "nuXmlRecords/tagBytes.h"

namespace nu {

namespace {

constexpr std::size_t blockSize = std::size_t{256} * 1024;
/// What block operations look at behind the text.
constexpr std::size_t reach = 128;
/// A tag or a document type that is longer cannot be gone over.
constexpr std::size_t longestMarkup = std::size_t{16} * 1024 * 1024;

/// Behind the ">" that ends the document type at `less`; null where it is not there. A ">" counts
/// outside of quotes, brackets, comments and instructions.
const char* findDocumentTypeEnd(const char* less, const char* end) noexcept {
    int brackets = 0;
    for (const char* place = less + 1; place < end; ++place) {
        const std::string_view rest(place, end);
        const auto skipBehind = [&](std::size_t from, std::string_view mark) {
            const std::size_t found = rest.find(mark, from);
            place = found == rest.npos ? end : place + found + mark.size() - 1;
        };
        if (*place == '"' || *place == '\'') {
            skipBehind(1, rest.substr(0, 1));
        } else if (rest.starts_with("<!--")) {
            skipBehind(4, "-->");
        } else if (rest.starts_with("<?")) {
            skipBehind(2, "?>");
        } else if (*place == '[' || *place == ']') {
            brackets += *place == '[' ? 1 : -1;
        } else if (*place == '>' && brackets == 0) {
            return place + 1;
        }
    }
    return nullptr;
}

} // namespace

MarkupWalk::MarkupWalk(host::TStream& file) : file_(file), window_(blockSize + reach) {
    // 1. What the bytes are.
    file_.SetPosition(0);
    SourceText source(ByteSource(file_, blockSize));
    source.open({});
    if (source.isTranscoded()) {
        throw host::Exception(
            host::formatMessage(messages::partEncoding, {NuFromUtf8(source.encodingName())}));
    }
    // 2. The first of them.
    file_.SetPosition(source.hasMark() ? 3 : 0);
    base_ = countedTo_ = source.hasMark() ? 3 : 0;
    place_ = end_ = begin();
    readMore(place_);
    const std::string_view text(begin(), end_);
    if (text.starts_with("<?xml ")) {
        prolog_ = text.substr(0, std::min(text.find("?>") + 2, text.size()));
    }
}

/// Shows more; what stands before `keep` goes, and everything moves. False at the end.
bool MarkupWalk::readMore(const char*& keep) {
    if (hasEnded_) {
        return false;
    }
    // 1. What is still wanted of what goes.
    const std::int64_t keptFrom = base_ + (keep - begin());
    keepTags(keptFrom);
    const char* const counted = begin() + (countedTo_ - base_);
    if (keep > counted) {
        lines_.moveOver({counted, keep});
        countedTo_ = keptFrom;
    }
    // 2. Room for a block behind what stays; a place that was counted ahead stays as well.
    const char* const from = std::min(keep, begin() + (countedTo_ - base_));
    const auto length = static_cast<std::size_t>(end_ - from);
    const auto offset = static_cast<std::size_t>(keep - from);
    if (length > longestMarkup) {
        fail(messages::tagTooLong, from);
    }
    std::memmove(window_.data(), from, length);
    base_ += from - begin();
    if (window_.size() < length + blockSize + reach) {
        window_.resize(2 * length + blockSize + reach);
    }
    // 3. The block.
    const std::size_t got = file_.Read(window_.data() + length, blockSize);
    if (got > blockSize) {
        throw host::EReadError(host::messages::readError);
    }
    hasEnded_ = got == 0;
    keep = begin() + offset;
    end_ = begin() + length + got;
    std::fill_n(window_.data() + length + got, reach, '\0');
    return !hasEnded_;
}

bool MarkupWalk::walkTo(std::int64_t position) {
    constexpr std::ptrdiff_t longestStart = 9; // <![CDATA[
    for (;;) {
        place_ = findLess(place_, end_);
        if (end_ - place_ < longestStart && readMore(place_)) {
            continue;
        }
        if (place_ == end_) {
            if (depth() > 0) {
                fail(messages::endsInsideElement, place_);
            }
            return false;
        }
        switch (place_[1]) {
        case '/':
            passEndTag(place_);
            break;
        case '!':
        case '?':
            passSpecial(place_);
            break;
        default:
            if (this->position() >= position) {
                completeTag(place_);
                return true;
            }
            passTag(place_);
        }
    }
}

void MarkupWalk::passEndTag(const char* less) {
    if (depth() == 0) {
        fail(messages::endTagAlone, less);
    }
    const std::string_view name = elements_.innermost();
    while (static_cast<std::size_t>(end_ - less) < name.size() + 3 && readMore(less)) {
    }
    const char* const behind = less + 2 + name.size();
    if (std::memcmp(less + 2, name.data(), name.size()) != 0 ||
        (*behind != '>' && !isTagSpace(*behind))) {
        fail(messages::endTagDiffers, less);
    }
    elements_.close();
    tagPositions_.pop_back();
    if (openTags_.size() > depth()) {
        openTags_.pop_back();
        unchanged_ = std::min(unchanged_, openTags_.size());
    }
    place_ = behind;
}

/// The ">" of a start tag, which is then there as a whole.
const char* MarkupWalk::completeTag(const char*& less) {
    const char* greater = findTagEnd(less + 1, end_);
    while (greater == nullptr) {
        if (!readMore(less)) {
            fail(messages::tagStaysOpen, less);
        }
        greater = findTagEnd(less + 1, end_);
    }
    return greater;
}

void MarkupWalk::passTag(const char* less) {
    const char* const greater = completeTag(less);
    const std::string_view name(less + 1, findNameEnd(less + 1));
    if (name.empty()) {
        fail(messages::tagWithoutName, less);
    }
    if (greater[-1] != '/') {
        tagPositions_.push_back(base_ + (less - begin()));
        elements_.open(name, tagPositions_.back());
    }
    place_ = greater + 1;
}

void MarkupWalk::passSpecial(const char* less) {
    const std::string_view rest(less, end_);
    if (rest.starts_with("<!--")) {
        passBehind(less + 4, "-->");
    } else if (rest.starts_with("<![CDATA[")) {
        passBehind(less + 9, "]]>");
    } else if (less[1] == '?') {
        passBehind(less + 2, "?>");
    } else if (depth() == 0 && rest.starts_with("<!DOCTYPE")) {
        passDocumentType(less);
    } else {
        fail(messages::cannotFollow, less);
    }
}

/// Goes behind the mark that ends the markup that it stands at, of which `place` is the content.
void MarkupWalk::passBehind(const char* place, std::string_view mark) {
    std::optional<SourcePlace> beginning; // which may be gone when there is no more
    for (;;) {
        const std::string_view rest(place, end_);
        const std::size_t found = rest.find(mark);
        if (found != rest.npos) {
            place_ = place + found + mark.size();
            return;
        }
        // The beginning of the mark may stand at the end.
        place += rest.size() - std::min(rest.size(), mark.size() - 1);
        if (!beginning) {
            beginning = this->place();
        }
        if (!readMore(place)) {
            fail(messages::markupStaysOpen, *beginning);
        }
    }
}

void MarkupWalk::passDocumentType(const char* less) {
    const char* behind = findDocumentTypeEnd(less, end_);
    while (behind == nullptr) {
        if (!readMore(less)) {
            fail(messages::typeStaysOpen, less);
        }
        behind = findDocumentTypeEnd(less, end_);
    }
    prolog_.append(less, behind);
    place_ = behind;
}

std::string_view MarkupWalk::name() const noexcept { return {place_ + 1, findNameEnd(place_ + 1)}; }

SourcePlace MarkupWalk::place() {
    lines_.moveOver({begin() + (countedTo_ - base_), place_});
    countedTo_ = position();
    return lines_.place();
}

/// Copies the start tags of open elements that begin before a position.
void MarkupWalk::keepTags(std::int64_t position) {
    while (openTags_.size() < depth() && tagPositions_[openTags_.size()] < position) {
        const char* const less = begin() + (tagPositions_[openTags_.size()] - base_);
        openTags_.push_back(contextTag(less, findTagEnd(less + 1, end_)));
    }
}

const std::vector<std::string>& MarkupWalk::openTags() {
    keepTags(position());
    return openTags_;
}

std::size_t MarkupWalk::takeUnchanged() noexcept {
    return std::exchange(unchanged_, openTags_.size());
}

void MarkupWalk::fail(std::u16string_view what, const char* at) {
    place_ = at;
    fail(what, place());
}

void MarkupWalk::fail(std::u16string_view what, const SourcePlace& where) {
    throw ENuXmlFault(host::formatMessage(messages::indexMarkup, {what}), where.line, where.column);
}

} // namespace nu
