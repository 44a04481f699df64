#include "nuXmlDOM/upkeep/adoption.h"

#include <cstdint>

#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/nodeAccess.h"
#include "nuXmlDOM/upkeep/liveLists.h"

namespace nu {

void adopt(TNuDOMNode& root, TNuDOMDocument& document) {
    TNuDOMDocument& former = *root.OwnerDocument();
    // 1. Everything that may fail: the names of the new document, its hold on the memory, and the
    //    snapshots that refer to the nodes.
    document.memory().retain(former.memory());
    const auto visit = [&root](auto&& action) {
        static_cast<void>(NodeAccess::firstInSubtree(root, [&action](const TNuDOMNode& node) {
            action(const_cast<TNuDOMNode&>(node));
            return false;
        }));
    };
    visit([&](TNuDOMNode& node) {
        static_cast<void>(document.names().get(NodeAccess::name(node)));
        former.snapshots_.follow(node, document);
    });
    // 2. The nodes change their names and their document.
    std::int64_t held = 0;
    visit([&](TNuDOMNode& node) {
        held += NodeAccess::heldCount(node);
        former.leaveNode(node);
        document.take(node, document.names().get(NodeAccess::name(node)));
    });
    // 3. What is held is counted there from now on.
    document.lifetime().takeHeld(held);
    former.lifetime().reclaim(); // afterwards it may be gone
    former.lifetime().giveHeld(held);
}

} // namespace nu
