#pragma once

#include <string_view>

namespace nu {

/// The code unit that a numeric character reference stands for, given the text between "&#" and
/// ";". "x" or "X" at the front makes the number hexadecimal; so do "$" and "0x", and a sign may
/// stand before them. Throws host::EConvertError for what is no number of 32 bits.
///
/// Deliberate: the number is cut to 16 bits. Characters above U+FFFF do not become surrogate pairs.
char16_t referencedUnit(std::u16string_view digits);
/// The same for 8-bit text.
char16_t referencedUnit(std::string_view digits);

} // namespace nu
