#include "nuXmlDOM/core/attribute.h"

#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/element.h"
#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/core/nodeLinks.h"
#include "nuXmlDOM/core/nodeText.h"
#include "nuXmlDOM/nodes/makeNode.h"
#include "nuXmlDOM/nodes/namespaces.h"
#include "nuXmlDOM/storage/escapedText.h"
#include "nuXmlDOM/upkeep/documentParts.h"
#include "nuXmlParser/namespaceNames.h"

const TNuDOMNodeClass TNuDOMAttribute::Class{u"TNuDOMAttribute", host::ATTRIBUTE_NODE,
                                             nu::createNode<TNuDOMAttribute>};

NuXmlString TNuDOMAttribute::get_nodeValue() const {
    NuXmlString value;
    nu::NodeText::appendValue(*this, value);
    return value;
}

void TNuDOMAttribute::set_nodeValue(std::u16string_view value) {
    nu::assignEscaped(text_, OwnerDocument()->parts().memory, value);
}

bool TNuDOMAttribute::get_IsNamespace() const noexcept {
    return nu::NodeContext::name(*this).declaresNamespace();
}

NuXmlString TNuDOMAttribute::get_prefix() const {
    return get_IsNamespace() ? NuXmlString(nu::declarationPrefix) : TNuDOMNode::get_prefix();
}

NuXmlString TNuDOMAttribute::get_localName() const {
    const nu::NodeName& name = nu::NodeContext::name(*this);
    return name.declaresNamespace() && !name.hasPrefix() ? NuXmlString()
                                                         : NuXmlString(name.local());
}

NuXmlString TNuDOMAttribute::get_namespaceURI() const {
    const TNuDOMElement* element = get_ownerElement();
    return get_IsNamespace() || element == nullptr
               ? NuXmlString()
               : nu::resolveNamespace(nu::NodeContext::name(*this), *element);
}

const TNuDOMElement* TNuDOMAttribute::get_ownerElement() const {
    return const_cast<TNuDOMAttribute&>(*this).get_ownerElement();
}

TNuDOMElement* TNuDOMAttribute::get_ownerElement() { return nu::NodeLinks::parentElement(*this); }
