#include "nuXmlDOM/core/namespaces.h"

#include "nuXmlDOM/core/attributeIndex.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/element.h"
#include "nuXmlDOM/core/nodeAccess.h"

namespace nu {

namespace {

constexpr std::u16string_view declaration = u"xmlns";

} // namespace

const TNuDOMAttribute* findDeclaration(const NodeName& name, const TNuDOMElement& element) {
    // 1. A name that no node of the document ever had declares nothing.
    const NameTable& names = element.OwnerDocument()->names();
    if (!names.hasDeclarations()) {
        return nullptr;
    }
    const NodeName* plain =
        name.hasPrefix() ? names.find(declaration, name.prefix()) : names.find(declaration);
    if (plain == nullptr) {
        return nullptr;
    }
    // 2. The nearest element with an attribute of that name decides.
    for (const TNuDOMElement* scope = &element; scope != nullptr;
         scope = NodeAccess::parentElement(*scope)) {
        if (const TNuDOMAttribute* found = findAttribute(*scope, plain)) {
            return found;
        }
    }
    return nullptr;
}

NuXmlString resolveNamespace(const NodeName& name, const TNuDOMElement& element) {
    const TNuDOMAttribute* found = findDeclaration(name, element);
    return found != nullptr ? found->get_nodeValue() : NuXmlString();
}

} // namespace nu

NuXmlString TNuDOMElement::get_namespaceURI() const {
    return nu::resolveNamespace(nu::NodeAccess::name(*this), *this);
}

namespace {

/// The first declaration on `element` or, when `recursive`, on the nearest around it for which
/// `test` holds.
template <class Test>
TNuDOMAttribute* findDeclarationIf(const TNuDOMElement& element, bool recursive, Test&& test) {
    for (const TNuDOMElement* scope = &element; scope != nullptr;
         scope = recursive ? nu::NodeAccess::parentElement(*scope) : nullptr) {
        for (TNuDOMAttribute& attribute : scope->Attributes()) {
            if (attribute.get_IsNamespace() && test(attribute)) {
                return &attribute;
            }
        }
    }
    return nullptr;
}

} // namespace

TNuDOMAttribute* TNuDOMElement::FindNamespace(std::u16string_view uri, bool recursive) const {
    return findDeclarationIf(*this, recursive, [uri](const TNuDOMAttribute& attribute) {
        return attribute.get_nodeValue() == uri;
    });
}

TNuDOMAttribute* TNuDOMElement::FindNamespace(std::u16string_view uri, std::u16string_view prefix,
                                              bool recursive) const {
    return findDeclarationIf(*this, recursive, [uri, prefix](const TNuDOMAttribute& attribute) {
        return attribute.get_localName() == prefix && attribute.get_nodeValue() == uri;
    });
}
