#include "nuObj2Xml/leafValue.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "common/utf8.h"
#include "host/runtime/digits.h"
#include "host/runtime/exception.h"
#include "host/runtime/valueAccess.h"
#include "nuObj2Xml/valueReader.h"
#include "nuXmlParser/unescape.h"

namespace nu {

using host::TPropInfo;
using host::ValueKind;
using host::ValueType;

namespace {

/// Reads digits, with a minus perhaps. What else a number can look like is for others.
template <class Number> bool parseNumber(std::string_view text, void* value) noexcept {
    const std::optional<Number> number = host::parseDigits<Number>(text);
    if (number) {
        *static_cast<Number*>(value) = *number;
    }
    return number.has_value();
}

template <class Signed, class Unsigned>
bool parseInteger(const ValueType& type, std::string_view text, void* value) noexcept {
    return type.isSigned ? parseNumber<Signed>(text, value) : parseNumber<Unsigned>(text, value);
}

bool parseInteger(const ValueType& type, std::string_view text, void* value) noexcept {
    switch (type.size) {
    case 1:
        return parseInteger<std::int8_t, std::uint8_t>(type, text, value);
    case 2:
        return parseInteger<std::int16_t, std::uint16_t>(type, text, value);
    case 4:
        return parseInteger<std::int32_t, std::uint32_t>(type, text, value);
    default:
        return parseInteger<std::int64_t, std::uint64_t>(type, text, value);
    }
}

bool parseBool(std::string_view text, void* value) noexcept {
    const bool isTrue = text == "true" || text == "1";
    if (!isTrue && text != "false" && text != "0") {
        return false;
    }
    *static_cast<bool*>(value) = isTrue;
    return true;
}

bool parseName(const ValueType& type, std::string_view text, void* value) noexcept {
    for (const host::EnumName& entry : type.names) {
        if (std::equal(entry.name.begin(), entry.name.end(), text.begin(), text.end())) {
            host::storeBits(type, value, static_cast<std::uint64_t>(entry.value));
            return true;
        }
    }
    return false;
}

/// Reads what most texts look like. False for any other text, and the value unchanged.
bool readQuickly(const ValueType& type, std::string_view text, void* value) noexcept {
    switch (type.kind) {
    case ValueKind::Boolean:
        return parseBool(text, value);
    case ValueKind::Integer:
        return parseInteger(type, text, value);
    case ValueKind::Enumeration:
        return parseName(type, text, value);
    case ValueKind::Single:
        return parseNumber<float>(text, value);
    case ValueKind::Double:
        return parseNumber<double>(text, value);
    case ValueKind::Set:
    case ValueKind::Currency:
    case ValueKind::DateTime:
    case ValueKind::String:
    case ValueKind::Utf8String:
    case ValueKind::Variant:
    case ValueKind::Bytes:
    case ValueKind::Int32Array:
    case ValueKind::StringArray:
    case ValueKind::Object:
    case ValueKind::Slot:
    case ValueKind::Optional:
    case ValueKind::List:
    case ValueKind::Map:
    case ValueKind::Reference:
        break;
    }
    return false;
}

/// Reads any text into a value; false where it is none of that type.
bool readSlowly(const ValueType& type, NuXmlString& text, void* value) {
    try {
        readValue(type, text, {}, value);
        return true;
    } catch (const host::EConvertError&) {
        return false;
    }
}

/// Long texts are decoded piece by piece: a string clears what it makes room for, and memory that
/// is seen for the first time costs more than decoding, so that it is better touched once only.
constexpr std::size_t pieceSize = 4096;

/// Reads unescaped UTF-8 into a value.
bool readBytes(const ValueType& type, std::string_view bytes, NuXmlString& scratch, void* value) {
    if (type.kind == ValueKind::String) {
        auto& text = *static_cast<std::u16string*>(value);
        if (bytes.size() <= pieceSize) {
            assignReplaced(text, bytes); // there is nothing to replace, and this is quicker
        } else {
            assignUtf8(text, bytes);
        }
        return true;
    }
    if (type.kind == ValueKind::Utf8String) {
        static_cast<std::string*>(value)->assign(bytes);
        return true;
    }
    if (readQuickly(type, bytes, value)) {
        return true;
    }
    assignUtf8(scratch, bytes);
    return readSlowly(type, scratch, value);
}

/// Lets `read` make a value that a setter gets.
template <class Value, class Read>
bool readAndSet(const TPropInfo& property, void* self, Read read) {
    Value value{};
    if (!read(&value)) {
        return false;
    }
    property.set(self, &value);
    return true;
}

/// Lets `read` put a value where it belongs, or into one for the setter.
template <class Read> bool readInto(const TPropInfo& property, void* self, Read read) {
    if (property.mutablePlace != nullptr) [[likely]] {
        return read(property.mutablePlace(self));
    }
    if (property.type->kind == ValueKind::String) {
        return readAndSet<std::u16string>(property, self, read);
    }
    if (property.type->kind == ValueKind::Utf8String) {
        return readAndSet<std::string>(property, self, read);
    }
    // Anything else has room in 8 bytes.
    return readAndSet<std::uint64_t>(property, self, read);
}

void appendUtf8(NuXmlString& text, std::string_view bytes) {
    char16_t piece[pieceSize];
    while (!bytes.empty()) {
        const TNuUtf8Prefix decoded = NuDecodeUtf8Prefix(bytes.substr(0, pieceSize), piece);
        text.append(piece, decoded.Units);
        bytes.remove_prefix(decoded.Bytes);
    }
}

} // namespace

bool isLeaf(const TPropInfo& property) noexcept {
    return property.isWritable() && property.type->kind <= ValueKind::Utf8String;
}

void assignUtf8(NuXmlString& text, std::string_view bytes) {
    if (bytes.size() > pieceSize) {
        text.clear();
        text.reserve(bytes.size());
        appendUtf8(text, bytes);
        return;
    }
    text.resize(bytes.size());
    text.resize(NuDecodeUtf8Prefix(bytes, text.data()).Units);
}

void assignReplaced(NuXmlString& text, std::string_view bytes) {
    if (bytes.empty()) {
        text.clear();
        return;
    }
    char16_t piece[pieceSize + unescapeReach];
    if (bytes.size() <= pieceSize) {
        text.assign(piece, unescapeUtf8(bytes, piece));
        return;
    }
    text.clear();
    text.reserve(bytes.size() + unescapeReach);
    while (!bytes.empty()) {
        // No reference goes on behind a space, so the text can be cut there.
        const std::size_t space =
            bytes.size() <= pieceSize ? bytes.npos : bytes.rfind(cNuSpaceA, pieceSize - 1);
        const std::size_t cut = space == bytes.npos ? bytes.size() : space + 1;
        if (cut <= pieceSize) {
            text.append(piece, unescapeUtf8(bytes.substr(0, cut), piece));
        } else {
            const std::size_t before = text.size();
            text.resize(before + cut + unescapeReach);
            const char16_t* const end = unescapeUtf8(bytes, text.data() + before);
            text.resize(static_cast<std::size_t>(end - text.data()));
        }
        bytes.remove_prefix(cut);
    }
}

bool readLeaf(const TPropInfo& property, void* self, std::string_view bytes, NuXmlString& scratch) {
    return readInto(property, self,
                    [&](void* value) { return readBytes(*property.type, bytes, scratch, value); });
}

bool readLeaf(const TPropInfo& property, void* self, NuXmlString& text) {
    return readInto(property, self,
                    [&](void* value) { return readSlowly(*property.type, text, value); });
}

} // namespace nu
