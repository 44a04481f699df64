#include "host/runtime/format.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/core/element.h"
#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/nodes/nameTest.h"

// Making children

TNuDOMElement& TNuDOMElement::AddElement(std::u16string_view name) { return AddElement(name, {}); }

TNuDOMElement& TNuDOMElement::AddElement(std::u16string_view name,
                                         std::u16string_view namespaceURI) {
    return InsertElement(name, namespaceURI, rdpLast, nullptr);
}

TNuDOMElement& TNuDOMElement::InsertElement(std::u16string_view name, TNuDOMPosition position,
                                            TNuDOMNode* reference) {
    return InsertElement(name, {}, position, reference);
}

TNuDOMElement& TNuDOMElement::InsertElement(std::u16string_view name,
                                            std::u16string_view namespaceURI,
                                            TNuDOMPosition position, TNuDOMNode* reference) {
    return OwnerDocument()->_CreateElement(name, namespaceURI, this, position, reference);
}

TNuDOMComment& TNuDOMElement::AddComment(std::u16string_view text) {
    return InsertComment(text, rdpLast, nullptr);
}

TNuDOMComment& TNuDOMElement::InsertComment(std::u16string_view text, TNuDOMPosition position,
                                            TNuDOMNode* reference) {
    return static_cast<TNuDOMComment&>(OwnerDocument()->_CreateCharacterData(
        TNuDOMComment::Class, text, this, position, reference));
}

TNuDOMCDATA& TNuDOMElement::AddCDATA(std::u16string_view text) {
    return InsertCDATA(text, rdpLast, nullptr);
}

TNuDOMCDATA& TNuDOMElement::InsertCDATA(std::u16string_view text, TNuDOMPosition position,
                                        TNuDOMNode* reference) {
    return static_cast<TNuDOMCDATA&>(
        OwnerDocument()->_CreateCharacterData(TNuDOMCDATA::Class, text, this, position, reference));
}

TNuDOMText& TNuDOMElement::AddText(const TNuText& text) {
    return static_cast<TNuDOMText&>(
        OwnerDocument()->_CreateCharacterData(TNuDOMText::Class, text, this, rdpLast, nullptr));
}

// Finding and removing children

TNuDOMElement* TNuDOMElement::GetChildElement(std::u16string_view name,
                                              TNuDOMSelectOptions options) {
    nu::checkOptions(options);
    TNuDOMElement* found =
        nu::findChildElement(*this, nu::NameTest(name, options, *OwnerDocument()));
    if (found == nullptr && options.has(soRaise)) {
        throw ENuDomException(host::formatMessage(nu::messages::noChildElement, {name}));
    }
    return found == nullptr && options.has(soCreate) ? &AddElement(name) : found;
}

TNuDOMElement* TNuDOMElement::GetChildElement(std::u16string_view name,
                                              std::u16string_view namespaceURI,
                                              TNuDOMSelectOptions options) {
    nu::checkOptions(options);
    TNuDOMElement* found = nu::findChildElement(*this, [&](const TNuDOMElement& child) {
        return nu::areEqual(nu::NodeContext::name(child).local(), name, options) &&
               nu::areEqual(child.get_namespaceURI(), namespaceURI, options);
    });
    if (found == nullptr && options.has(soRaise)) {
        throw ENuDomException(
            host::formatMessage(nu::messages::noChildElementNS, {name, namespaceURI}));
    }
    return found == nullptr && options.has(soCreate) ? &AddElement(name, namespaceURI) : found;
}

TNuDOMElement& TNuDOMElement::GetChildElementEx(std::u16string_view path) {
    return *SelectSingleElement(path, {soRaise, soCaseInsensitive, soIgnoreNamespace});
}

NuRef<TNuDOMElement> TNuDOMElement::RemoveElement(std::u16string_view name) {
    TNuDOMElement* found = GetChildElement(name);
    return found != nullptr ? RemoveElement(*found) : NuRef<TNuDOMElement>();
}

NuRef<TNuDOMElement> TNuDOMElement::RemoveElement(std::u16string_view name,
                                                  std::u16string_view namespaceURI) {
    TNuDOMElement* found = GetChildElement(name, namespaceURI, {});
    return found != nullptr ? RemoveElement(*found) : NuRef<TNuDOMElement>();
}

NuRef<TNuDOMElement> TNuDOMElement::RemoveElement(TNuDOMElement& element) {
    NuRef<TNuDOMElement> taken(&element);
    element._linkToParent(nullptr, rdpLast, nullptr);
    return taken;
}
