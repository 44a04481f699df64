#include "nuXmlDOM/upkeep/heldNodes.h"

#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/upkeep/liveLists.h"
#include "nuXmlDOM/upkeep/treeWalk.h"

namespace nu {

std::int64_t heldCount(const TNuDOMNode& node) noexcept {
    const NodeLists* lists = NodeContext::listsIfAny(node);
    return (lists != nullptr ? lists->heldCount() : 0) + (node.RefCount() != 0 ? 1 : 0);
}

bool isHeld(const TNuDOMNode& node) noexcept { return heldCount(node) != 0; }

const TNuDOMNode* firstHeld(const TNuDOMNode& root) noexcept {
    return firstInSubtree(root, isHeld);
}

const TNuDOMNode* firstHeld(const TNuDOMNode& root, const TNuDOMNode& start) noexcept {
    const TNuDOMNode* held = firstFrom(start, root, isHeld);
    return held != nullptr ? held : firstHeld(root);
}

bool isSubtreeHeld(const TNuDOMNode& root) noexcept { return firstHeld(root) != nullptr; }

} // namespace nu
