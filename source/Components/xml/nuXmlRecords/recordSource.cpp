#include "nuXmlRecords/recordSource.h"

#include <utility>

#include "common/utf8.h"
#include "host/runtime/format.h"
#include "nuXmlParser/conforming/textStack.h"
#include "nuXmlRecords/recordMessages.h"

namespace nu {

namespace {

constexpr std::int64_t markLength = 3;

/// What the stage is to write: XML for anybody, without a care for lines.
TNuConformingOptions optionsFor(TNuConformingOptions options) {
    options.keepLines = false;
    options.onFault = cfStop;
    return options;
}

/// The declarations in scope around the element of a start tag, as they would stand in one, but for
/// those which the tag replaces.
std::string declarationsAround(const ElementStart& start) {
    std::string text;
    const auto& all = start.bindings.all();
    for (auto binding = all.begin(); binding != all.end() && binding->depth < start.depth;
         ++binding) {
        // An empty one only takes another one back.
        if (start.bindings.find(binding->prefix) == &binding->uri && !binding->uri.empty()) {
            text.append(binding->prefix.empty() ? " xmlns" : " xmlns:").append(binding->prefix);
            text.append("=\"").append(binding->uri).append("\"");
        }
    }
    return text;
}

/// What the stage knows around a start tag: elements, and which of them declares what.
RecordBorder borderAt(const ElementStart& start, std::int64_t position) {
    RecordBorder border{position, start.around.path()};
    for (const NamespaceBindings::Binding& binding : start.bindings.all()) {
        if (binding.depth < start.depth) {
            border.around.append(" ").append(std::to_string(binding.depth)).append(" ");
            border.around.append(binding.prefix).append("=").append(binding.uri);
        }
    }
    return border;
}

} // namespace

RecordSource::RecordSource(host::TStream& stream, RecordPath path,
                           const TNuConformingOptions& options, std::size_t sizeLimit)
    : path_(std::move(path)), sizeLimit_(sizeLimit),
      pass_(std::make_unique<ConformingPass>(stream, optionsFor(options), ReaderForm::Told)) {}

RecordSource::RecordSource(host::TStream& file, RecordPath path,
                           const TNuConformingOptions& options, std::size_t sizeLimit,
                           RecordPart part)
    : path_(std::move(path)), sizeLimit_(sizeLimit),
      part_(std::make_unique<RecordPart>(std::move(part))) {
    if (part_->isPromised) {
        finder_.emplace(path_.recordName());
    }
    partStream_ = std::make_unique<PartStream>(file, part_->start, finder_ ? &*finder_ : nullptr);
    pass_ = std::make_unique<ConformingPass>(*partStream_, optionsFor(options), ReaderForm::Told);
    const std::int64_t firstLine = part_->start.line == 0 ? 1 : part_->start.line;
    pass_->countLinesFrom(firstLine - countBreaks(part_->start.head));
}

RecordSource::~RecordSource() = default;

bool RecordSource::next() {
    if (failure_) {
        std::rethrow_exception(failure_);
    }
    if (hasEnded_) {
        return false;
    }
    try {
        return readNext();
    } catch (...) {
        failure_ = std::current_exception();
        xml_ = {};
        throw;
    }
}

bool RecordSource::readNext() {
    try {
        const std::optional<std::string_view> xml = pass_->readElement(*this, sizeLimit_);
        hasEnded_ = !xml;
        xml_ = xml.value_or(std::string_view());
        if (hasEnded_) {
            keepPromiseAtEnd();
        }
        return !hasEnded_;
    } catch (const OutputLimit&) {
        failAt(place_.position, host::formatMessage(messages::recordTooLong, {sizeLimit_}));
    } catch (const ENuXmlFault& fault) {
        rethrowPlaced(fault);
    }
}

/// The stage counted from the line where the part begins, but its columns from the first.
void RecordSource::rethrowPlaced(const ENuXmlFault& fault) const {
    if (!isPart() || isFaultPlaced_) {
        throw;
    }
    const RecordStart& start = part_->start;
    if (start.line == 0) {
        throw ENuXmlFault(
            host::formatMessage(messages::countedFrom, {fault.Message(), start.position}),
            fault.Line(), fault.Column());
    }
    const bool isInFirst = fault.Line() == start.line;
    throw ENuXmlFault(fault.Message(), fault.Line(),
                      fault.Column() + (isInFirst ? start.column - 1 : 0));
}

bool RecordSource::seeks(std::string_view name, std::size_t depth, std::int64_t offset) {
    const bool isRecord = path_.matches(name, depth);
    // Behind the share nothing is looked at, unless the promise has to be kept up to a record.
    return isRecord ||
           (isPart() && !part_->isPromised && positionOf(offset, false) >= part_->share.behind);
}

ElementUse RecordSource::use(const ElementStart& start) {
    // 1. Whether it belongs to what is read.
    const std::int64_t position = positionOf(start.offset, start.source.hasMark());
    if (isPart() && position >= part_->start.position) {
        noteBorder(start, position);
    }
    if (stop_.isThere()) {
        return ElementUse::Stop;
    }
    if (isPart() && (position < part_->share.first || position < part_->start.position)) {
        return ElementUse::Pass;
    }
    // 2. Its place and what it needs from around it.
    ++place_.number;
    place_.position = position;
    countLine(start);
    declare(start);
    return ElementUse::Take;
}

/// Keeps what shows whether parts fit together.
void RecordSource::noteBorder(const ElementStart& start, std::int64_t position) {
    const bool isBehind = position >= part_->share.behind;
    if (isBehind) {
        stop_ = borderAt(start, position);
    }
    // Behind the share it may be no record, unless nothing else is sought.
    if (!first_.isThere() && (!isBehind || part_->isPromised)) {
        first_ = borderAt(start, position);
    }
    if (part_->isPromised) {
        keepPromise(position);
    }
}

std::int64_t RecordSource::positionOf(std::int64_t offset, bool hasMark) const noexcept {
    if (!isPart()) {
        return offset + (hasMark ? markLength : 0);
    }
    const RecordStart& start = part_->start;
    const bool isAtStart = start.position == 0 && start.head.empty();
    return offset - static_cast<std::int64_t>(start.head.size()) + start.position +
           (isAtStart && hasMark ? markLength : 0);
}

void RecordSource::countLine(const ElementStart& start) {
    const SourcePlace place = start.source.countTo(start.source.placeAt(start.offset));
    place_.line = place.line;
    place_.column = place.column;
    if (isPart() && place.line == part_->start.line) {
        place_.column += part_->start.column - 1;
    }
    if (isPart() && part_->start.line == 0) {
        place_.line = place_.column = 0;
    }
}

void RecordSource::declare(const ElementStart& start) {
    const auto& all = start.bindings.all();
    const bool hasOwn = !all.empty() && all.back().depth == start.depth;
    // Nothing changes from record to record where they declare nothing themselves.
    if (hasOwn || hasOwnDeclarations_ || declarationsVersion_ != start.bindings.version()) {
        declarations_ = declarationsAround(start);
        declarationsVersion_ = start.bindings.version();
        hasOwnDeclarations_ = hasOwn;
    }
}

/// Each part begins at the first thing that reads as a record in its share, with the surroundings
/// of the first record of the document. The part before stops there: so if that is a record, in
/// the same surroundings, and each part finds nothing else that reads like one, then all of them
/// together read what one pass would.
void RecordSource::keepPromise(std::int64_t position) {
    if (finder_->found().empty() || finder_->found().front() != position) {
        failAt(finder_->found().empty() ? position : finder_->found().front(),
               host::formatMessage(messages::promiseBroken, {NuFromUtf8(finder_->name())}));
    }
    finder_->found().pop_front();
    if (stop_.isThere() && stop_.around != first_.around) {
        failAt(position, messages::contextDiffers);
    }
}

void RecordSource::keepPromiseAtEnd() {
    if (finder_ && !stop_.isThere() && !finder_->found().empty()) {
        failAt(finder_->found().front(),
               host::formatMessage(messages::promiseBroken, {NuFromUtf8(finder_->name())}));
    }
}

void RecordSource::failAt(std::int64_t position, std::u16string_view message) {
    // Only the place of a record is known by line; any other is told in bytes.
    isFaultPlaced_ = true;
    if (position == place_.position && place_.line > 0) {
        throw ENuXmlFault(message, place_.line, place_.column);
    }
    throw ENuXmlFault(host::formatMessage(messages::atByte, {message, position}), 0, 0);
}

} // namespace nu
