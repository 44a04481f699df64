#include "nuXmlDOM/upkeep/adoption.h"

#include <cstdint>

#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/upkeep/documentParts.h"
#include "nuXmlDOM/upkeep/heldNodes.h"
#include "nuXmlDOM/upkeep/liveLists.h"
#include "nuXmlDOM/upkeep/treeWalk.h"

namespace nu {

void adopt(TNuDOMNode& root, TNuDOMDocument& document) {
    TNuDOMDocument& former = *root.OwnerDocument();
    // 1. Everything that may fail: the names of the new document, its hold on the memory, and the
    //    snapshots that refer to the nodes.
    document.parts().memory.retain(former.parts().memory);
    const auto visit = [&root](auto&& action) {
        static_cast<void>(firstInSubtree(root, [&action](const TNuDOMNode& node) {
            action(const_cast<TNuDOMNode&>(node));
            return false;
        }));
    };
    visit([&](TNuDOMNode& node) {
        static_cast<void>(document.parts().names.get(NodeContext::name(node)));
        former.parts().snapshots.follow(node, document);
    });
    // 2. The nodes change their names and their document.
    std::int64_t held = 0;
    visit([&](TNuDOMNode& node) {
        held += heldCount(node);
        former.parts().leaveNode(node);
        document.parts().take(node, document.parts().names.get(NodeContext::name(node)));
    });
    // 3. What is held is counted there from now on.
    document.parts().lifetime.takeHeld(held);
    former.parts().lifetime.reclaim(); // afterwards it may be gone
    former.parts().lifetime.giveHeld(held);
}

} // namespace nu
