#pragma once

#include <string_view>

namespace nu {

/// The longest entity name that is ever looked up.
inline constexpr std::size_t longestEntityName = 8;

/// The character that the entity `name` (without "&" and ";") stands for, or NUL when there is
/// none. Knows the 252 entities of HTML 4.01 and "apos"; names are case-sensitive.
///
/// Deliberate: only a key folded from the name is compared, so that a lookup is a few comparisons
/// of numbers. A name that is none but folds to the key of one decodes too ("Alpgb" like "Alpha").
char16_t findEntity(std::u16string_view name) noexcept;

} // namespace nu
