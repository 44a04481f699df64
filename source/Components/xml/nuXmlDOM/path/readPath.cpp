#include <algorithm>
#include <deque>
#include <limits>

#include "common/caseFolding.h"
#include "host/runtime/whiteSpace.h"
#include "nuXmlDOM/path/pathComplaints.h"
#include "nuXmlDOM/path/pathProgram.h"

namespace nu {

namespace {

/// Brackets in brackets up to here are read. Reading and selecting go into each, so an endless row
/// of them would end the stack.
constexpr std::size_t deepestBrackets = 250;

constexpr std::u16string_view separator = u" | ";
constexpr std::u16string_view protectedSlash = u"&slash;";
constexpr std::u16string_view operatorUnits = u"<=>";

/// The slashes of a path that divide its steps: those that do not stand in double quotes.
///
/// Deliberate: as many positions are looked at as the path has, and a slash in quotes takes seven
/// of them, so behind several of these the end of a path may not be looked at. Single quotes
/// protect nothing.
class DividingSlashes {
public:
    explicit DividingSlashes(std::u16string_view path) : path_(path) {
        constexpr std::size_t protectedCost = 7;
        bool isQuoted = false;
        std::size_t positions = path.find(cNuQuote) == path.npos ? 0 : path.size();
        for (std::size_t place = 0; place < path.size() && positions > 0; ++place) {
            isQuoted = isQuoted != (path[place] == cNuQuote);
            const bool isProtected = isQuoted && path[place] == cNuSlash;
            if (isProtected) {
                protected_.push_back(place);
            }
            positions -= std::min(positions, isProtected ? protectedCost : std::size_t{1});
        }
    }

    /// Whether one stands at `place`.
    [[nodiscard]] bool isAt(std::size_t place) const noexcept {
        return place < path_.size() && path_[place] == cNuSlash &&
               !std::binary_search(protected_.begin(), protected_.end(), place);
    }
    /// The first one from `place` on; `end` where there is none before that.
    [[nodiscard]] std::size_t findFrom(std::size_t place, std::size_t end) const noexcept {
        const std::u16string_view path = path_.substr(0, end);
        while (place < end && !isAt(place)) {
            place = std::min(path.find(cNuSlash, place + 1), end);
        }
        return place;
    }

private:
    std::u16string_view path_;
    std::vector<std::size_t> protected_;
};

PathOperator readOperator(std::u16string_view text) noexcept {
    return text == u"="    ? PathOperator::Equal
           : text == u">"  ? PathOperator::Greater
           : text == u">=" ? PathOperator::GreaterOrEqual
           : text == u"<"  ? PathOperator::Less
           : text == u"<=" ? PathOperator::LessOrEqual
                           : PathOperator::None;
}

} // namespace

void PathLiteral::dropQuotes() {
    const auto isQuote = [](NuXmlChar unit) { return unit == cNuApos || unit == cNuQuote; };
    text.erase(std::remove_if(text.begin(), text.end(), isQuote), text.end());
    folded = NuFolded(text);
}

namespace {

PathLiteral readLiteral(std::u16string_view text) {
    PathLiteral literal;
    literal.text = host::trimmed(text);
    literal.isText = literal.text.find_first_of(u"'\"") != NuXmlString::npos;
    if (literal.isText) {
        literal.dropQuotes();
    } else {
        literal.integer = readPathInteger(literal.text);
    }
    return literal;
}

/// Reads a path, and the paths in its brackets.
class PathReader {
public:
    /// \param restored where texts are kept that are not as they stood in the path
    PathReader(TNuDOMSelectOptions options, std::deque<NuXmlString>& restored)
        : options_(options), restored_(restored) {}

    void read(std::u16string_view path, PathProgram& program);
    [[nodiscard]] const NuXmlString& complaint() const noexcept { return complaint_; }
    /// The first complaint is the one that is told.
    void complain(NuXmlString complaint) {
        if (complaint_.empty()) {
            complaint_ = std::move(complaint);
        }
    }

private:
    struct StepText {
        std::u16string_view text;
        bool isDeep;
    };
    struct AlternativeText {
        PathStart start;
        std::vector<StepText> steps;
    };

    static std::vector<AlternativeText> divide(std::u16string_view path);
    std::u16string_view restoreSlashes(std::u16string_view step);

    TNuDOMSelectOptions options_;
    std::deque<NuXmlString>& restored_;
    NuXmlString complaint_;
};

/// Reads one step: its name test and its filters.
class StepReader {
public:
    StepReader(std::u16string_view step, TNuDOMSelectOptions options, PathReader& reader)
        : step_(step), options_(options), reader_(reader) {}

    PathStep read(bool isDeep) {
        PathStep result;
        result.isDeep = isDeep;
        // 1. What stands before the first bracket.
        const std::size_t bracket = step_.find(u'[');
        const std::u16string_view test = step_.substr(0, bracket);
        result.nameToCreate = host::trimmed(test);
        // 2. The filters.
        for (std::size_t open = bracket; open != std::u16string_view::npos;) {
            const Brackets brackets = findClose(open);
            if (brackets.mistake != PathMistake::None) {
                fail(brackets.mistake, result);
                return result;
            }
            const std::u16string_view filter = step_.substr(open, brackets.close + 1 - open);
            result.filters.push_back(readFilter(filter, brackets.depth));
            open = step_.find(u'[', brackets.close);
        }
        // 3. The test.
        readTest(test, result);
        return result;
    }

private:
    struct Brackets {
        std::size_t close = 0;
        /// How many brackets stand in each other, the outermost included.
        std::size_t depth = 0;
        PathMistake mistake = PathMistake::None;
    };

    /// The bracket that closes the one at `open`; quotes hide brackets, and brackets nest.
    [[nodiscard]] Brackets findClose(std::size_t open) const noexcept {
        Brackets result;
        std::size_t nesting = 0;
        NuXmlChar quote = 0;
        for (std::size_t index = open; index < step_.size(); ++index) {
            const NuXmlChar unit = step_[index];
            if (quote != 0) {
                quote = unit == quote ? NuXmlChar{0} : quote;
            } else if (unit == cNuApos || unit == cNuQuote) {
                quote = unit;
            } else if (unit == u'[') {
                result.depth = std::max(result.depth, ++nesting);
            } else if (unit == u']' && --nesting == 0) {
                result.close = index;
                return result;
            }
        }
        result.mistake = quote != 0 ? PathMistake::OpenQuote : PathMistake::OpenBracket;
        return result;
    }

    void fail(PathMistake mistake, PathStep& result) const {
        result.mistake = mistake;
        reader_.complain(NuXmlString(textOf(mistake)));
    }

    void readTest(std::u16string_view test, PathStep& result) const {
        reader_.complain(complaintAboutTest(test));
        if (options_.has(soIgnoreNamespace)) {
            test.remove_prefix(test.find(cNuColon) + 1); // none found is -1: nothing is cut
        }
        if (test.starts_with(u'@')) {
            result.test = test == u"@*" ? PathTest::EveryAttribute : PathTest::Attribute;
            result.name = test.substr(1);
        } else if (test.starts_with(u'.')) {
            result.test = test.starts_with(u"..") ? PathTest::Parent : PathTest::Self;
            if (test != u"." && test != u"..") {
                fail(PathMistake::InvalidPath, result);
            }
        } else if (test.empty() || test == u"*") {
            result.test = PathTest::EveryElement;
        } else if (const auto* const called = findCall(testFunctions, test)) {
            result.test = called->meaning;
        } else {
            result.test = PathTest::Name;
            result.name = test;
        }
    }

    /// Reads a filter with its brackets, which stand `depth` deep in each other.
    PathFilter readFilter(std::u16string_view text, std::size_t depth) const {
        const std::u16string_view inner = text.substr(1, text.size() - 2);
        const bool compares = inner.find_first_of(operatorUnits) != std::u16string_view::npos;
        PathFilter filter;
        if (inner.starts_with(u".=") || inner.starts_with(u".>") || inner.starts_with(u".<")) {
            filter.kind = TNuXPathFilter::ftNodeValue;
            readComparison(inner, filter);
        } else if (inner.starts_with(u'@')) {
            filter.kind =
                compares ? TNuXPathFilter::ftAttributeValue : TNuXPathFilter::ftHasAttribute;
            readComparison(inner.substr(1), filter);
        } else if (compares) {
            const std::u16string_view name = inner.substr(0, inner.find(u'('));
            const bool isCall = inner.substr(name.size()).starts_with(u"()");
            filter.kind = isCall && NuEqualFolded(name, ownValueFunction)
                              ? TNuXPathFilter::ftNodeValue
                              : TNuXPathFilter::ftChildValue;
            readComparison(inner, filter);
        } else if (const auto* const called = findCall(filterFunctions, inner)) {
            filter.kind = called->meaning;
        } else {
            const std::int64_t number = readPathInteger(inner).value_or(-1);
            const bool isPosition =
                number >= 0 && number <= std::numeric_limits<std::int32_t>::max();
            filter.kind =
                isPosition ? TNuXPathFilter::ftChildElementX : TNuXPathFilter::ftChildName;
            filter.position = isPosition ? static_cast<std::int32_t>(number) : 0;
            filter.name = host::trimmed(inner);
        }
        readChild(filter, depth);
        return filter;
    }

    /// Takes "name operator literal" apart; only a name when there is no operator.
    void readComparison(std::u16string_view text, PathFilter& filter) const {
        const std::size_t first = text.find_first_of(operatorUnits);
        filter.name = host::trimmed(text.substr(0, first));
        if (filter.kind == TNuXPathFilter::ftHasAttribute ||
            filter.kind == TNuXPathFilter::ftAttributeValue) {
            reader_.complain(complaintAboutName(filter.name));
        }
        if (first == std::u16string_view::npos) {
            return;
        }
        reader_.complain(complaintAboutComparison(text));
        const std::size_t behind =
            std::min(text.find_first_not_of(operatorUnits, first), text.size());
        filter.comparison = readOperator(text.substr(first, behind - first));
        filter.literal = readLiteral(text.substr(behind));
    }

    void readChild(PathFilter& filter, std::size_t depth) const {
        if (filter.kind != TNuXPathFilter::ftChildValue &&
            filter.kind != TNuXPathFilter::ftChildName) {
            return;
        }
        constexpr std::u16string_view special = u"/@.*[|(#:";
        if (filter.kind == TNuXPathFilter::ftChildName) {
            reader_.complain(complaintAboutWords(filter.name));
        }
        filter.isChildName =
            !filter.name.empty() && filter.name.find_first_of(special) == filter.name.npos;
        if (filter.isChildName) {
            reader_.complain(complaintAboutName(filter.name));
        } else if (depth <= deepestBrackets) {
            const auto child = std::make_shared<PathProgram>();
            reader_.read(filter.name, *child);
            filter.child = child;
        }
    }

    std::u16string_view step_;
    TNuDOMSelectOptions options_;
    PathReader& reader_;
};

PathStart startOf(std::u16string_view alternative, bool beginsWithSlash) noexcept {
    return beginsWithSlash
               ? alternative.starts_with(u"//") ? PathStart::Context : PathStart::Document
           : alternative.starts_with(u"..") ? PathStart::Grandparent
           : alternative.starts_with(u'.')  ? PathStart::Parent
                                            : PathStart::Context;
}

/// Divides a path into the texts of its steps.
std::vector<PathReader::AlternativeText> PathReader::divide(std::u16string_view path) {
    std::vector<AlternativeText> result;
    const DividingSlashes slashes(path);
    for (std::size_t place = 0;;) {
        const std::size_t end = std::min(path.find(separator, place), path.size());
        AlternativeText& alternative = result.emplace_back();
        alternative.start = startOf(path.substr(place, end - place), slashes.isAt(place));
        do {
            // 1. One slash, which the first step may lack, or two.
            const bool isDivided = place < end && slashes.isAt(place);
            const bool isDeep = isDivided && path.substr(place, end - place).starts_with(u"//");
            place += isDeep ? 2 : isDivided ? 1 : 0;
            // 2. The step up to the next one.
            const std::size_t next = slashes.findFrom(place, end);
            alternative.steps.push_back({path.substr(place, next - place), isDeep});
            place = next;
        } while (place < end);
        if (end == path.size()) {
            return result;
        }
        place = end + separator.size();
    }
}

void PathReader::read(std::u16string_view path, PathProgram& program) {
    program.text = path;
    program.options = options_;
    for (const AlternativeText& text : divide(path)) {
        PathAlternative& alternative = program.alternatives.emplace_back();
        alternative.start = text.start;
        for (const StepText& step : text.steps) {
            alternative.steps.push_back(
                StepReader(restoreSlashes(step.text), options_, *this).read(step.isDeep));
        }
    }
}

/// The step with slashes in place of what stands for them.
std::u16string_view PathReader::restoreSlashes(std::u16string_view step) {
    std::size_t found = step.find(protectedSlash);
    if (found == step.npos) {
        return step;
    }
    NuXmlString& result = restored_.emplace_back();
    std::size_t from = 0;
    for (; found != step.npos; found = step.find(protectedSlash, from)) {
        result.append(step.substr(from, found - from)) += cNuSlash;
        from = found + protectedSlash.size();
    }
    return result += step.substr(from);
}

} // namespace

std::optional<std::int64_t> readPathInteger(std::u16string_view text) noexcept {
    text.remove_prefix(std::min(text.find_first_not_of(cNuSpace), text.size()));
    const bool isNegative = text.starts_with(u'-');
    if (isNegative || text.starts_with(u'+')) {
        text.remove_prefix(1);
    }
    if (text.empty()) {
        return std::nullopt;
    }
    std::int64_t value = 0;
    for (const NuXmlChar unit : text) {
        const int digit = unit - u'0';
        if (digit < 0 || digit > 9 || __builtin_mul_overflow(value, 10, &value) ||
            __builtin_sub_overflow(value, digit, &value)) {
            return std::nullopt;
        }
    }
    // Gathered below zero, where one more value fits than above.
    if (!isNegative && value == std::numeric_limits<std::int64_t>::min()) {
        return std::nullopt;
    }
    return isNegative ? value : -value;
}

std::shared_ptr<const PathProgram> readPath(std::u16string_view path, TNuDOMSelectOptions options) {
    struct Path {
        NuXmlString given;
        NuXmlString lowered;
        std::deque<NuXmlString> restored;
        PathProgram program;
    };
    const auto whole = std::make_shared<Path>();
    whole->given = path;
    const bool isLowered = options.has(soCaseInsensitive);
    if (isLowered) {
        whole->lowered = NuLowered(path);
    }
    PathReader reader(options, whole->restored);
    reader.read(isLowered ? whole->lowered : whole->given, whole->program);
    whole->program.text = whole->given;
    whole->program.complaint = reader.complaint();
    return {whole, &whole->program};
}

} // namespace nu
