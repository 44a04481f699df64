#pragma once

#include <vector>

#include "nuXmlDOM/core/limits.h"
#include "nuXmlDOM/core/nodeChain.h"
#include "nuXmlDOM/storage/documentMemory.h"
#include "nuXmlDOM/storage/nameTable.h"
#include "nuXmlDOM/upkeep/lifetime.h"
#include "nuXmlDOM/upkeep/refusedNodes.h"
#include "nuXmlDOM/upkeep/snapshots.h"

namespace nu {

class NodeLists;
struct NodeExtras;

/// What a document is made of and what it knows about its nodes.
class DocumentParts {
public:
    explicit DocumentParts(TNuDOMDocument& document);
    DocumentParts(const DocumentParts&) = delete;
    DocumentParts& operator=(const DocumentParts&) = delete;
    ~DocumentParts();

    // Everything below it is made in it and goes back to it, so it comes first.
    DocumentMemory memory;
    NameTable names;
    DocumentLifetime lifetime;
    Snapshots snapshots;
    RefusedNodes refused;
    /// Instructions and comments right below the document.
    NodeChain topLevel;
    TNuDOMLimits limits;
    bool isLoading = false;

    /// The lists of a node, which stay the document's until removed.
    [[nodiscard]] NodeLists* makeLists(TNuDOMNode& node);
    void freeExtras(NodeExtras& extras) noexcept;
    /// Makes a node of another document one of this, under a name of this.
    void take(TNuDOMNode& node, const NodeName* name) noexcept;
    /// A node goes: nothing refers to it any more.
    void forgetNode(TNuDOMNode& node) noexcept;
    /// A node goes to another document.
    void leaveNode(TNuDOMNode& node) noexcept;

    /// An empty vector for the members of a snapshot, with the room of former ones if there is any.
    [[nodiscard]] std::vector<TNuDOMNode*> takeRoom() noexcept;
    /// Keeps the memory of a snapshot for a later one, unless there is more already, or it is much
    /// beside what the document itself takes.
    void keepRoom(std::vector<TNuDOMNode*> nodes) noexcept;

private:
    void enterLists(NodeLists& lists) noexcept;
    void removeLists(NodeLists& lists) noexcept;

    TNuDOMDocument& document_;
    /// What has to be told when nodes go, or goes with the document.
    NodeLists* firstLists_ = nullptr;
    /// Memory of a former snapshot: fresh pages cost more than a search fills them with.
    std::vector<TNuDOMNode*> room_;
};

} // namespace nu
