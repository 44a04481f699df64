#include "nuXmlDOM/nodes/namespaces.h"

#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/element.h"
#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/core/nodeLinks.h"
#include "nuXmlDOM/upkeep/attributeIndex.h"
#include "nuXmlDOM/upkeep/documentParts.h"
#include "nuXmlDOM/upkeep/treeWalk.h"
#include "nuXmlParser/namespaceNames.h"

namespace nu {

namespace {

/// The name of the attribute that declares the prefix of `name`; null when no node of the document
/// ever had it.
const NodeName* declarationOf(const NodeName& name, const TNuDOMElement& element) {
    const NameTable& names = element.OwnerDocument()->parts().names;
    if (!names.hasDeclarations()) {
        return nullptr;
    }
    return name.hasPrefix() ? names.find(declarationPrefix, name.prefix())
                            : names.find(declarationPrefix);
}

} // namespace

const TNuDOMAttribute* findDeclaration(const NodeName& name, const TNuDOMElement& element) {
    const NodeName* canonical = declarationOf(name, element);
    const TNuDOMElement* scope = canonical != nullptr ? &element : nullptr;
    // The nearest element with an attribute of that name decides.
    for (; scope != nullptr; scope = NodeLinks::parentElement(*scope)) {
        if (const TNuDOMAttribute* found = findAttribute(*scope, canonical)) {
            return found;
        }
    }
    return nullptr;
}

const TNuDOMAttribute* DeclarationSearch::find(const NodeName& name, const TNuDOMElement& element) {
    const NodeName* canonical = declarationOf(name, element);
    if (canonical == nullptr) {
        return nullptr;
    }
    // 1. Up to the declaration, or to an element for which it is known.
    const TNuDOMAttribute* found = nullptr;
    std::size_t levels = 0;
    for (const TNuDOMElement* scope = &element; scope != nullptr && found == nullptr;
         scope = NodeLinks::parentElement(*scope)) {
        if (!known_.empty()) {
            const auto known = known_.find({canonical, scope});
            if (known != known_.end()) {
                found = known->second;
                break;
            }
        }
        found = findAttribute(*scope, canonical);
        ++levels;
    }
    // 2. After a long way it is kept where the neighbours and everything below will come by.
    constexpr std::size_t longWay = 16;
    if (levels > longWay) {
        known_.emplace(Place(canonical, NodeLinks::parentElement(element)), found);
    }
    return found;
}

NuXmlString resolveNamespace(const NodeName& name, const TNuDOMElement& element) {
    const TNuDOMAttribute* found = findDeclaration(name, element);
    return found != nullptr ? found->get_nodeValue() : NuXmlString();
}

} // namespace nu

NuXmlString TNuDOMElement::get_namespaceURI() const {
    return nu::resolveNamespace(nu::NodeContext::name(*this), *this);
}

namespace {

/// The first declaration on `element` or, when `recursive`, on the nearest around it for which
/// `test` holds.
template <class Test>
TNuDOMAttribute* findDeclarationIf(const TNuDOMElement& element, bool recursive, Test&& test) {
    for (const TNuDOMElement* scope = &element; scope != nullptr;
         scope = recursive ? nu::NodeLinks::parentElement(*scope) : nullptr) {
        for (TNuDOMAttribute& attribute : nu::attributesOf(*scope)) {
            if (attribute.get_IsNamespace() && test(attribute)) {
                return &attribute;
            }
        }
    }
    return nullptr;
}

} // namespace

TNuDOMAttribute* TNuDOMElement::FindNamespace(std::u16string_view uri, bool recursive) {
    return findDeclarationIf(*this, recursive, [uri](const TNuDOMAttribute& attribute) {
        return attribute.get_nodeValue() == uri;
    });
}

TNuDOMAttribute* TNuDOMElement::FindNamespace(std::u16string_view uri, std::u16string_view prefix,
                                              bool recursive) {
    return findDeclarationIf(*this, recursive, [uri, prefix](const TNuDOMAttribute& attribute) {
        return attribute.get_localName() == prefix && attribute.get_nodeValue() == uri;
    });
}
