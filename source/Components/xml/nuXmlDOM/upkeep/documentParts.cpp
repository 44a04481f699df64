#include "nuXmlDOM/upkeep/documentParts.h"

#include <utility>

#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/face.h"
#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/upkeep/liveLists.h"

namespace nu {

DocumentParts::DocumentParts(TNuDOMDocument& document)
    : names(memory, document), lifetime(document), snapshots(document), document_(document) {}

DocumentParts::~DocumentParts() {
    // Nodes, names and texts are in the memory of the document and go with it.
    while (firstLists_ != nullptr) {
        NodeLists* lists = firstLists_;
        firstLists_ = lists->next;
        delete lists;
    }
}

// Lists

NodeLists* DocumentParts::makeLists(TNuDOMNode& node) {
    auto* lists = new NodeLists(node);
    enterLists(*lists);
    return lists;
}

void DocumentParts::enterLists(NodeLists& lists) noexcept {
    lists.previous = nullptr;
    lists.next = firstLists_;
    if (firstLists_ != nullptr) {
        firstLists_->previous = &lists;
    }
    firstLists_ = &lists;
}

void DocumentParts::removeLists(NodeLists& lists) noexcept {
    (lists.previous != nullptr ? lists.previous->next : firstLists_) = lists.next;
    if (lists.next != nullptr) {
        lists.next->previous = lists.previous;
    }
}

void DocumentParts::freeExtras(NodeExtras& extras) noexcept {
    if (extras.lists != nullptr) {
        removeLists(*extras.lists);
        delete extras.lists;
    }
    if (extras.face != nullptr) {
        memory.release(extras.face, extras.face->size());
    }
    memory.release(&extras, sizeof(NodeExtras));
}

// Nodes

void DocumentParts::take(TNuDOMNode& node, const NodeName* name) noexcept {
    NodeContext::setName(node, name);
    NodeExtras* extras = NodeContext::extrasIfAny(node);
    if (extras == nullptr) {
        return;
    }
    if (extras->lists != nullptr) {
        extras->lists->attributeIndex.drop();
        extras->document->parts().removeLists(*extras->lists);
        enterLists(*extras->lists);
    }
    extras->document = &document_;
}

void DocumentParts::forgetNode(TNuDOMNode& node) noexcept {
    snapshots.forgetNode(node);
    leaveNode(node);
}

void DocumentParts::leaveNode(TNuDOMNode& node) noexcept {
    lifetime.withdraw(node);
    refused.leaveNode(node);
}

// Memory of snapshots

std::vector<TNuDOMNode*> DocumentParts::takeRoom() noexcept { return std::exchange(room_, {}); }

void DocumentParts::keepRoom(std::vector<TNuDOMNode*> nodes) noexcept {
    const std::size_t size = nodes.capacity() * sizeof(void*);
    if (nodes.capacity() > room_.capacity() && size <= memory.size() / 8) {
        nodes.clear();
        room_.swap(nodes);
    }
}

} // namespace nu
