#pragma once

#include <string>
#include <string_view>

#include "host/runtime/export.h"

/// \file
/// UTF-8 and UTF-16 for messages and names.

namespace host {

/// UTF-8 form of UTF-16 text. An unpaired surrogate becomes U+FFFD, so the result is always valid
/// UTF-8. Meant for messages, names and paths; bulk text has faster ways in the common package.
NUXML_API std::string utf16ToUtf8(std::u16string_view text);

/// UTF-16 form of UTF-8 text. Each maximal ill-formed stretch becomes one U+FFFD.
NUXML_API std::u16string utf8ToUtf16(std::string_view bytes);

} // namespace host
