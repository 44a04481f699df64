#pragma once

#include "nuXmlDOM/core/nodeLinks.h"

namespace nu {

/// The attributes of an element in order, linked one way through their own members.
///
/// Most nodes of many documents are attributes, and nearly none of them is ever taken out: they do
/// without a link backwards. Whoever changes the chain finds out what stands before, see
/// AttributeIndex.
class AttributeChain {
public:
    [[nodiscard]] TNuDOMNode* first() const noexcept { return first_; }

    /// Puts `attribute` behind `before`, which is in the chain; at the beginning when it is null.
    void insertBehind(TNuDOMNode* before, TNuDOMNode& attribute) noexcept {
        TNuDOMNode*& link = before != nullptr ? NodeLinks::nextOf(*before) : first_;
        NodeLinks::nextOf(attribute) = link;
        link = &attribute;
    }
    /// Takes out what stands behind `before`; the first one when it is null.
    void removeBehind(TNuDOMNode* before) noexcept {
        TNuDOMNode*& link = before != nullptr ? NodeLinks::nextOf(*before) : first_;
        TNuDOMNode& attribute = *link;
        link = NodeLinks::next(attribute);
        NodeLinks::nextOf(attribute) = nullptr;
    }
    void clear() noexcept { first_ = nullptr; }

private:
    TNuDOMNode* first_ = nullptr;
};

} // namespace nu
