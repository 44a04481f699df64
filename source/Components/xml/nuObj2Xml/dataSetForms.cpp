#include "nuObj2Xml/dataSetForms.h"

#include <optional>
#include <vector>

#include "common/caseFolding.h"
#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "host/runtime/published.h"
#include "nuXmlDOM/core/element.h"
#include "nuXmlDOM/values/schemaPrefix.h"
#include "nuXmlParser.h"

namespace {

using host::TFieldType;

/// What the elements of a field have in common.
struct Column {
    NuXmlString name;
    NuXmlString schemaType;
    TFieldType type;
};

std::vector<Column> columnsOf(const host::IDataSet& data, const TNuDOMElement& rows) {
    const nu::SchemaPrefix schema = nu::findSchemaPrefix(rows, nu::schemaNamespace);
    std::vector<Column> columns;
    for (std::size_t field = 0; field < data.FieldCount(); ++field) {
        const TFieldType type = data.FieldType(field);
        columns.push_back({data.FieldName(field),
                           schema.name(NuFieldTypeToSchemaType(static_cast<std::int32_t>(type))),
                           type});
        if (!host::detail::isElementName(columns.back().name)) {
            throw host::Exception(host::formatMessage(
                u"No element can be named like the field \"%s\"!", {columns.back().name}));
        }
    }
    return columns;
}

bool isText(TFieldType type) noexcept {
    return type == TFieldType::String || type == TFieldType::Memo || type == TFieldType::WideString;
}

NuXmlString textOf(const host::Variant& value, TFieldType type) {
    if (isText(type)) {
        return NuVarToWideString(value);
    }
    if (type == TFieldType::Date) {
        return NuDateToXML(value.AsDateTime());
    }
    if (type == TFieldType::Time) {
        return NuTimeToXML(value.AsDateTime());
    }
    return NuVariantToXml(value);
}

/// The type that a field's text is read as.
host::VarType variantTypeOf(TFieldType type) noexcept {
    switch (type) {
    case TFieldType::Boolean:
        return host::varBoolean;
    case TFieldType::Float:
    case TFieldType::Bcd:
        return host::varDouble;
    case TFieldType::Currency:
        return host::varCurrency;
    case TFieldType::Date:
    case TFieldType::Time:
    case TFieldType::DateTime:
        return host::varDate;
    case TFieldType::String:
    case TFieldType::SmallInt:
    case TFieldType::Integer:
    case TFieldType::Word:
    case TFieldType::AutoInc:
    case TFieldType::Memo:
    case TFieldType::WideString:
    case TFieldType::LargeInt:
        break;
    }
    // The data set sees to the range of its integers.
    return host::varInt64;
}

/// The value of an attribute of XML Schema instances, with its prefix or literally "xsi:", or bare.
std::optional<NuXmlString> instanceAttribute(const TNuDOMElement& element,
                                             const nu::SchemaPrefix& prefix,
                                             std::u16string_view local) {
    for (const NuXmlString& name :
         {prefix.name(local), u"xsi:" + NuXmlString(local), NuXmlString(local)}) {
        if (const TNuDOMAttribute* attribute = element.getAttributeNode(name)) {
            return attribute->get_nodeValue();
        }
    }
    return std::nullopt;
}

host::Variant valueOf(const TNuDOMElement& element, TFieldType type,
                      const nu::SchemaPrefix& instance) {
    const auto nil = instanceAttribute(element, instance, u"nil");
    if (nil && NuEqualAsciiWord(*nil, u"true")) {
        return host::null;
    }
    const NuXmlString text = element.get_nodeValue();
    if (isText(type)) {
        return text;
    }
    return text.empty() ? host::Variant(host::null) : NuXmlToVariant(text, variantTypeOf(type));
}

void readRecord(const TNuDOMElement& row, host::IDataSet& data, std::size_t record,
                const nu::SchemaPrefix& instance) {
    for (const TNuDOMElement& child : row.ChildElements()) {
        const std::ptrdiff_t found = host::findField(data, child.get_localName());
        if (found < 0) {
            continue;
        }
        const auto field = static_cast<std::size_t>(found);
        try {
            data.SetValue(field, valueOf(child, data.FieldType(field), instance));
        } catch (const host::EConvertError& error) {
            throw host::EConvertError(host::formatMessage(
                u"%s (at %s of record %d)", {error.Message(), data.FieldName(field), record}));
        }
    }
}

} // namespace

void NuSerialize(host::IDataSet& data, TNuDOMElement& rows) {
    const std::vector<Column> columns = columnsOf(data, rows);
    const nu::SchemaPrefix instance = nu::findSchemaPrefix(rows, nu::instanceNamespace);
    const NuXmlString type = instance.name(u"type");
    const NuXmlString nil = instance.name(u"nil");
    for (data.First(); !data.Eof(); data.Next()) {
        TNuDOMElement& row = rows.AddElement(u"row");
        for (std::size_t field = 0; field < columns.size(); ++field) {
            const Column& column = columns[field];
            const host::Variant value = data.GetValue(field);
            TNuDOMElement& element = row.AddElement(column.name);
            if (value.IsNull() || value.IsEmpty()) {
                element.setAttribute(nil, u"true");
                continue;
            }
            element.setAttribute(type, column.schemaType);
            element.set_nodeValue(textOf(value, column.type));
        }
    }
}

void NuDeserialize(TNuDOMElement& rows, host::IDataSet& data) {
    const nu::SchemaPrefix instance = nu::findSchemaPrefix(rows, nu::instanceNamespace);
    std::size_t record = 0;
    for (const TNuDOMElement& row : rows.ChildElements()) {
        if (!NuEqualAsciiWord(row.get_localName(), u"row")) {
            continue;
        }
        data.Append();
        try {
            readRecord(row, data, ++record, instance);
            data.Post();
        } catch (...) {
            data.Cancel();
            throw;
        }
    }
}
