#include <algorithm>
#include <string_view>
#include <vector>

#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/core/elementLinks.h"
#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/core/nodeKinds.h"
#include "nuXmlDOM/core/nodeLinks.h"
#include "nuXmlDOM/core/nodeText.h"
#include "nuXmlDOM/nodes/makeNode.h"
#include "nuXmlDOM/upkeep/documentParts.h"
#include "nuXmlDOM/upkeep/nodeMemory.h"
#include "nuXmlDOM/upkeep/treeWalk.h"
#include "nuXmlParser/namespaceNames.h"

// Copies of nodes, with everything below them.

namespace nu {

namespace {

/// Makes one copy in a document. What was made goes again if it is not taken.
class NodeCopier {
public:
    explicit NodeCopier(TNuDOMDocument& document) noexcept : document_(document) {}
    NodeCopier(const NodeCopier&) = delete;
    NodeCopier& operator=(const NodeCopier&) = delete;
    ~NodeCopier() {
        if (root_ != nullptr) {
            NodeMemory::destroySubtree(*root_);
        }
    }

    /// The whole of a node, outside of the tree.
    TNuDOMNode& copy(const TNuDOMNode& source) {
        copyOne(source, nullptr);
        auto* place = as<TNuDOMElement>(root_);
        const TNuDOMNode* from = place != nullptr ? childrenOf(source)->first() : nullptr;
        while (from != nullptr) {
            // 1. One node, below the copy of its parent.
            TNuDOMNode& made = copyOne(*from, place);
            // 2. Down, else on, else up until it goes on.
            const NodeChain* below = childrenOf(*from);
            if (below != nullptr && !below->empty()) {
                place = static_cast<TNuDOMElement*>(&made);
                from = below->first();
                continue;
            }
            while (NodeLinks::next(*from) == nullptr) {
                from = NodeLinks::parent(*from);
                if (from == &source) {
                    return *root_;
                }
                place = NodeLinks::parentElement(*place);
            }
            from = NodeLinks::next(*from);
        }
        return *root_;
    }

    /// The copy has an owner, or is to have one.
    void finish() noexcept { root_ = nullptr; }

private:
    /// The node without what is below it, but with its attributes.
    TNuDOMNode& copyOne(const TNuDOMNode& source, TNuDOMElement* place) {
        switch (source.get_nodeType()) {
        case host::ELEMENT_NODE: {
            auto& made = attach<TNuDOMElement>(source, place);
            copyAttributes(source, made);
            return made;
        }
        case host::ATTRIBUTE_NODE:
            return copyLeaf<TNuDOMAttribute>(source, place);
        case host::TEXT_NODE:
            return copyLeaf<TNuDOMText>(source, place);
        case host::CDATA_SECTION_NODE:
            return copyLeaf<TNuDOMCDATA>(source, place);
        case host::COMMENT_NODE:
            return copyLeaf<TNuDOMComment>(source, place);
        case host::PROCESSING_INSTRUCTION_NODE:
            return copyLeaf<TNuDOMProcessingInstruction>(source, place);
        default:
            throw ENuDomHierarchyRequest(messages::noCopyOfDocument);
        }
    }
    template <class Node> Node& copyLeaf(const TNuDOMNode& source, TNuDOMElement* place) {
        Node& made = attach<Node>(source, place);
        NodeText::copy(source, made, document_.parts().memory);
        return made;
    }
    void copyAttributes(const TNuDOMNode& source, TNuDOMElement& target) {
        TNuDOMAttribute* last = nullptr;
        for (const TNuDOMNode* attribute = firstAttributeOf(source); attribute != nullptr;
             attribute = NodeLinks::next(*attribute)) {
            auto& made = NodeMemory::make<TNuDOMAttribute>(document_, nameOf(*attribute));
            ElementLinks::append(target, last, made);
            NodeText::copy(*attribute, made, document_.parts().memory);
            last = &made;
        }
    }
    /// Makes a node and gives it its place, so that it goes with the others if anything fails.
    template <class Node> Node& attach(const TNuDOMNode& source, TNuDOMElement* place) {
        Node& made = NodeMemory::make<Node>(document_, nameOf(source));
        if (place == nullptr) {
            root_ = &made;
        } else if constexpr (!std::is_same_v<Node, TNuDOMAttribute>) {
            ElementLinks::append(*place, made);
        }
        return made;
    }
    const NodeName* nameOf(const TNuDOMNode& source) {
        const NodeName& name = NodeContext::name(source);
        if (source.OwnerDocument() == &document_) {
            return &name;
        }
        return name.isNamed() ? document_.parts().names.get(name)
                              : document_.parts().names.nameless();
    }

    TNuDOMDocument& document_;
    TNuDOMNode* root_ = nullptr;
};

/// Whether the name, or one below, is in the namespace that `declaration` declares as far as
/// prefixes tell.
bool isUsed(const TNuDOMNode& root, const NodeName& declaration) {
    const bool isDefault = !declaration.hasPrefix();
    return firstInSubtree(root, [&](const TNuDOMNode& node) {
               const NodeName& name = NodeContext::name(node);
               return isDefault ? is<TNuDOMElement>(node) && !name.hasPrefix()
                                : name.hasPrefix() && name.prefix() == declaration.local();
           }) != nullptr;
}

/// The namespace that the nearest declaration of that name gives, from `element` up.
NuXmlString declaredAt(const TNuDOMElement* element, std::u16string_view declaration) {
    for (; element != nullptr; element = NodeLinks::parentElement(*element)) {
        if (const TNuDOMAttribute* found = element->getAttributeNode(declaration)) {
            return found->get_nodeValue();
        }
    }
    return {};
}

/// Declares on a copy that is to stand below `place` what it uses of the declarations around the
/// original, so that its names mean there what they meant here.
void declareUsed(const TNuDOMNode& source, TNuDOMElement& copy, const TNuDOMElement* place) {
    std::vector<std::u16string_view> seen;
    const auto declare = [&](const NodeName& name, const NuXmlString& uri) {
        const std::u16string_view declaration = name.qualified();
        if (std::find(seen.begin(), seen.end(), declaration) != seen.end()) {
            return;
        }
        seen.push_back(declaration);
        if (declaredAt(place, declaration) != uri && !copy.HasAttribute(declaration) &&
            isUsed(copy, name)) {
            copy.setAttribute(declaration, uri);
        }
    };
    // 1. What is declared around the original, the nearest first.
    for (const TNuDOMElement* scope = NodeLinks::parentElement(source); scope != nullptr;
         scope = NodeLinks::parentElement(*scope)) {
        for (const TNuDOMAttribute& attribute : scope->Attributes()) {
            if (attribute.get_IsNamespace()) {
                declare(NodeContext::name(attribute), attribute.get_nodeValue());
            }
        }
    }
    // 2. No default namespace, where the new place has one.
    if (place != nullptr) {
        declare(*place->OwnerDocument()->parts().names.get(declarationPrefix), {});
    }
}

} // namespace

} // namespace nu

TNuDOMNode& TNuDOMNode::insertCopy(const TNuDOMNode& node, TNuDOMPosition position,
                                   TNuDOMNode* reference) {
    const nu::DocumentLifetime::Work work(OwnerDocument()->parts().lifetime);
    nu::NodeCopier copier(*OwnerDocument());
    TNuDOMNode& made = copier.copy(node);
    const bool mayDeclare = OwnerDocument()->parts().names.hasDeclarations() ||
                            node.OwnerDocument()->parts().names.hasDeclarations();
    if (made.get_nodeType() == host::ELEMENT_NODE && mayDeclare) {
        nu::declareUsed(node, static_cast<TNuDOMElement&>(made), nu::as<TNuDOMElement>(this));
    }
    made._linkToParent(this, position, reference);
    copier.finish();
    return made;
}

NuRef<TNuDOMNode> TNuDOMDocument::copy(const TNuDOMNode& node) {
    nu::NodeCopier copier(*this);
    NuRef<TNuDOMNode> made(&copier.copy(node));
    copier.finish();
    return made;
}

NuRef<TNuDOMDocument> TNuDOMDocument::CreateCopy() const {
    NuRef<TNuDOMDocument> made = Create();
    made->SetLimits(Limits());
    for (const TNuDOMNode& node : TNuDOMRange<const TNuDOMNode>(parts().topLevel.first())) {
        made->AddCopy(node);
    }
    if (documentElement_ != nullptr) {
        made->AddCopy(*documentElement_);
    }
    return made;
}
