#include <utility>

#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "host/runtime/propertyValue.h"
#include "nuObj2Xml/messages.h"
#include "nuObj2Xml/objectFrame.h"
#include "nuObj2Xml/valueReader.h"
#include "nuObj2Xml/valueText.h"

/// \file
/// The end of elements.

namespace nu {

using host::Instance;
using host::OwnedValue;
using host::TPropInfo;
using host::ValueKind;
using host::ValueRef;

namespace {

/// Whether a missing value of that kind is an empty one.
constexpr bool hasEmptyValue(ValueKind kind) noexcept {
    return isTextKind(kind) && kind >= ValueKind::String;
}

/// Whether a property without a default is always written.
constexpr bool isRequired(const TPropInfo& property) noexcept {
    const ValueKind kind = property.type->kind;
    const bool mayBeNothing = kind == ValueKind::Variant || kind == ValueKind::Slot ||
                              kind == ValueKind::Optional || kind == ValueKind::Reference;
    return !mayBeNothing && property.isStored == nullptr;
}

} // namespace

void ObjectBuilder::endValue(Frame& frame) {
    const host::ValueType& type = *frame.target.type;
    if (type.kind == ValueKind::Reference) {
        NuXmlString name = frame.isNil ? NuXmlString() : text_;
        if (name.empty()) {
            const OwnedValue nowhere(type);
            type.reference->set(nowhere.get(), {});
            if (frame.target.value != nullptr) {
                type.reference->set(frame.target.value, {});
            } else {
                frame.property->set(frame.owner.object, nowhere.get());
            }
        } else {
            references_.add({frame.owner, frame.property, std::move(name), place()});
        }
        return;
    }
    if (frame.target.value != nullptr) {
        readText(frame, type, frame.target.value);
        endHeld(frame);
        return;
    }
    // A setter gets a value that is made only now.
    if (frame.isNil && !hasEmptyValue(type.kind)) {
        readText(frame, type, nullptr);
        return;
    }
    if (type.kind <= ValueKind::DateTime) {
        alignas(std::uint64_t) std::byte scalar[sizeof(std::uint64_t)];
        readText(frame, type, scalar);
        frame.property->set(frame.owner.object, scalar);
    } else if (type.kind == ValueKind::String) {
        NuXmlString text;
        readText(frame, type, &text);
        frame.property->set(frame.owner.object, &text);
    } else {
        const OwnedValue value(type);
        readText(frame, type, value.get());
        frame.property->set(frame.owner.object, value.get());
    }
}

/// Reads the text that came, for a value or what an optional holds. A missing one is the empty
/// value, where there is one, and changes nothing elsewhere.
void ObjectBuilder::readText(const Frame& frame, const host::ValueType& target, void* value) {
    const bool isOptional = target.kind == ValueKind::Optional;
    const host::ValueType& type = isOptional ? *target.element : target;
    if (isOptional) {
        value = target.optional->emplace(value);
    }
    if (frame.isNil) {
        if (!hasEmptyValue(type.kind)) {
            if (isStrict()) {
                failConversion(messages::noNilAllowed);
            }
            return;
        }
        text_.clear();
        if (type.kind == ValueKind::Variant) {
            *static_cast<host::Variant*>(value) = host::null;
            return;
        }
    }
    withPlace([&] { readValue(type, text_, frame.schemaType, value); });
}

/// Hands a value that was read beside the object to its setter.
void ObjectBuilder::endHeld(Frame& frame) {
    if (frame.held) {
        frame.property->set(frame.owner.object, frame.held.get());
    }
}

void ObjectBuilder::endObject(Frame& frame, TNuDOMElement* tree) {
    // 1. What did not come.
    if (!frame.seen.empty()) {
        completeProperties(frame);
    }
    // 2. With the outermost object everything that references can lead to is there.
    if (depth_ == 1 && !references_.empty()) {
        references_.resolve(frame.object, isStrict());
    }
    // 3. The serializer's turn.
    if (frame.serializer != nullptr) {
        frame.serializer->EndReading();
        if (tree != nullptr) {
            frame.serializer->DoAfterDeserialize(*tree);
        }
    }
}

void ObjectBuilder::completeProperties(Frame& frame) {
    const auto properties = frame.object.info->properties;
    for (std::size_t index = 0; index < properties.size(); ++index) {
        const TPropInfo& property = properties[index];
        if (frame.seen[index] || !property.isWritable()) {
            continue;
        }
        if (property.hasDefault()) {
            if (frame.resetsMissing) {
                host::ResetToDefault(frame.object, property);
            }
        } else if (isStrict() && isRequired(property)) {
            fail(host::formatMessage(messages::missingProperty,
                                     {property.name, frame.object.info->name}));
        }
    }
}

} // namespace nu
