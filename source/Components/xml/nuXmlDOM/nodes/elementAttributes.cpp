#include "host/runtime/format.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/core/element.h"
#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/nodes/nameTest.h"
#include "nuXmlDOM/upkeep/attributeIndex.h"
#include "nuXmlDOM/upkeep/treeWalk.h"

namespace {

/// The first attribute for which `test` holds; null without one.
template <class Test> TNuDOMAttribute* findIf(const TNuDOMElement& element, Test&& test) {
    for (TNuDOMAttribute& attribute : nu::attributesOf(element)) {
        if (test(attribute)) {
            return &attribute;
        }
    }
    return nullptr;
}

TNuDOMAttribute* findAttribute(const TNuDOMElement& element, std::u16string_view name,
                               TNuDOMSelectOptions options) {
    const nu::NameTest test(name, options, *element.OwnerDocument());
    return test.isExact() ? nu::findAttribute(element, test.canonical()) : findIf(element, test);
}

TNuDOMAttribute* findAttribute(const TNuDOMElement& element, std::u16string_view localName,
                               std::u16string_view namespaceURI, TNuDOMSelectOptions options) {
    if (!options.has(soCaseInsensitive)) {
        return nu::findAttribute(element, localName, namespaceURI);
    }
    return findIf(element, [&](const TNuDOMAttribute& attribute) {
        return nu::areEqual(attribute.get_localName(), localName, options) &&
               nu::areEqual(attribute.get_namespaceURI(), namespaceURI, options);
    });
}

/// What is found, or what the options want when nothing is.
TNuDOMAttribute* foundOr(TNuDOMAttribute* found, TNuDOMElement& element, std::u16string_view name,
                         std::u16string_view namespaceURI, TNuDOMSelectOptions options) {
    if (found == nullptr && options.has(soRaise)) {
        throw ENuDomNotFound(host::formatMessage(nu::messages::noAttribute, {name}));
    }
    if (found == nullptr && options.has(soCreate)) {
        found = static_cast<TNuDOMAttribute*>(&element.OwnerDocument()->_CreateNode(
            TNuDOMAttribute::Class, name, namespaceURI, &element, rdpLast, nullptr));
    }
    return found;
}

NuXmlString valueOf(const TNuDOMAttribute* attribute) {
    return attribute != nullptr ? attribute->get_nodeValue() : NuXmlString();
}

void deleteIfThere(TNuDOMAttribute* attribute) {
    if (attribute != nullptr) {
        attribute->_delete();
    }
}

} // namespace

TNuDOMAttribute* TNuDOMElement::getAttributeNodeObj(std::u16string_view name,
                                                    TNuDOMSelectOptions options) {
    nu::checkOptions(options);
    return foundOr(findAttribute(*this, name, options), *this, name, {}, options);
}

TNuDOMAttribute* TNuDOMElement::getAttributeNodeObj(std::u16string_view localName,
                                                    std::u16string_view namespaceURI,
                                                    TNuDOMSelectOptions options) {
    nu::checkOptions(options);
    return foundOr(findAttribute(*this, localName, namespaceURI, options), *this, localName,
                   namespaceURI, options);
}

TNuDOMAttribute* TNuDOMElement::AttribNodeByName(std::u16string_view name,
                                                 TNuDOMSelectOptions options) {
    return getAttributeNodeObj(name, options);
}

NuXmlString TNuDOMElement::AttributeByName(std::u16string_view name, TNuDOMSelectOptions options) {
    return valueOf(getAttributeNodeObj(name, options));
}

NuXmlString TNuDOMElement::AttributeByName(std::u16string_view localName,
                                           std::u16string_view namespaceURI,
                                           TNuDOMSelectOptions options) {
    return valueOf(getAttributeNodeObj(localName, namespaceURI, options));
}

NuXmlString TNuDOMElement::getAttribute(std::u16string_view name) const {
    return valueOf(getAttributeNode(name));
}

const TNuDOMAttribute* TNuDOMElement::getAttributeNode(std::u16string_view name) const {
    return const_cast<TNuDOMElement&>(*this).getAttributeNode(name);
}

TNuDOMAttribute* TNuDOMElement::getAttributeNode(std::u16string_view name) {
    return findAttribute(*this, name, {});
}

NuXmlString TNuDOMElement::getAttributeNS(std::u16string_view namespaceURI,
                                          std::u16string_view localName) const {
    return valueOf(getAttributeNodeNS(namespaceURI, localName));
}

const TNuDOMAttribute* TNuDOMElement::getAttributeNodeNS(std::u16string_view namespaceURI,
                                                         std::u16string_view localName) const {
    return const_cast<TNuDOMElement&>(*this).getAttributeNodeNS(namespaceURI, localName);
}

TNuDOMAttribute* TNuDOMElement::getAttributeNodeNS(std::u16string_view namespaceURI,
                                                   std::u16string_view localName) {
    return nu::findAttribute(*this, localName, namespaceURI);
}

bool TNuDOMElement::HasAttribute(std::u16string_view name) const {
    return getAttributeNode(name) != nullptr;
}

bool TNuDOMElement::HasAttributeNS(std::u16string_view namespaceURI,
                                   std::u16string_view localName) const {
    return getAttributeNodeNS(namespaceURI, localName) != nullptr;
}

void TNuDOMElement::setAttribute(std::u16string_view name, std::u16string_view value) {
    getAttributeNodeObj(name, soCreate)->set_nodeValue(value);
}

void TNuDOMElement::setAttributeNS(std::u16string_view namespaceURI,
                                   std::u16string_view qualifiedName, std::u16string_view value) {
    const std::u16string_view localName = qualifiedName.substr(qualifiedName.find(cNuColon) + 1);
    TNuDOMAttribute* found = getAttributeNodeNS(namespaceURI, localName);
    if (found == nullptr) {
        found = getAttributeNode(qualifiedName);
    }
    foundOr(found, *this, qualifiedName, namespaceURI, soCreate)->set_nodeValue(value);
}

void TNuDOMElement::setAttributeNode(TNuDOMAttribute& attribute) {
    attribute._linkToParent(this, rdpLast, nullptr);
}

void TNuDOMElement::removeAttribute(std::u16string_view name) {
    deleteIfThere(getAttributeNode(name));
}

void TNuDOMElement::removeAttributeNS(std::u16string_view namespaceURI,
                                      std::u16string_view localName) {
    deleteIfThere(getAttributeNodeNS(namespaceURI, localName));
}

void TNuDOMElement::removeAttributeNode(const TNuDOMAttribute& attribute) {
    removeAttribute(nu::NodeContext::name(attribute).qualified());
}
