#pragma once

#include <vector>

#include "nuXmlDOM/core/element.h"

/// \file
/// The child elements in the order of their list. As a rule that is the order of the tree, and
/// nothing is kept.

namespace nu {

/// That order where it is not the order of the tree; else null.
[[nodiscard]] const std::vector<TNuDOMElement*>*
elementOrder(const TNuDOMElement& element) noexcept;
/// The same; from now on the child elements have an order of their own, whatever moves in the tree.
std::vector<TNuDOMElement*>& keepElementOrder(TNuDOMElement& element);
/// A child element comes to a place at, or beside, another; `besideElement` is null when the
/// reference is none.
void placeInElementOrder(TNuDOMElement& element, TNuDOMElement& child, TNuDOMPosition position,
                         TNuDOMNode* besideElement, bool isReferenceKnown);
/// A child element has left.
void removeFromElementOrder(TNuDOMElement& element, const TNuDOMElement& child) noexcept;

} // namespace nu
