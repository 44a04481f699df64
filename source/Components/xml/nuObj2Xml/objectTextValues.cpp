#include <utility>

#include "host/runtime/persistent.h"
#include "host/runtime/propertyValue.h"
#include "host/runtime/valueAccess.h"
#include "nuObj2Xml/objectTextFrame.h"
#include "nuXmlParser/schemaTypes.h"

/// \file
/// What each value of an object becomes: text between its tags, or an element of several.

namespace nu {

using host::Instance;
using host::OwnedValue;
using host::ValueKind;
using host::ValueRef;

namespace {

/// Whether an object is written where a pointer leads to it.
bool isWritten(Instance object) {
    return object &&
           (!object.info->isObject || object.info->derivesFrom(host::classOf<host::TPersistent>));
}

} // namespace

// Properties

template <class Unit>
void ObjectTextWriter<Unit>::writeProperty(Frame& frame, const host::TPropInfo& property,
                                           const PropertyTags<Unit>& tags) {
    const void* const self = frame.object.object;
    if (property.isStored != nullptr && !property.isStored(self)) {
        return;
    }
    const host::ValueType& type = *property.type;
    // 1. A value that is written right as it is.
    if (property.place != nullptr && isTextKind(type.kind) && type.kind != ValueKind::Variant) {
        const void* const value = property.place(self);
        if (!property.hasDefault() || !host::equalsDefault(type, value, property.defaultValue)) {
            writeText(tags, type, value);
        }
        return;
    }
    // 2. One that is asked for, or consists of more.
    OwnedValue held;
    void* value = nullptr;
    if (property.place != nullptr) {
        value = const_cast<void*>(property.place(self));
    } else {
        if (type.kind <= ValueKind::DateTime) {
            value = scalarValue_;
        } else if (type.kind == ValueKind::String) {
            value = &wideValue_;
        } else if (type.kind == ValueKind::Utf8String) {
            value = &narrowValue_;
        } else {
            held = OwnedValue(type);
            value = held.get();
        }
        property.get(self, value);
    }
    if (!property.hasDefault() || !host::equalsDefault(type, value, property.defaultValue)) {
        writeHeld(frame, property, tags, {value, &type}, std::move(held));
    }
}

/// Writes the value unless it stands for nothing.
template <class Unit>
void ObjectTextWriter<Unit>::writeHeld(Frame& frame, const host::TPropInfo& property,
                                       const PropertyTags<Unit>& tags, ValueRef value,
                                       OwnedValue held) {
    if (value.type->kind == ValueKind::Optional) {
        value = {const_cast<void*>(value.type->optional->get(value.value)), value.type->element};
        if (!value) {
            return;
        }
    }
    switch (value.type->kind) {
    case ValueKind::Variant: {
        const auto& variant = *static_cast<const host::Variant*>(value.value);
        if (!variant.IsEmpty() && !variant.IsNull()) {
            writeVariant(*frame.inside, property.name, variant);
        }
        break;
    }
    case ValueKind::Object:
    case ValueKind::Slot: {
        const Instance object = value.type->slot->get(value.value);
        if (isWritten(object)) {
            beginObject(nestedForm_, property.name, 0, object, nullptr);
            if (held && depth_ > 0 && frames_[depth_ - 1].get() != &frame) {
                frames_[depth_ - 1]->held = std::move(held);
            }
        }
        break;
    }
    case ValueKind::List:
    case ValueKind::Map:
        beginContainer(*frame.inside, property.name, 0, value, std::move(held));
        break;
    case ValueKind::Reference: {
        const Instance target = value.type->reference->get(value.value);
        const NuXmlString name = target ? host::ReferenceName(target) : NuXmlString();
        if (!name.empty()) {
            out_.append(tags.start);
            out_.appendContent(name);
            out_.append(tags.end);
        }
        break;
    }
    case ValueKind::Boolean:
    case ValueKind::Integer:
    case ValueKind::Enumeration:
    case ValueKind::Set:
    case ValueKind::Single:
    case ValueKind::Double:
    case ValueKind::Currency:
    case ValueKind::DateTime:
    case ValueKind::String:
    case ValueKind::Utf8String:
    case ValueKind::Bytes:
    case ValueKind::Int32Array:
    case ValueKind::StringArray:
    case ValueKind::Optional:
        writeText(tags, *value.type, value.value);
    }
}

template <class Unit>
void ObjectTextWriter<Unit>::writeText(const PropertyTags<Unit>& tags, const host::ValueType& type,
                                       const void* value) {
    out_.append(tags.start);
    values_.write(type, value);
    out_.append(tags.end);
}

// Elements of lists and maps

template <class Unit>
void ObjectTextWriter<Unit>::writeElement(Frame& frame, std::size_t tagPlace,
                                          std::u16string_view name, std::size_t index,
                                          ValueRef value) {
    if (value.type->kind == ValueKind::Optional) {
        value = {const_cast<void*>(value.type->optional->get(value.value)), value.type->element};
        if (!value) {
            writeNil(*frame.inside, name);
            return;
        }
    }
    switch (value.type->kind) {
    case ValueKind::Variant: {
        const auto& variant = *static_cast<const host::Variant*>(value.value);
        if (variant.IsEmpty() || variant.IsNull()) {
            writeNil(*frame.inside, name);
        } else {
            writeVariant(*frame.inside, name, variant);
        }
        break;
    }
    case ValueKind::Object:
    case ValueKind::Slot: {
        const Instance object = value.type->slot->get(value.value);
        if (isWritten(object)) {
            beginObject(nestedForm_, name, index, object, nullptr);
        } else {
            writeNil(*frame.inside, name);
        }
        break;
    }
    case ValueKind::List:
    case ValueKind::Map:
        beginContainer(*frame.inside, name, index, value, {});
        break;
    case ValueKind::Boolean:
    case ValueKind::Integer:
    case ValueKind::Enumeration:
    case ValueKind::Set:
    case ValueKind::Single:
    case ValueKind::Double:
    case ValueKind::Currency:
    case ValueKind::DateTime:
    case ValueKind::String:
    case ValueKind::Utf8String:
    case ValueKind::Bytes:
    case ValueKind::Int32Array:
    case ValueKind::StringArray:
    case ValueKind::Optional:
    case ValueKind::Reference:
        writeTagged(frame, tagPlace, name, value);
    }
}

template <class Unit>
void ObjectTextWriter<Unit>::writeTagged(Frame& frame, std::size_t tagPlace,
                                         std::u16string_view name, ValueRef value) {
    auto& [type, tags] = frame.elementTags[tagPlace];
    if (type != value.type) {
        tags = ObjectTags<Unit>::ofValue(*frame.inside, name, *value.type);
        type = value.type;
    }
    writeText(tags, *value.type, value.value);
}

template <class Unit>
void ObjectTextWriter<Unit>::writeNil(const ElementForm& form, std::u16string_view name) {
    appendPiece([&](NuXmlString& text) {
        form.appendNilStart(text, name);
        form.appendEnd(text, name);
    });
}

template <class Unit>
void ObjectTextWriter<Unit>::writeVariant(const ElementForm& form, std::u16string_view name,
                                          const host::Variant& value) {
    const NuXmlString type = NuSchemaType(value);
    appendPiece([&](NuXmlString& text) { form.appendPropertyStart(text, name, type); });
    values_.write(value);
    appendEnd(form, name);
}

template class ObjectTextWriter<char>;
template class ObjectTextWriter<char16_t>;

} // namespace nu
