#pragma once

#include <string_view>

#include "host/runtime/valueType.h"
#include "host/runtime/variant.h"
#include "nuObj2Xml/textBuffer.h"

namespace nu {

/// The name of a value's type in XML Schema. For kinds of one piece: those with a name of their own
/// before they are written. A variant's depends on what it holds, see NuSchemaType.
NuXmlString schemaTypeOf(const host::ValueType& type);

/// Whether a value is written as text and not as elements.
constexpr bool isTextKind(host::ValueKind kind) noexcept {
    return kind <= host::ValueKind::StringArray;
}

/// Writes values as the content of elements. Keeps memory for what has to be put together.
template <class Unit> class ValueWriter {
public:
    explicit ValueWriter(TextBuffer<Unit>& out) noexcept : out_(out) {}

    /// Writes a value of one of the kinds that are text. Throws host::EConvertError for a date that
    /// cannot be written.
    void write(const host::ValueType& type, const void* value);
    /// Writes what a variant holds.
    void write(const host::Variant& value);

private:
    void writeInteger(const host::ValueType& type, const void* value);
    void writeNames(const host::ValueType& type, const void* value);
    template <class Number> void writeNumber(Number number);

    TextBuffer<Unit>& out_;
    NuXmlString scratch_;
};

extern template class ValueWriter<char>;
extern template class ValueWriter<char16_t>;

} // namespace nu
