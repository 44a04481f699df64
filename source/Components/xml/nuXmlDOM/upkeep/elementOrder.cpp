#include "nuXmlDOM/upkeep/elementOrder.h"

#include <algorithm>

#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/core/nodeLinks.h"
#include "nuXmlDOM/upkeep/liveLists.h"

namespace nu {

const std::vector<TNuDOMElement*>* elementOrder(const TNuDOMElement& element) noexcept {
    return NodeFlags::has(element, hasElementOrder)
               ? &NodeContext::listsIfAny(element)->elementOrder
               : nullptr;
}

std::vector<TNuDOMElement*>& keepElementOrder(TNuDOMElement& element) {
    std::vector<TNuDOMElement*>& kept = NodeContext::lists(element).elementOrder;
    if (!NodeFlags::has(element, hasElementOrder)) {
        std::vector<TNuDOMElement*> order;
        for (TNuDOMElement& child : element.ChildElements()) {
            order.push_back(&child);
        }
        kept.swap(order);
        NodeFlags::set(element, hasElementOrder);
    }
    return kept;
}

void placeInElementOrder(TNuDOMElement& element, TNuDOMElement& child, TNuDOMPosition position,
                         TNuDOMNode* besideElement, bool isReferenceKnown) {
    const bool becomesFirst = position == rdpAfter && besideElement == nullptr;
    // The order of the tree gives the same unless an element stands before the reference.
    if (!NodeFlags::has(element, hasElementOrder) &&
        (!becomesFirst || !isReferenceKnown || element.FirstChildElement() == nullptr)) {
        return;
    }
    std::vector<TNuDOMElement*>& order = keepElementOrder(element);
    auto place = order.end();
    if (becomesFirst || position == rdpFirst) {
        place = order.begin();
    } else if (besideElement != nullptr && position != rdpLast) {
        place =
            std::find(order.begin(), order.end(), besideElement) + (position == rdpAfter ? 1 : 0);
    }
    order.insert(place, &child);
}

void removeFromElementOrder(TNuDOMElement& element, const TNuDOMElement& child) noexcept {
    if (!NodeFlags::has(element, hasElementOrder)) {
        return;
    }
    std::vector<TNuDOMElement*>& order = NodeContext::listsIfAny(element)->elementOrder;
    // Children go from the end more often than from elsewhere.
    order.erase(order.back() == &child ? order.end() - 1
                                       : std::find(order.begin(), order.end(), &child));
    if (order.empty()) {
        NodeFlags::clear(element, hasElementOrder);
    }
}

} // namespace nu
