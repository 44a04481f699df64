#include "host/runtime/valueAccess.h"

#include <cstring>
#include <limits>

#include "host/runtime/asciiCase.h"
#include "host/runtime/currency.h"
#include "host/runtime/dateTime.h"
#include "host/runtime/numberText.h"
#include "host/runtime/whiteSpace.h"

namespace host {

namespace {

template <class Number> std::uint64_t widened(const void* value) noexcept {
    Number number = 0;
    std::memcpy(&number, value, sizeof number);
    return static_cast<std::uint64_t>(number);
}

template <class Signed, class Unsigned>
std::uint64_t load(const ValueType& type, const void* value) noexcept {
    return type.isSigned ? widened<Signed>(value) : widened<Unsigned>(value);
}

template <class Number> bool parse(std::u16string_view text, void* value) noexcept {
    const std::optional<Number> number = parseInteger<Number>(text);
    if (number) {
        std::memcpy(value, &*number, sizeof(Number));
    }
    return number.has_value();
}

template <class Signed, class Unsigned>
bool parse(const ValueType& type, std::u16string_view text, void* value) noexcept {
    return type.isSigned ? parse<Signed>(text, value) : parse<Unsigned>(text, value);
}

/// The bits that a name of a set stands for.
std::uint64_t maskOf(const ValueType& type, const EnumName& entry) noexcept {
    return type.isBits ? static_cast<std::uint64_t>(entry.value)
                       : std::uint64_t{1} << static_cast<unsigned>(entry.value);
}

const EnumName* findName(const ValueType& type, std::u16string_view name) noexcept {
    for (const EnumName& entry : type.names) {
        if (entry.name == name) {
            return &entry;
        }
    }
    for (const EnumName& entry : type.names) {
        if (equalIgnoringCase(entry.name, name)) {
            return &entry;
        }
    }
    return nullptr;
}

void appendSet(const ValueType& type, std::uint64_t bits, std::u16string& text) {
    const std::size_t start = text.size();
    const auto separate = [&] {
        if (text.size() > start) {
            text.push_back(u',');
        }
    };
    std::uint64_t left = bits;
    for (const EnumName& entry : type.names) {
        const std::uint64_t mask = maskOf(type, entry);
        // A name for several bits counts if it tells of one that was not told yet.
        if ((bits & mask) == mask && (left & mask) != 0) {
            separate();
            text.append(entry.name);
            left &= ~mask;
        }
    }
    if (type.isBits && left != 0) {
        separate();
        NumberText(left).appendTo(text);
        return;
    }
    for (unsigned value = 0; left != 0; ++value, left >>= 1U) {
        if ((left & 1U) != 0) {
            separate();
            NumberText(value).appendTo(text);
        }
    }
}

/// The bits that one word of a set's text stands for.
std::optional<std::uint64_t> wordBits(const ValueType& type, std::u16string_view word) noexcept {
    if (const EnumName* const entry = findName(type, word)) {
        return maskOf(type, *entry);
    }
    const auto number = parseInteger<std::uint64_t>(word);
    if (!number || (!type.isBits && *number > 63)) {
        return std::nullopt;
    }
    return type.isBits ? *number : std::uint64_t{1} << *number;
}

bool parseSet(const ValueType& type, std::u16string_view text, void* value) noexcept {
    std::uint64_t bits = 0;
    text = trimmed(text);
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(u','), text.size());
        const std::optional<std::uint64_t> word = wordBits(type, trimmed(text.substr(0, end)));
        if (!word) {
            return false;
        }
        bits |= *word;
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    if (type.size < sizeof bits && bits >> (8U * type.size) != 0) {
        return false;
    }
    storeBits(type, value, bits);
    return true;
}

} // namespace

std::uint64_t loadBits(const ValueType& type, const void* value) noexcept {
    switch (type.size) {
    case 1:
        return load<std::int8_t, std::uint8_t>(type, value);
    case 2:
        return load<std::int16_t, std::uint16_t>(type, value);
    case 4:
        return load<std::int32_t, std::uint32_t>(type, value);
    default:
        return load<std::int64_t, std::uint64_t>(type, value);
    }
}

void storeBits(const ValueType& type, void* value, std::uint64_t bits) noexcept {
    const auto store = [value](auto number) { std::memcpy(value, &number, sizeof number); };
    switch (type.size) {
    case 1:
        return store(static_cast<std::uint8_t>(bits));
    case 2:
        return store(static_cast<std::uint16_t>(bits));
    case 4:
        return store(static_cast<std::uint32_t>(bits));
    default:
        return store(bits);
    }
}

void appendNames(const ValueType& type, const void* value, std::u16string& text) {
    const std::uint64_t bits = loadBits(type, value);
    if (type.kind == ValueKind::Set) {
        // A set of a signed enumeration has no bits above its own.
        const unsigned width = 8U * type.size;
        appendSet(type, width < 64 ? bits & ((std::uint64_t{1} << width) - 1) : bits, text);
        return;
    }
    for (const EnumName& entry : type.names) {
        if (static_cast<std::uint64_t>(entry.value) == bits) {
            text.append(entry.name);
            return;
        }
    }
    if (type.isSigned) {
        NumberText(static_cast<std::int64_t>(bits)).appendTo(text);
    } else {
        NumberText(bits).appendTo(text);
    }
}

bool parseNames(const ValueType& type, std::u16string_view text, void* value) {
    if (type.kind == ValueKind::Set) {
        return parseSet(type, text, value);
    }
    text = trimmed(text);
    if (const EnumName* const entry = findName(type, text)) {
        storeBits(type, value, static_cast<std::uint64_t>(entry->value));
        return true;
    }
    return parseInteger(type, text, value);
}

bool parseInteger(const ValueType& type, std::u16string_view text, void* value) noexcept {
    switch (type.size) {
    case 1:
        return parse<std::int8_t, std::uint8_t>(type, text, value);
    case 2:
        return parse<std::int16_t, std::uint16_t>(type, text, value);
    case 4:
        return parse<std::int32_t, std::uint32_t>(type, text, value);
    default:
        return parse<std::int64_t, std::uint64_t>(type, text, value);
    }
}

bool fits(const ValueType& type, std::int64_t number) noexcept {
    if (type.size == 8) {
        return type.isSigned || number >= 0;
    }
    const std::int64_t values = std::int64_t{1} << (8U * type.size);
    return type.isSigned ? number >= -values / 2 && number < values / 2
                         : number >= 0 && number < values;
}

bool equalsDefault(const ValueType& type, const void* value,
                   const DefaultValue& expected) noexcept {
    switch (type.kind) {
    case ValueKind::Boolean:
        return *static_cast<const bool*>(value) == (expected.integer != 0);
    case ValueKind::Single:
        return static_cast<double>(*static_cast<const float*>(value)) == expected.real;
    case ValueKind::Double:
        return *static_cast<const double*>(value) == expected.real;
    case ValueKind::DateTime:
        return static_cast<const TDateTime*>(value)->serial == expected.real;
    case ValueKind::Currency:
        return static_cast<const Currency*>(value)->scaled == expected.integer;
    case ValueKind::String:
        return *static_cast<const std::u16string*>(value) == expected.text;
    case ValueKind::Integer:
    case ValueKind::Enumeration:
    case ValueKind::Set:
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
    return loadBits(type, value) == static_cast<std::uint64_t>(expected.integer);
}

void assignDefault(const ValueType& type, void* value, const DefaultValue& given) {
    switch (type.kind) {
    case ValueKind::Boolean:
        *static_cast<bool*>(value) = given.integer != 0;
        break;
    case ValueKind::Single:
        *static_cast<float*>(value) = static_cast<float>(given.real);
        break;
    case ValueKind::Double:
        *static_cast<double*>(value) = given.real;
        break;
    case ValueKind::DateTime:
        static_cast<TDateTime*>(value)->serial = given.real;
        break;
    case ValueKind::Currency:
        static_cast<Currency*>(value)->scaled = given.integer;
        break;
    case ValueKind::String:
        *static_cast<std::u16string*>(value) = given.text;
        break;
    case ValueKind::Integer:
    case ValueKind::Enumeration:
    case ValueKind::Set:
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
        storeBits(type, value, static_cast<std::uint64_t>(given.integer));
        break;
    }
}

PropertyValue::PropertyValue(const TPropInfo& property, const void* self)
    : place_(property.place != nullptr ? property.place(self) : nullptr) {
    if (place_ == nullptr) {
        copy_ = OwnedValue(*property.type);
        property.get(self, copy_.get());
        place_ = copy_.get();
    }
}

} // namespace host
