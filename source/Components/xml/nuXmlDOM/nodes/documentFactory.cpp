#include "common/caseFolding.h"
#include "host/runtime/exception.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/core/nodeKinds.h"
#include "nuXmlDOM/nodes/makeNode.h"
#include "nuXmlDOM/upkeep/documentParts.h"
#include "nuXmlDOM/upkeep/nodeMemory.h"

namespace {

/// Frees a node that could not be finished or put where it was to go.
class Unfinished {
public:
    explicit Unfinished(TNuDOMNode& node) noexcept : node_(&node) {}
    Unfinished(const Unfinished&) = delete;
    Unfinished& operator=(const Unfinished&) = delete;
    ~Unfinished() {
        if (node_ != nullptr) {
            nu::NodeMemory::destroy(*node_);
        }
    }
    void finish() noexcept { node_ = nullptr; }

private:
    TNuDOMNode* node_;
};

} // namespace

TNuDOMNode& TNuDOMDocument::_CreateNode(const TNuDOMNodeClass& nodeClass, std::u16string_view name,
                                        std::u16string_view namespaceURI, TNuDOMNode* parent,
                                        TNuDOMPosition position, TNuDOMNode* reference) {
    parts_->lifetime.reclaim();
    TNuDOMNode& node = *nodeClass.create(this);
    Unfinished guard(node);
    if (!namespaceURI.empty()) {
        nu::NodeContext::setName(
            node, parts_->names.get(false, {}, false, {}, parts_->names.getURI(namespaceURI)));
    }
    node.set_nodeName(name);
    if (parent != nullptr) {
        node._linkToParent(parent, position, reference);
    }
    guard.finish();
    return node;
}

TNuDOMCharacterData& TNuDOMDocument::_CreateCharacterData(const TNuDOMNodeClass& nodeClass,
                                                          std::u16string_view value,
                                                          TNuDOMNode* parent,
                                                          TNuDOMPosition position,
                                                          TNuDOMNode* reference) {
    parts_->lifetime.reclaim();
    TNuDOMNode& made = *nodeClass.create(this);
    Unfinished guard(made);
    auto& node = nu::cast<TNuDOMCharacterData>(made);
    node.set_data(value);
    if (parent != nullptr) {
        node._linkToParent(parent, position, reference);
    }
    guard.finish();
    return node;
}

TNuDOMElement& TNuDOMDocument::_CreateElement(std::u16string_view name,
                                              std::u16string_view namespaceURI, TNuDOMNode* parent,
                                              TNuDOMPosition position, TNuDOMNode* reference) {
    return static_cast<TNuDOMElement&>(
        _CreateNode(TNuDOMElement::Class, name, namespaceURI, parent, position, reference));
}

TNuDOMElement& TNuDOMDocument::CreateRootNode(std::u16string_view name) {
    return CreateRootNode(name, {});
}

TNuDOMElement& TNuDOMDocument::CreateRootNode(std::u16string_view name,
                                              std::u16string_view namespaceURI) {
    TNuDOMElement& element = _CreateElement(name, namespaceURI, this, rdpLast, nullptr);
    if (documentElement_ == nullptr) {
        host::failAssertion(nu::messages::rootNodeNotSet, nu::messages::domLocation, __LINE__);
    }
    return element;
}

template <class Node>
NuRef<Node> TNuDOMDocument::createNamed(std::u16string_view name, std::u16string_view uri) {
    return static_cast<Node*>(&_CreateNode(Node::Class, name, uri, nullptr, rdpLast, nullptr));
}

template <class Node> NuRef<Node> TNuDOMDocument::createText(std::u16string_view data) {
    return static_cast<Node*>(&_CreateCharacterData(Node::Class, data, nullptr, rdpLast, nullptr));
}

NuRef<TNuDOMElement> TNuDOMDocument::createElement(std::u16string_view name) {
    return createNamed<TNuDOMElement>(name, {});
}

NuRef<TNuDOMElement> TNuDOMDocument::createElementNS(std::u16string_view namespaceURI,
                                                     std::u16string_view qualifiedName) {
    return createNamed<TNuDOMElement>(qualifiedName, namespaceURI);
}

NuRef<TNuDOMAttribute> TNuDOMDocument::createAttribute(std::u16string_view name) {
    return createNamed<TNuDOMAttribute>(name, {});
}

NuRef<TNuDOMAttribute> TNuDOMDocument::createAttributeNS(std::u16string_view namespaceURI,
                                                         std::u16string_view qualifiedName) {
    return createNamed<TNuDOMAttribute>(qualifiedName, namespaceURI);
}

NuRef<TNuDOMText> TNuDOMDocument::createTextNode(std::u16string_view data) {
    return createText<TNuDOMText>(data);
}

NuRef<TNuDOMComment> TNuDOMDocument::createComment(std::u16string_view data) {
    return createText<TNuDOMComment>(data);
}

NuRef<TNuDOMCDATA> TNuDOMDocument::createCDATASection(std::u16string_view data) {
    return createText<TNuDOMCDATA>(data);
}

NuRef<TNuDOMProcessingInstruction>
TNuDOMDocument::createProcessingInstruction(std::u16string_view target, std::u16string_view data) {
    NuRef<TNuDOMProcessingInstruction> instruction =
        createNamed<TNuDOMProcessingInstruction>(target, {});
    instruction->set_data(data);
    return instruction;
}

void TNuDOMDocument::createDocumentFragment() { raiseNotSupported(); }

void TNuDOMDocument::createEntityReference(std::u16string_view /*name*/) { raiseNotSupported(); }

void TNuDOMDocument::get_doctype() const { raiseNotSupported(); }

NuRef<TNuDOMNode> TNuDOMDocument::importNode(TNuDOMNode& /*node*/, bool /*deep*/) {
    raiseNotSupported();
}

// Processing instructions right below the document

TNuDOMProcessingInstruction* TNuDOMDocument::findInstruction(std::u16string_view target) const {
    for (auto& instruction : TNuDOMRange<TNuDOMProcessingInstruction>(parts().topLevel.first())) {
        if (nu::NodeContext::name(instruction).qualified() == target) {
            return &instruction;
        }
    }
    return nullptr;
}

NuXmlString TNuDOMDocument::GetProcessingInstruction(std::u16string_view target) const {
    const TNuDOMProcessingInstruction* found = findInstruction(target);
    return found != nullptr ? found->get_data() : NuXmlString();
}

void TNuDOMDocument::SetProcessingInstruction(std::u16string_view target,
                                              std::u16string_view data) {
    if (TNuDOMProcessingInstruction* found = findInstruction(target)) {
        found->set_data(data);
        return;
    }
    // Deliberate: letter case counts for the target but not for the place, so "XML" becomes a
    // second declaration in front of "xml".
    const NuRef<TNuDOMProcessingInstruction> made = createProcessingInstruction(target, data);
    made->_linkToParent(this, NuEqualFolded(target, u"xml") ? rdpFirst : rdpLast, nullptr);
}

void TNuDOMDocument::AddProcessingInstruction(std::u16string_view target,
                                              std::u16string_view data) {
    SetProcessingInstruction(target, data);
}
