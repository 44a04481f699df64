#pragma once

#include <cstdint>

class TNuDOMNode;

namespace nu {

/// How many of a node and its lists are held.
[[nodiscard]] std::int64_t heldCount(const TNuDOMNode& node) noexcept;
[[nodiscard]] bool isHeld(const TNuDOMNode& node) noexcept;
/// The first held node of `root` and below it; null without one.
[[nodiscard]] const TNuDOMNode* firstHeld(const TNuDOMNode& root) noexcept;
/// The first from `start` on, else the first of all.
[[nodiscard]] const TNuDOMNode* firstHeld(const TNuDOMNode& root, const TNuDOMNode& start) noexcept;
/// Whether anything of `root` and below it is held.
[[nodiscard]] bool isSubtreeHeld(const TNuDOMNode& root) noexcept;

} // namespace nu
