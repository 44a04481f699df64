#include "common/caseFolding.h"
#include "host/runtime/variant.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/core/element.h"
#include "nuXmlDOM/upkeep/documentParts.h"
#include "nuXmlDOM/values/schemaPrefix.h"
#include "nuXmlParser.h"

namespace {

using nu::findSchemaPrefix;
using nu::SchemaPrefix;

host::VarType typeNamed(std::u16string_view name) {
    host::VarType type = host::varEmpty;
    try {
        type = NuSchemaTypeToVariantType(name, true);
    } catch (const host::Exception&) {
        type = host::varEmpty; // unknown, which has a text of its own here
    }
    if (type == host::varEmpty) {
        throw ENuDomException(nu::messages::unknownType);
    }
    return type;
}

bool isStringType(host::VarType type) noexcept {
    return type == host::varWideString || type == host::varAnsiString || type == host::varString;
}

bool hasTextChild(const TNuDOMElement& element) {
    return !TNuDOMRange<const TNuDOMText>(element.FirstChild()).empty();
}

/// Writes a value with its type where the types have a namespace, else as text alone.
template <class Write>
void setTyped(TNuDOMElement& element, const host::Variant& value, Write&& write) {
    if (element.FindNamespace(nu::instanceNamespace, true) != nullptr) {
        element.SetVarValue(value);
    } else {
        element.set_nodeValue(write());
    }
}

} // namespace

host::Variant TNuDOMElement::GetVarValue() const {
    // 1. No value.
    const SchemaPrefix instance = findSchemaPrefix(*this, nu::instanceNamespace);
    const TNuDOMAttribute* nil = getAttributeNode(instance.name(u"nil"));
    if (nil != nullptr && NuEqualAsciiWord(nil->get_nodeValue(), u"true")) {
        return host::null;
    }
    // 2. A value of the type that is named.
    if (const TNuDOMAttribute* type = getAttributeNode(instance.name(u"type"))) {
        const NuXmlString name = type->get_nodeValue();
        if (name.empty()) {
            throw ENuDomException(nu::messages::emptyType);
        }
        const host::VarType varType = typeNamed(name);
        return isStringType(varType) ? host::Variant(get_nodeValue())
                                     : NuXmlToVariant(get_nodeValue(), varType);
    }
    // 3. Text, if there is any.
    return hasTextChild(*this) ? host::Variant(get_nodeValue()) : host::Variant(host::null);
}

void TNuDOMElement::SetVarValue(const host::Variant& value) {
    const nu::DocumentLifetime::Work work(OwnerDocument()->parts().lifetime);
    const SchemaPrefix instance = findSchemaPrefix(*this, nu::instanceNamespace);
    const NuXmlString nil = instance.name(u"nil");
    // 1. No value. Deliberate: a type that is there already stays.
    if (value.IsEmpty() || value.IsNull()) {
        setAttribute(nil, u"true");
        set_nodeValue({});
        return;
    }
    // 2. What may fail comes before anything changes.
    const bool isString = value.IsString();
    const NuXmlString text = isString ? NuVarToWideString(value) : NuVariantToXml(value);
    // Deliberate: text has its type only where the types have a namespace, other values always;
    // without a namespace as a bare "type".
    const bool namesType = !isString || instance.isDeclared;
    const NuXmlString type =
        namesType ? findSchemaPrefix(*this, nu::schemaNamespace).name(NuSchemaType(value))
                  : NuXmlString();
    // 3. The text, and the type.
    removeAttribute(nil);
    set_nodeValue(text);
    if (namesType) {
        setAttribute(instance.name(u"type"), type);
    }
}

NuXmlString TNuDOMElement::GetAsString() const { return get_nodeValue(); }

std::int32_t TNuDOMElement::GetAsInteger() const { return NuXMLToIntDef(get_nodeValue(), 0); }

std::int64_t TNuDOMElement::GetAsInt64() const { return NuXMLToInt64Def(get_nodeValue(), 0); }

bool TNuDOMElement::GetAsBoolean() const { return NuXMLToBool(get_nodeValue()); }

double TNuDOMElement::GetAsDouble() const { return NuXMLToDoubleDef(get_nodeValue(), 0); }

host::TDateTime TNuDOMElement::GetAsDateTime() const {
    return NuXMLToDateTimeDef(get_nodeValue(), host::TDateTime{});
}

void TNuDOMElement::SetAsString(std::u16string_view value) {
    setTyped(*this, value, [value] { return value; });
}

void TNuDOMElement::SetAsInteger(std::int32_t value) {
    setTyped(*this, value, [value] { return NuIntToXML(value); });
}

void TNuDOMElement::SetAsInt64(std::int64_t value) {
    setTyped(*this, value, [value] { return NuInt64ToXML(value); });
}

void TNuDOMElement::SetAsBoolean(bool value) {
    setTyped(*this, value, [value] { return NuBoolToXML(value); });
}

void TNuDOMElement::SetAsDouble(double value) {
    setTyped(*this, value, [value] { return NuDoubleToXML(value); });
}

void TNuDOMElement::SetAsDateTime(host::TDateTime value) {
    setTyped(*this, value, [value] { return NuDateTimeToXML(value, xdtfLocal); });
}

host::Variant TNuDOMElement::GetValueEx(std::u16string_view path) {
    return GetChildElementEx(path).GetVarValue();
}
