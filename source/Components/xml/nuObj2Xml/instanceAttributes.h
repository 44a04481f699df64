#pragma once

#include <string_view>

#include "common/caseFolding.h"
#include "nuXmlParser/namespaceNames.h"

/// \file
/// The attributes type and nil of XML Schema, as fragments have them, too: nobody need declare what
/// a prefix stands for.

namespace nu {

inline constexpr std::u16string_view usualInstancePrefix = u"xsi";

/// How surely an attribute of the right local name is the one that XML Schema means: in its
/// namespace, by its usual prefix, or by its name alone. 0 for one that is not.
/// \param uri of the namespace that the prefix stands for; empty where it is not declared
inline int certaintyOf(std::u16string_view prefix, std::u16string_view uri) noexcept {
    if (prefix.empty()) {
        return 1;
    }
    if (uri == instanceNamespace) {
        return 3;
    }
    return prefix == usualInstancePrefix ? 2 : 0;
}

/// Whether that is what nil says of a missing value.
inline bool meansNil(std::u16string_view value) noexcept {
    return NuEqualAsciiWord(value, u"true") || value == u"1";
}

} // namespace nu
