#include <algorithm>
#include <utility>

#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "host/runtime/valueAccess.h"
#include "nuObj2Xml/elementNames.h"
#include "nuObj2Xml/messages.h"
#include "nuObj2Xml/objectChain.h"
#include "nuObj2Xml/objectFrame.h"
#include "nuObj2Xml/registry.h"
#include "nuObj2Xml/sameText.h"
#include "nuObj2Xml/slotClass.h"
#include "nuObj2Xml/valueText.h"

/// \file
/// The beginning of elements.

namespace nu {

using host::Instance;
using host::OwnedValue;
using host::TPropInfo;
using host::ValueContent;
using host::ValueKind;
using host::ValueRef;

void ObjectBuilder::startInObject(Frame& frame, const StartedElement& element) {
    if (const TPropInfo* const property = findProperty(frame, element.name)) {
        startProperty(frame, *property, element);
        return;
    }
    if (frame.serializer != nullptr) {
        for (const std::u16string_view items : frame.serializer->ItemsElements()) {
            if (!isSameName(items, element.name)) {
                continue;
            }
            Frame& inside = push(items);
            inside.kind = Frame::Kind::Items;
            inside.serializer = frame.serializer;
            inside.object = frame.object;
            inside.count = 0;
            return;
        }
        if (startItem(frame, element, {})) {
            return;
        }
    }
    skipUnknown(messages::noProperty, element, frame.object.info->name);
}

void ObjectBuilder::startInItems(Frame& frame, const StartedElement& element) {
    if (!startItem(frame, element, frame.name)) {
        skipUnknown(messages::noPlace, element, {});
    }
}

/// Reads an element as an item if the serializer takes it as one.
bool ObjectBuilder::startItem(Frame& frame, const StartedElement& element,
                              std::u16string_view itemsElement) {
    const TNuSerializerItem item =
        frame.serializer->ItemToRead({element.name, element.className, itemsElement});
    if (!item) {
        return false;
    }
    Frame& inside = push(element.name, ++frame.count);
    if (item.object) {
        startObject(inside, item.object, nullptr);
    } else {
        startValue(inside, item.value, element);
    }
    return true;
}

void ObjectBuilder::startInList(Frame& frame, const StartedElement& element) {
    if (element.name != itemName) {
        skipUnknown(messages::noPlace, element, {});
        return;
    }
    // A list that grows may move its elements, and the places in them that wait for references.
    const host::ListOperations& list = *frame.target.type->list;
    const auto first = [&] {
        host::Cursor cursor;
        list.begin(frame.target.value, cursor);
        return list.next(frame.target.value, cursor);
    };
    const std::size_t movedSize = references_.empty() ? 0 : list.movedSize();
    const void* const former = movedSize != 0 ? first() : nullptr;
    void* const place = list.append(frame.target.value, frame.count);
    if (place == nullptr) {
        failConversion(host::formatMessage(messages::listIsFull, {frame.count}));
    }
    if (movedSize != 0) {
        references_.move(former, frame.count * movedSize, first());
    }
    Frame& inside = pushLasting(itemName, ++frame.count);
    startValue(inside, {place, frame.target.type->element}, element);
}

void ObjectBuilder::startInMap(Frame& frame, const StartedElement& element) {
    if (element.name != itemName) {
        skipUnknown(messages::noPlace, element, {});
        return;
    }
    Frame& inside = pushLasting(itemName, ++frame.count);
    inside.kind = Frame::Kind::MapItem;
    inside.target = frame.target;
    inside.key = OwnedValue(*frame.target.type->key);
    inside.mapped = nullptr;
    inside.count = 0;
}

/// Only a key that has been read tells where the value goes.
void ObjectBuilder::startInMapItem(Frame& frame, const StartedElement& element) {
    const host::ValueType& type = *frame.target.type;
    if (element.name == keyName && frame.count == 0) {
        frame.count = 1;
        startValue(pushLasting(keyName), frame.key.ref(), element);
    } else if (element.name == valueName) {
        if (frame.count == 0) {
            failConversion(messages::itemWithoutKey);
        }
        if (frame.mapped == nullptr) {
            frame.mapped = type.map->at(frame.target.value, frame.key.get());
        }
        startValue(pushLasting(valueName), {frame.mapped, type.element}, element);
    } else {
        skipUnknown(messages::noPlace, element, {});
    }
}

const TPropInfo* ObjectBuilder::findProperty(Frame& frame, std::u16string_view name) {
    const auto properties = frame.object.info->properties;
    const TPropInfo* found = nullptr;
    // Nearly always the next one, or one behind some that were left out.
    for (std::size_t index = frame.expected; index < properties.size(); ++index) {
        if (isSame(properties[index].name, name)) {
            found = &properties[index];
            break;
        }
    }
    if (found == nullptr) {
        found = frame.object.info->findProperty(name);
        if (found == nullptr) {
            return nullptr;
        }
    }
    const auto index = static_cast<std::size_t>(found - properties.data());
    frame.expected = index + 1;
    if (!frame.seen.empty()) {
        frame.seen[index] = true;
    }
    return found;
}

void ObjectBuilder::startProperty(Frame& frame, const TPropInfo& property,
                                  const StartedElement& element) {
    void* const self = frame.object.object;
    const host::ValueType& type = *property.type;
    if (!property.isWritable()) {
        startReadOnly(frame, property, element);
        return;
    }
    Frame& inside = pushLasting(property.name);
    inside.property = &property;
    inside.owner = frame.object;
    if (property.mutablePlace != nullptr) {
        startValue(inside, {property.mutablePlace(self), &type}, element);
    } else if (isTextKind(type.kind) || type.kind == ValueKind::Reference) {
        // The value is made when its text is there.
        startValue(inside, {nullptr, &type}, element);
    } else {
        inside.held = OwnedValue(type);
        if (property.get != nullptr) {
            property.get(self, inside.held.get());
        }
        startValue(inside, inside.held.ref(), element);
    }
}

/// Values are passed over; an object is read where it is.
void ObjectBuilder::startReadOnly(Frame& frame, const TPropInfo& property,
                                  const StartedElement& element) {
    const host::ValueType& type = *property.type;
    if (type.kind == ValueKind::Object || type.kind == ValueKind::Slot) {
        const host::PropertyValue value(property, frame.object.object);
        const Instance object = type.slot->get(value.get());
        const bool isThere = object && (type.kind == ValueKind::Slot || property.place != nullptr);
        if (isThere && !element.isNil) {
            if (!element.className.empty() && !isRelated(element.className, *object.info)) {
                throw host::Exception(host::formatMessage(messages::doesNotInherit,
                                                          {type.slot->declaredClass(0)->name}));
            }
            startObject(push(property.name), object, nullptr);
            return;
        }
    }
    skip(property.name);
}

/// Makes the frame that of a value of any type.
void ObjectBuilder::startValue(Frame& frame, ValueRef target, const StartedElement& element) {
    frame.target = target;
    if (element.isNil && !isTextKind(target.type->kind)) {
        makeNil(frame, target);
        return;
    }
    // What is in an optional is no optional again. A text in one is made when it is there.
    if (target.type->kind == ValueKind::Optional && !isTextKind(target.type->element->kind)) {
        target = {target.type->optional->emplace(target.value), target.type->element};
        frame.target = target;
    }
    const host::ValueType& type = *target.type;
    if (type.kind == ValueKind::Object || type.kind == ValueKind::Slot) {
        startSlot(frame, target, element);
        return;
    }
    if (type.kind == ValueKind::List || type.kind == ValueKind::Map) {
        const bool isList = type.kind == ValueKind::List;
        isList ? type.list->clear(target.value) : type.map->clear(target.value);
        frame.kind = isList ? Frame::Kind::List : Frame::Kind::Map;
        frame.resetsMissing = true;
        frame.count = 0;
        return;
    }
    frame.kind = Frame::Kind::Value;
    frame.isNil = element.isNil;
    if ((type.kind == ValueKind::Optional ? *type.element : type).kind == ValueKind::Variant) {
        frame.schemaType = element.className;
    }
    text_.clear();
}

/// A missing value of what is no text: a place becomes empty, as far as it can.
void ObjectBuilder::makeNil(Frame& frame, ValueRef target) {
    const host::ValueType& type = *target.type;
    switch (host::contentOf(type.kind)) {
    case ValueContent::Optional:
        type.optional->reset(target.value);
        break;
    case ValueContent::Slot:
        type.slot->clear(target.value);
        break;
    case ValueContent::List:
        type.list->clear(target.value);
        break;
    case ValueContent::Map:
        type.map->clear(target.value);
        break;
    case ValueContent::Reference:
        frame.kind = Frame::Kind::Value;
        frame.isNil = true;
        text_.clear();
        return;
    case ValueContent::Text:
    case ValueContent::Object:
        if (isStrict()) {
            failConversion(messages::noNilAllowed);
        }
    }
    // What stands inside is passed over; the setter gets the empty value.
    if (frame.held) {
        endHeld(frame);
        frame.held.reset();
    }
}

void ObjectBuilder::startSlot(Frame& frame, ValueRef target, const StartedElement& element) {
    const host::SlotOperations& slot = *target.type->slot;
    const Instance present = slot.get(target.value);
    const bool canChange = target.type->kind == ValueKind::Slot;
    // 1. What is there is read in place, unless the element tells of another class.
    if (present &&
        (element.className.empty() || isSameName(element.className, present.info->name))) {
        startObject(frame, present, nullptr);
        return;
    }
    if (!canChange) {
        if (!isRelated(element.className, *present.info)) {
            throw host::Exception(
                host::formatMessage(messages::doesNotInherit, {present.info->name}));
        }
        startObject(frame, present, nullptr);
        return;
    }
    // 2. A new object of the class that the element tells of, if that fits.
    const host::TClassInfo& info = classForSlot(slot, element.className);
    const Instance made = slot.create(target.value, info);
    if (!made) {
        throw host::Exception(host::formatMessage(messages::cannotBeMade, {info.name}));
    }
    frame.resetsMissing = true;
    startObject(frame, made, nullptr);
}

void ObjectBuilder::startObject(Frame& frame, Instance object, TNuSerializer* serializer) {
    if (objects_ >= ObjectChain::maximumDepth) {
        throw host::Exception(host::formatMessage(messages::nestedTooDeeply, {path()}));
    }
    // 1. What reads it: the serializer that was given or is registered, if it changes anything.
    frame.serializer = serializer;
    frame.wantsTree = false;
    ClassNotes& notes = notesOf(*object.info);
    if (serializer == nullptr && object.info->isObject) {
        if (notes.serializerClass == nullptr) {
            notes.serializerClass = &serializerClassOf(*object.info);
        }
        const TNuSerializerClass* const serializerClass = notes.serializerClass;
        if (!serializerClass->isStandard) {
            frame.owned =
                serializerClass->createFromInstance(*static_cast<host::TObject*>(object.object));
            frame.serializer = frame.owned.get();
            frame.wantsTree = serializerClass->wantsElement;
        }
    } else if (serializer != nullptr) {
        frame.wantsTree = serializer->wantsElement();
    }
    // 2. Its frame.
    frame.kind = Frame::Kind::Object;
    ++objects_;
    frame.object = object;
    frame.expected = 0;
    frame.count = 0;
    // 3. Which properties come is noted where one that does not come matters.
    frame.seen.clear();
    if (isStrict() || (frame.resetsMissing && notes.hasDefaults)) {
        frame.seen.assign(object.info->properties.size(), false);
    }
    if (frame.serializer != nullptr) {
        frame.serializer->BeginReading();
    }
}

ObjectBuilder::ClassNotes& ObjectBuilder::notesOf(const host::TClassInfo& info) {
    // Often it is the class of the object before.
    if (lastClass_ != &info) {
        const auto [entry, isNew] = notes_.try_emplace(&info);
        lastClass_ = &info;
        lastNotes_ = &entry->second;
        if (isNew) {
            lastNotes_->hasDefaults =
                std::any_of(info.properties.begin(), info.properties.end(),
                            [](const TPropInfo& property) { return property.hasDefault(); });
        }
    }
    return *lastNotes_;
}

} // namespace nu
