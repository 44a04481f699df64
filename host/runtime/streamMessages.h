#pragma once

#include <string_view>

/// \file
/// What streams say that cannot do what is asked of them: every stream in the same words.

namespace host::messages {

inline constexpr std::u16string_view readError = u"Stream read error";
inline constexpr std::u16string_view writeError = u"Stream write error";
inline constexpr std::u16string_view seekError = u"Stream seek error";
inline constexpr std::u16string_view notWritable = u"This stream cannot be written to";
inline constexpr std::u16string_view sizeUnknown = u"The size of this stream is not known";
inline constexpr std::u16string_view sizeFixed = u"The size of this stream cannot be set";
// With the reason of the system
inline constexpr std::u16string_view readErrorBecause = u"Stream read error: %s";
inline constexpr std::u16string_view writeErrorBecause = u"Stream write error: %s";

} // namespace host::messages
