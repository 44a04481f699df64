#include "nuXmlDOM/upkeep/refusedNodes.h"

#include "nuXmlDOM/core/nodeLinks.h"

namespace nu {

void RefusedNodes::note(TNuDOMNode& node) noexcept {
    try {
        nodes_.emplace(node.get_parentNode(), &node);
        NodeFlags::set(*node.get_parentNode(), hasRefused);
    } catch (...) {
        NodeLinks::setParent(node, nullptr); // what is not noted must not point anywhere
        NodeFlags::clear(node, isRefused);
    }
}

void RefusedNodes::forget(TNuDOMNode& node) noexcept {
    nodes_.erase({node.get_parentNode(), &node});
    NodeFlags::clear(node, isRefused);
}

void RefusedNodes::leaveNode(TNuDOMNode& node) noexcept {
    if (NodeFlags::has(node, isRefused)) {
        forget(node);
    }
    if (!NodeFlags::has(node, hasRefused)) {
        return;
    }
    auto place = nodes_.lower_bound({&node, nullptr});
    while (place != nodes_.end() && place->first == &node) {
        NodeLinks::setParent(*place->second, nullptr);
        NodeFlags::clear(*place->second, isRefused);
        place = nodes_.erase(place);
    }
    NodeFlags::clear(node, hasRefused);
}

} // namespace nu
