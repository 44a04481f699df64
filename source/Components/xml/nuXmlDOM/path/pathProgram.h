#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "common/caseFolding.h"
#include "nuXmlDOM/core/selectOptions.h"
#include "nuXmlParser/chars.h"

/// \file
/// A path as it is after its text has been read: what a selection goes by. Mistakes in the text are
/// kept where they stand, because they count only when a selection gets there.

namespace nu {

struct PathProgram;

/// A value that a filter compares with.
struct PathLiteral {
    /// Whether it is text; else an integer is meant.
    bool isText = false;
    /// The text without quotes; the text as it stood where an integer was meant.
    NuXmlString text;
    /// The same without regard to letter case.
    NuXmlString folded;
    /// The integer, if the text is one.
    std::optional<std::int64_t> integer;

    /// Makes what was read so far the text of a literal in quotes.
    void dropQuotes();
};

/// How a filter compares. Deliberate: every other sequence of "<", "=" and ">" keeps nothing.
enum class PathOperator : std::uint8_t { Equal, Greater, GreaterOrEqual, Less, LessOrEqual, None };

/// What a bracketed text asks of a candidate.
enum class TNuXPathFilter : std::uint8_t {
    ftHasAttribute,
    ftAttributeValue,
    ftChildElementX,
    ftLastChildElement,
    ftFirstChildElement,
    ftChildValue,
    ftChildName,
    ftNodeValue,
};

/// A function of the path language, which is called with nothing in its brackets, and what it
/// stands for: its name in lower case.
template <class Meaning> struct PathFunction {
    std::u16string_view name;
    Meaning meaning;
};

/// The functions that are a filter as a whole.
inline constexpr std::array<PathFunction<TNuXPathFilter>, 2> filterFunctions{{
    {u"last", TNuXPathFilter::ftLastChildElement},
    {u"first", TNuXPathFilter::ftFirstChildElement},
}};

struct PathFilter {
    TNuXPathFilter kind = TNuXPathFilter::ftChildName;
    /// The attribute's name, or the path of the child.
    std::u16string_view name;
    PathOperator comparison = PathOperator::None;
    PathLiteral literal;
    std::int32_t position = 0;
    /// Where the name is nothing but the name of a child element: no path is needed to find it.
    bool isChildName = false;
    /// The path of the child; null for a mere name, and where brackets stand too deep.
    std::shared_ptr<const PathProgram> child;
};

enum class PathTest : std::uint8_t {
    EveryAttribute,
    Attribute,
    Parent,
    Self,
    EveryElement,
    EveryNode,
    ElementWithText,
    Name,
};

/// The functions that are the test of a step.
inline constexpr std::array<PathFunction<PathTest>, 2> testFunctions{{
    {u"node", PathTest::EveryNode},
    {u"text", PathTest::ElementWithText},
}};

/// What stands before the operator of a filter for the value of the node itself.
inline constexpr std::u16string_view ownValueFunction = u"string";

/// The function that is called by this text and nothing else; null where none is.
template <class Functions>
[[nodiscard]] const typename Functions::value_type* findCall(const Functions& functions,
                                                             std::u16string_view text) {
    constexpr std::u16string_view brackets = u"()";
    if (!text.ends_with(brackets)) {
        return nullptr;
    }
    text.remove_suffix(brackets.size());
    const auto found =
        std::find_if(functions.begin(), functions.end(),
                     [text](const auto& function) { return NuEqualFolded(text, function.name); });
    return found == functions.end() ? nullptr : &*found;
}

enum class PathMistake : std::uint8_t { None, InvalidPath, OpenQuote, OpenBracket };

struct PathStep {
    /// Whether it looks at everything below the context.
    bool isDeep = false;
    PathTest test = PathTest::EveryElement;
    std::u16string_view name;
    std::vector<PathFilter> filters;
    PathMistake mistake = PathMistake::None;
    /// What soCreate makes when nothing matches: the text before the first bracket.
    std::u16string_view nameToCreate;
};

enum class PathStart : std::uint8_t { Context, Parent, Grandparent, Document };

struct PathAlternative {
    PathStart start = PathStart::Context;
    std::vector<PathStep> steps;
};

/// The texts in it are parts of one text that readPath keeps, so that brackets in brackets cost no
/// copies of what is in them.
struct PathProgram {
    std::u16string_view text;
    TNuDOMSelectOptions options;
    std::vector<PathAlternative> alternatives;
    /// What the path asks for and no path can mean, or the first mistake in it; empty without that.
    NuXmlString complaint;
};

/// Reads a path, and keeps its text as long as the program.
[[nodiscard]] std::shared_ptr<const PathProgram> readPath(std::u16string_view path,
                                                          TNuDOMSelectOptions options);

/// Reads an integer: blanks may lead, then a sign; nothing else but decimal digits.
[[nodiscard]] std::optional<std::int64_t> readPathInteger(std::u16string_view text) noexcept;

} // namespace nu
