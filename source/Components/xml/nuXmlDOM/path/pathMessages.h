#pragma once

#include <string_view>

/// \file
/// The texts of path selection. The exceptions are host::Exception unless their name says more.

namespace nu::messages {

inline constexpr std::u16string_view noParentNode = u"Invalid Path; There is no parentnode!";
inline constexpr std::u16string_view invalidPathStep = u"Invalid Path";
/// Deliberate: another letter case than invalidPathStep; the two mean different mistakes.
inline constexpr std::u16string_view nothingToCreate = u"Invalid path";
inline constexpr std::u16string_view unterminatedFilterValue = u"Unterminated Filtervalue!";
inline constexpr std::u16string_view unterminatedFilter = u"Unterminated Filter!";
inline constexpr std::u16string_view noCreateInSearch =
    u"It is not possible to use the soCreate option in a // search!";
inline constexpr std::u16string_view noCreateForPath =
    u"It is not possible to use the soCreate option for the given search path!";

// ENuDomException
inline constexpr std::u16string_view tooManyNodes = u"The path selects more than %d nodes!";
inline constexpr std::u16string_view tooManyVisits = u"The path looks at more than %d nodes!";

// What TNuDOMPath::Complaint tells
inline constexpr std::u16string_view noSuchInPaths = u"the path language has no %s %s";
inline constexpr std::u16string_view noSuchPlaceInPaths =
    u"the path language has no place for %s here";
inline constexpr std::u16string_view barWithoutBlanks =
    u"the path language wants a blank on each side of |";
inline constexpr std::u16string_view blankInPathName = u"no name has a blank in it, as \"%s\" has";

// ENuDomTypeMismatch
inline constexpr std::u16string_view attributeFilterMismatch =
    u"You can only specify attribute filters for DOM Elements!";
inline constexpr std::u16string_view childFilterMismatch =
    u"You can only specify child filters for DOM Elements!";
inline constexpr std::u16string_view valueFilterMismatch =
    u"You can only specify value filters for DOM Elements!";

} // namespace nu::messages
