#pragma once

#include "host/com/implements.h"
#include "host/sax/BSaxExt.h"
#include "nuXmlSax/handler.h"

/// A property of a reader as an object of its own, bearing the name it was asked for by.
class NUXML_API TNuSaxProperty : public TNuSAXHandlerOf<host::IInterfaceProperty> {
public:
    TNuSaxProperty(TNuSAXXMLReader& reader, std::u16string_view name);
    ~TNuSaxProperty() noexcept(false) override;

    host::SAXString getName() override { return name_; }

private:
    host::SAXString name_;
    /// The reader, if it is one that goes with its last reference.
    host::Ref<host::IUnknown> counted_;
};

/// The lexical handler as a property. Setting the value sets the reader's handler too.
class NUXML_API TNuSaxIntfProperty final : public TNuSaxProperty {
public:
    TNuSaxIntfProperty(TNuSAXXMLReader& reader, std::u16string_view name,
                       const host::Ref<host::IUnknown>& value)
        : TNuSaxProperty(reader, name), value_(value) {}
    ~TNuSaxIntfProperty() noexcept(false) override;

    host::Ref<host::IUnknown> getValue() override { return value_; }
    /// Throws host::ESAXException for a value that is no IBufferedLexicalHandler; empty is none.
    void setValue(const host::Ref<host::IUnknown>& value) override;

private:
    host::Ref<host::IUnknown> value_;
};
