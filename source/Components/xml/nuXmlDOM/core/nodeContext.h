#pragma once

#include "nuXmlDOM/core/node.h"
#include "nuXmlDOM/storage/nodeName.h"

namespace nu {

class NodeLists;

/// What only few nodes have: those that an application has looked at through an interface or a
/// list.
struct NodeExtras : ObjectContext {
    const NodeName* name = nullptr;
    Face* face = nullptr;
    NodeLists* lists = nullptr;
};

/// What the one pointer of a node leads to beside its document: its name, and what few have.
class NodeContext {
public:
    [[nodiscard]] static const NodeName& name(const TNuDOMNode& node) noexcept {
        return node.hasFlag(hasExtras) ? *static_cast<const NodeExtras*>(node.context_)->name
                                       : *static_cast<const NodeName*>(node.context_);
    }
    static void setName(TNuDOMNode& node, const NodeName* name) noexcept {
        if (NodeExtras* own = extrasIfAny(node)) {
            own->name = name;
        } else {
            node.context_ = name;
        }
    }

    [[nodiscard]] static NodeExtras* extrasIfAny(const TNuDOMNode& node) noexcept {
        // Names are shared and never change; the extras of a node are its own.
        return node.hasFlag(hasExtras)
                   ? const_cast<NodeExtras*>(static_cast<const NodeExtras*>(node.context_))
                   : nullptr;
    }
    /// The same, which are made if there are none. Throws std::bad_alloc.
    [[nodiscard]] static NodeExtras& extras(TNuDOMNode& node);

    /// The lists of a node; null before the first was asked for.
    [[nodiscard]] static NodeLists* listsIfAny(const TNuDOMNode& node) noexcept {
        const NodeExtras* own = extrasIfAny(node);
        return own != nullptr ? own->lists : nullptr;
    }
    /// The same, which are made if there are none. Throws std::bad_alloc.
    [[nodiscard]] static NodeLists& lists(TNuDOMNode& node);
};

} // namespace nu
