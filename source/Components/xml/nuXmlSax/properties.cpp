#include "nuXmlSax/properties.h"

#include "nuXmlSax/messages.h"
#include "nuXmlSax/reader.h"

TNuSaxProperty::TNuSaxProperty(TNuSAXXMLReader& reader, std::u16string_view name)
    : TNuSAXHandlerOf(reader), name_(name), counted_(reader.IsCounted() ? &reader : nullptr) {}

TNuSaxProperty::~TNuSaxProperty() noexcept(false) = default;
TNuSaxIntfProperty::~TNuSaxIntfProperty() noexcept(false) = default;

void TNuSaxIntfProperty::setValue(const host::Ref<host::IUnknown>& value) {
    const auto handler = value.as<host::IBufferedLexicalHandler>();
    if (value && !handler) {
        throw host::ESAXException(nu::messages::noLexicalHandler);
    }
    Reader().setLexicalHandler(handler);
    value_ = value;
}
