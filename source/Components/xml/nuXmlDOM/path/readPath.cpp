#include <algorithm>
#include <limits>

#include "common/caseFolding.h"
#include "nuXmlDOM/path/pathProgram.h"

namespace nu {

namespace {

/// Brackets in brackets up to here are read. Reading and selecting go into each, so an endless row
/// of them would end the stack.
constexpr std::size_t deepestBrackets = 250;

constexpr std::u16string_view separator = u" | ";
constexpr std::u16string_view protectedSlash = u"&slash;";
constexpr std::u16string_view operatorUnits = u"<=>";

std::u16string_view trimmed(std::u16string_view text) noexcept {
    constexpr std::u16string_view blanks = u" \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::u16string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// Replaces the slashes inside double quotes, so that they divide no steps.
///
/// Deliberate: as many positions are looked at as the path has, and a replaced slash takes seven of
/// them, so behind several replaced slashes the end of a path may not be looked at. Single quotes
/// protect nothing.
NuXmlString protectSlashes(std::u16string_view path) {
    NuXmlString result;
    bool isQuoted = false;
    std::size_t positions = path.size();
    std::size_t index = 0;
    while (index < path.size() && positions > 0) {
        const NuXmlChar unit = path[index++];
        isQuoted = isQuoted != (unit == cNuQuote);
        if (unit == cNuSlash && isQuoted) {
            result += protectedSlash;
            positions -= std::min(positions, protectedSlash.size());
        } else {
            result += unit;
            --positions;
        }
    }
    return result.append(path.substr(index));
}

NuXmlString restoreSlashes(std::u16string_view step) {
    NuXmlString result;
    for (std::size_t from = 0;;) {
        const std::size_t found = step.find(protectedSlash, from);
        result += step.substr(from, found - from);
        if (found == std::u16string_view::npos) {
            return result;
        }
        result += cNuSlash;
        from = found + protectedSlash.size();
    }
}

PathOperator readOperator(std::u16string_view text) noexcept {
    return text == u"="    ? PathOperator::equal
           : text == u">"  ? PathOperator::greater
           : text == u">=" ? PathOperator::greaterOrEqual
           : text == u"<"  ? PathOperator::less
           : text == u"<=" ? PathOperator::lessOrEqual
                           : PathOperator::none;
}

} // namespace

void PathLiteral::dropQuotes() {
    const auto isQuote = [](NuXmlChar unit) { return unit == cNuApos || unit == cNuQuote; };
    text.erase(std::remove_if(text.begin(), text.end(), isQuote), text.end());
    folded = NuFolded(text);
    hasReference = text.find(cNuAmp) != NuXmlString::npos;
}

namespace {

PathLiteral readLiteral(std::u16string_view text) {
    PathLiteral literal;
    literal.text = trimmed(text);
    literal.isText = literal.text.find_first_of(u"'\"") != NuXmlString::npos;
    if (literal.isText) {
        literal.dropQuotes();
    } else {
        literal.integer = readPathInteger(literal.text);
    }
    return literal;
}

/// Reads one step: its name test and its filters.
class StepReader {
public:
    StepReader(std::u16string_view step, TNuDOMSelectOptions options)
        : step_(step), options_(options) {}

    PathStep read(bool isDeep) {
        PathStep result;
        result.isDeep = isDeep;
        // 1. What stands before the first bracket.
        const std::size_t bracket = step_.find(u'[');
        const std::u16string_view test = step_.substr(0, bracket);
        result.nameToCreate = trimmed(test);
        // 2. The filters.
        for (std::size_t open = bracket; open != std::u16string_view::npos;) {
            const Brackets brackets = findClose(open);
            if (brackets.mistake != PathMistake::none) {
                result.mistake = brackets.mistake;
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
        PathMistake mistake = PathMistake::none;
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
        result.mistake = quote != 0 ? PathMistake::openQuote : PathMistake::openBracket;
        return result;
    }

    void readTest(std::u16string_view test, PathStep& result) const {
        if (options_.has(soIgnoreNamespace)) {
            test.remove_prefix(test.find(cNuColon) + 1); // none found is -1: nothing is cut
        }
        if (test.starts_with(u'@')) {
            result.test = test == u"@*" ? PathTest::everyAttribute : PathTest::attribute;
            result.name = test.substr(1);
        } else if (test.starts_with(u'.')) {
            result.test = test.starts_with(u"..") ? PathTest::parent : PathTest::self;
            if (test != u"." && test != u"..") {
                result.mistake = PathMistake::invalidPath;
            }
        } else if (test.empty() || test == u"*") {
            result.test = PathTest::everyElement;
        } else if (NuEqualFolded(test, u"node()")) {
            result.test = PathTest::everyNode;
        } else if (NuEqualFolded(test, u"text()")) {
            result.test = PathTest::elementWithText;
        } else {
            result.test = PathTest::name;
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
            constexpr std::u16string_view ownValue = u"string()";
            filter.kind = NuEqualFolded(inner.substr(0, ownValue.size()), ownValue)
                              ? TNuXPathFilter::ftNodeValue
                              : TNuXPathFilter::ftChildValue;
            readComparison(inner, filter);
        } else if (NuEqualFolded(inner, u"last()")) {
            filter.kind = TNuXPathFilter::ftLastChildElement;
        } else if (NuEqualFolded(inner, u"first()")) {
            filter.kind = TNuXPathFilter::ftFirstChildElement;
        } else {
            const std::int64_t number = readPathInteger(inner).value_or(-1);
            const bool isPosition =
                number >= 0 && number <= std::numeric_limits<std::int32_t>::max();
            filter.kind =
                isPosition ? TNuXPathFilter::ftChildElementX : TNuXPathFilter::ftChildName;
            filter.position = isPosition ? static_cast<std::int32_t>(number) : 0;
            filter.name = trimmed(inner);
        }
        readChild(filter, depth);
        return filter;
    }

    /// Takes "name operator literal" apart; only a name when there is no operator.
    static void readComparison(std::u16string_view text, PathFilter& filter) {
        const std::size_t first = text.find_first_of(operatorUnits);
        filter.name = trimmed(text.substr(0, first));
        if (first == std::u16string_view::npos) {
            return;
        }
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
        filter.isPlainName =
            !filter.name.empty() && filter.name.find_first_of(special) == NuXmlString::npos;
        if (!filter.isPlainName && depth <= deepestBrackets) {
            filter.child = readPath(filter.name, options_);
        }
    }

    std::u16string_view step_;
    TNuDOMSelectOptions options_;
};

PathStart startOf(std::u16string_view alternative) noexcept {
    return alternative.starts_with(u"//")      ? PathStart::context
           : alternative.starts_with(u"..")    ? PathStart::grandparent
           : alternative.starts_with(cNuSlash) ? PathStart::document
           : alternative.starts_with(u'.')     ? PathStart::parent
                                               : PathStart::context;
}

PathAlternative readAlternative(std::u16string_view text, TNuDOMSelectOptions options) {
    PathAlternative result;
    result.start = startOf(text);
    const NuXmlString folded = options.has(soCaseInsensitive) ? NuFolded(text) : NuXmlString();
    std::u16string_view rest = options.has(soCaseInsensitive) ? folded : text;
    bool isFirst = true;
    while (isFirst || !rest.empty()) {
        // 1. One slash, which the first step may lack, or two.
        const bool isDeep = rest.starts_with(u"//");
        if (rest.starts_with(cNuSlash)) {
            rest.remove_prefix(isDeep ? 2 : 1);
        }
        // 2. The step up to the next one.
        const std::size_t length = std::min(rest.find(cNuSlash), rest.size());
        const std::u16string_view step = rest.substr(0, length);
        result.steps.push_back(step.find(protectedSlash) == std::u16string_view::npos
                                   ? StepReader(step, options).read(isDeep)
                                   : StepReader(restoreSlashes(step), options).read(isDeep));
        rest.remove_prefix(length);
        isFirst = false;
    }
    return result;
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
    auto program = std::make_shared<PathProgram>();
    program->text = path;
    program->options = options;
    // Texts are copied only where they change: brackets in brackets would add up.
    const bool isQuoted = path.find(cNuQuote) != std::u16string_view::npos;
    const NuXmlString whole = isQuoted ? protectSlashes(path) : NuXmlString();
    std::u16string_view rest = isQuoted ? std::u16string_view(whole) : path;
    for (;;) {
        const std::size_t end = rest.find(separator);
        program->alternatives.push_back(readAlternative(rest.substr(0, end), options));
        if (end == std::u16string_view::npos) {
            return program;
        }
        rest.remove_prefix(end + separator.size());
    }
}

} // namespace nu
