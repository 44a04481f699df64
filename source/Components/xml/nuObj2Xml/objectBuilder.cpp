#include "nuObj2Xml/objectBuilder.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "host/runtime/asciiCase.h"
#include "host/runtime/classRegistry.h"
#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "host/runtime/propertyValue.h"
#include "host/runtime/valueAccess.h"
#include "nuObj2Xml/elementNames.h"
#include "nuObj2Xml/elementPath.h"
#include "nuObj2Xml/messages.h"
#include "nuObj2Xml/objectChain.h"
#include "nuObj2Xml/registry.h"
#include "nuObj2Xml/slotClass.h"
#include "nuObj2Xml/valueReader.h"
#include "nuObj2Xml/valueText.h"
#include "nuXmlParser/scan.h"
#include "nuXmlParser/unescape.h"
#include "nuXmlParser/whiteSpace.h"

namespace nu {

using host::Instance;
using host::OwnedValue;
using host::TPropInfo;
using host::ValueKind;
using host::ValueRef;

/// An element that has begun, and where its content goes.
struct ObjectBuilder::Frame {
    enum class Kind : std::uint8_t { Object, Items, List, Map, MapItem, Value, Skip };

    Kind kind = Kind::Skip;
    std::u16string_view name;
    NuXmlString ownName; ///< keeps a name that is nobody else's
    std::size_t index = 0;

    /// The property that the content belongs to, and its object: for a value that a setter gets.
    const TPropInfo* property = nullptr;
    Instance owner;
    OwnedValue held; ///< the value before the setter gets it
    ValueRef target; ///< a value, a list or a map

    // An object
    Instance object;
    TNuSerializer* serializer = nullptr; ///< null for a plain one
    std::unique_ptr<TNuSerializer> owned;
    std::size_t expected = 0;   ///< the property that the next element is likely to be
    std::vector<bool> seen;     ///< by property; only where it matters what is missing
    bool resetsMissing = false; ///< what is missing gets its default
    bool wantsTree = false;

    // A value
    bool isNil = false;
    NuXmlString schemaType; ///< for a variant

    // A list or a map
    std::size_t count = 0; ///< of the elements that came

    // An item of a map
    OwnedValue key;
    void* mapped = nullptr; ///< the value of that key, as soon as it is known
};

namespace {

/// Whether a missing value of that kind is an empty one.
constexpr bool hasEmptyValue(ValueKind kind) noexcept {
    return isTextKind(kind) && kind >= ValueKind::String;
}

/// Whether a property without a default is always written.
constexpr bool isRequired(const TPropInfo& property) noexcept {
    switch (property.type->kind) {
    case ValueKind::Variant:
    case ValueKind::Slot:
    case ValueKind::Optional:
    case ValueKind::Reference:
        return false;
    default:
        return property.isStored == nullptr;
    }
}

/// Names compared as bytes, which is quicker than unit by unit.
bool isSame(std::u16string_view left, std::u16string_view right) noexcept {
    return left.size() == right.size() &&
           std::memcmp(left.data(), right.data(), left.size() * sizeof(char16_t)) == 0;
}

} // namespace

ObjectBuilder::ObjectBuilder(TNuDeserializeOptions options) noexcept : options_(options) {}
ObjectBuilder::~ObjectBuilder() = default;

void ObjectBuilder::begin(Instance object, TNuSerializer* serializer, bool isNew,
                          const ElementStart& element) {
    if (!element.className.empty() && !isRelated(element.className, *object.info)) {
        throw host::Exception(host::formatMessage(messages::doesNotInherit, {element.className}));
    }
    Frame& frame = push(element.name);
    frame.resetsMissing = isNew || options_.has(dsResetMissing);
    startObject(frame, object, serializer);
}

void ObjectBuilder::startElement(const ElementStart& element) {
    Frame& frame = *frames_[depth_ - 1];
    switch (frame.kind) {
    case Frame::Kind::Object:
        return startInObject(frame, element);
    case Frame::Kind::Items:
        return startInItems(frame, element);
    case Frame::Kind::List:
        return startInList(frame, element);
    case Frame::Kind::Map:
        return startInMap(frame, element);
    case Frame::Kind::MapItem:
        return startInMapItem(frame, element);
    case Frame::Kind::Value:
        if (isStrict()) {
            fail(NuXmlString(messages::elementInValue));
        }
        return skip(element.name);
    case Frame::Kind::Skip:
        ++skipped_;
        return;
    }
}

/// Adds the place to what cannot be converted.
template <class Conversion> void ObjectBuilder::withPlace(Conversion convert) const {
    try {
        convert();
    } catch (const host::EConvertError& error) {
        throw host::EConvertError(error.Message() + place());
    }
}

void ObjectBuilder::characters(std::u16string_view text, bool isCData) {
    const Frame& frame = *frames_[depth_ - 1];
    if (frame.kind == Frame::Kind::Value) {
        const char16_t* const end = text.data() + text.size();
        if (isCData || findOneOf<cNuAmpA>(text.data(), end) == end) {
            text_.append(text);
            return;
        }
        withPlace([&] {
            if (text_.empty()) {
                text_ = NuXMLToStr(text);
            } else {
                text_.append(NuXMLToStr(text));
            }
        });
    } else if (frame.kind != Frame::Kind::Skip && isStrict() && !trimmed(text).empty()) {
        fail(NuXmlString(messages::textBesideElements));
    }
}

void ObjectBuilder::endElement(TNuDOMElement* tree) {
    Frame& frame = *frames_[depth_ - 1];
    switch (frame.kind) {
    case Frame::Kind::Skip:
        if (skipped_ > 0) {
            --skipped_;
            return;
        }
        break;
    case Frame::Kind::Value:
        endValue(frame);
        break;
    case Frame::Kind::Object:
        endObject(frame, tree);
        endHeld(frame);
        break;
    default:
        endHeld(frame);
    }
    pop();
}

bool ObjectBuilder::wantsTree() const noexcept {
    return depth_ > 0 && frames_[depth_ - 1]->kind == Frame::Kind::Object &&
           frames_[depth_ - 1]->wantsTree;
}

void ObjectBuilder::abandon() noexcept {
    while (depth_ > 0) {
        pop();
    }
    skipped_ = 0;
    references_.clear();
}

NuXmlString ObjectBuilder::path() const {
    ElementPath text;
    for (std::size_t index = 0; index < depth_; ++index) {
        text.add(frames_[index]->name, frames_[index]->index);
    }
    return text.take();
}

// Frames

/// For a name that goes with what is read.
ObjectBuilder::Frame& ObjectBuilder::push(std::u16string_view name, std::size_t index) {
    Frame& frame = pushLasting({}, index);
    frame.ownName.assign(name);
    frame.name = frame.ownName;
    return frame;
}

/// For a name that outlives the reading, as those of properties do.
ObjectBuilder::Frame& ObjectBuilder::pushLasting(std::u16string_view name, std::size_t index) {
    if (depth_ == frames_.size()) {
        frames_.push_back(std::make_unique<Frame>());
    }
    Frame& frame = *frames_[depth_++];
    frame.kind = Frame::Kind::Skip;
    frame.name = name;
    frame.index = index;
    frame.property = nullptr;
    frame.isNil = false;
    // What stands inside of a new object is new as well.
    frame.resetsMissing = depth_ > 1 && frames_[depth_ - 2]->resetsMissing;
    return frame;
}

void ObjectBuilder::pop() noexcept {
    Frame& frame = *frames_[--depth_];
    if (frame.kind == Frame::Kind::Object) {
        --objects_;
    }
    frame.kind = Frame::Kind::Skip;
    frame.held.reset();
    frame.key.reset();
    frame.owned.reset();
}

void ObjectBuilder::skip(std::u16string_view name) { push(name); }

/// Passes over an element that stands for nothing; `message` is for who is strict.
void ObjectBuilder::skipUnknown(std::u16string_view message, const ElementStart& element,
                                std::u16string_view className) {
    if (isStrict()) {
        fail(host::formatMessage(message, {element.name, className}));
    }
    skip(element.name);
}

// The beginning of elements

void ObjectBuilder::startInObject(Frame& frame, const ElementStart& element) {
    if (const TPropInfo* const property = findProperty(frame, element.name)) {
        startProperty(frame, *property, element);
        return;
    }
    if (frame.serializer != nullptr) {
        for (const std::u16string_view items : frame.serializer->ItemsElements()) {
            if (!host::equalIgnoringCase(items, element.name)) {
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

void ObjectBuilder::startInItems(Frame& frame, const ElementStart& element) {
    if (!startItem(frame, element, frame.name)) {
        skipUnknown(messages::noPlace, element, {});
    }
}

/// Reads an element as an item if the serializer takes it as one.
bool ObjectBuilder::startItem(Frame& frame, const ElementStart& element,
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

void ObjectBuilder::startInList(Frame& frame, const ElementStart& element) {
    if (element.name != itemName) {
        skipUnknown(messages::noPlace, element, {});
        return;
    }
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

void ObjectBuilder::startInMap(Frame& frame, const ElementStart& element) {
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
void ObjectBuilder::startInMapItem(Frame& frame, const ElementStart& element) {
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
                                  const ElementStart& element) {
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
                                  const ElementStart& element) {
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
void ObjectBuilder::startValue(Frame& frame, ValueRef target, const ElementStart& element) {
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
    switch (type.kind) {
    case ValueKind::Object:
    case ValueKind::Slot:
        startSlot(frame, target, element);
        return;
    case ValueKind::List:
        type.list->clear(target.value);
        frame.kind = Frame::Kind::List;
        frame.resetsMissing = true;
        frame.count = 0;
        return;
    case ValueKind::Map:
        type.map->clear(target.value);
        frame.kind = Frame::Kind::Map;
        frame.resetsMissing = true;
        frame.count = 0;
        return;
    default:
        break;
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
    switch (type.kind) {
    case ValueKind::Optional:
        type.optional->reset(target.value);
        break;
    case ValueKind::Slot:
        type.slot->clear(target.value);
        break;
    case ValueKind::List:
        type.list->clear(target.value);
        break;
    case ValueKind::Map:
        type.map->clear(target.value);
        break;
    case ValueKind::Reference:
        frame.kind = Frame::Kind::Value;
        frame.isNil = true;
        text_.clear();
        return;
    default:
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

void ObjectBuilder::startSlot(Frame& frame, ValueRef target, const ElementStart& element) {
    const host::SlotOperations& slot = *target.type->slot;
    const Instance present = slot.get(target.value);
    const bool canChange = target.type->kind == ValueKind::Slot;
    // 1. What is there is read in place, unless the element tells of another class.
    if (present && (element.className.empty() ||
                    host::equalIgnoringCase(element.className, present.info->name))) {
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
    frame.serializer = serializer;
    frame.wantsTree = false;
    if (serializer == nullptr && object.info->isObject) {
        const TNuSerializerClass* const serializerClass = serializerClassFor(*object.info);
        if (!serializerClass->isPlain) {
            frame.owned =
                serializerClass->createFromInstance(*static_cast<host::TObject*>(object.object));
            frame.serializer = frame.owned.get();
            frame.wantsTree = serializerClass->wantsElement;
        }
    } else if (serializer != nullptr) {
        frame.wantsTree = serializer->wantsElement();
    }
    frame.kind = Frame::Kind::Object;
    ++objects_;
    frame.object = object;
    frame.expected = 0;
    frame.count = 0;
    frame.seen.clear();
    if (isStrict() || frame.resetsMissing) {
        frame.seen.assign(object.info->properties.size(), false);
    }
    if (frame.serializer != nullptr) {
        frame.serializer->BeginReading();
    }
}

const TNuSerializerClass* ObjectBuilder::serializerClassFor(const host::TClassInfo& info) {
    ClassNotes& notes = notes_[&info];
    if (notes.serializerClass == nullptr) {
        notes.serializerClass = &serializerClassOf(info);
    }
    return notes.serializerClass;
}

// The end of elements

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

// Errors

NuXmlString ObjectBuilder::place() const {
    if (locator_ == nullptr) {
        return host::formatMessage(messages::at, {path()});
    }
    return host::formatMessage(messages::atWithLine,
                               {path(), locator_->getLineNumber(), locator_->getColumnNumber()});
}

void ObjectBuilder::failConversion(std::u16string_view message) const {
    throw host::EConvertError(NuXmlString(message) + place());
}

void ObjectBuilder::fail(const NuXmlString& message) const {
    throw host::Exception(message + place() + u"!");
}

} // namespace nu
