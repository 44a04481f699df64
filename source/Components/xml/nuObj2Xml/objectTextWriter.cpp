#include "nuObj2Xml/objectTextWriter.h"

#include <utility>

#include "common/stringStream.h"
#include "nuObj2Xml/elementNames.h"
#include "nuObj2Xml/objectTextFrame.h"
#include "nuObj2Xml/registry.h"

namespace nu {

using host::Instance;
using host::OwnedValue;
using host::ValueRef;

template <class Unit>
ObjectTextWriter<Unit>::ObjectTextWriter(TextBuffer<Unit>& out, const TNuSerializer& settings)
    : out_(out), values_(out), settings_(settings),
      rootForm_(settings.uri_, settings.prefix_, settings.schemaLocation_, settings.options_),
      nestedForm_(settings.uri_, settings.prefix_, settings.schemaLocation_, {}),
      rootTags_(rootForm_), nestedTags_(nestedForm_), chain_(settings.around_) {}

template <class Unit> ObjectTextWriter<Unit>::~ObjectTextWriter() = default;

template <class Unit>
void ObjectTextWriter<Unit>::writeOwn(TNuSerializer& serializer, std::u16string_view name) {
    beginObject(rootForm_, name, 0, host::instance(*serializer.GetObject()), &serializer);
    run();
}

template <class Unit>
void ObjectTextWriter<Unit>::write(Instance object, std::u16string_view name) {
    beginObject(rootForm_, name, 0, object, nullptr);
    run();
}

template <class Unit> void ObjectTextWriter<Unit>::run() {
    try {
        while (depth_ > 0) {
            step(*frames_[depth_ - 1]);
        }
    } catch (...) {
        while (depth_ > 0) {
            pop();
        }
        throw;
    }
}

template <class Unit> void ObjectTextWriter<Unit>::step(Frame& frame) {
    switch (frame.kind) {
    case Frame::Kind::Object:
        return stepObject(frame);
    case Frame::Kind::Items:
        return stepItems(frame);
    case Frame::Kind::List:
        return stepList(frame);
    case Frame::Kind::Map:
        return stepMap(frame);
    }
}

/// Goes on until an element has begun in this one, or it is written.
template <class Unit> void ObjectTextWriter<Unit>::stepObject(Frame& frame) {
    const std::size_t depth = depth_;
    const auto properties = frame.object.info->properties;
    while (frame.next < properties.size()) {
        const std::size_t index = frame.next++;
        writeProperty(frame, properties[index], frame.tags->properties[index]);
        if (depth_ != depth) {
            return;
        }
    }
    if (frame.serializer != nullptr && !std::exchange(frame.areItemsWritten, true)) {
        const std::size_t count = frame.serializer->ItemCount();
        if (count > 0) {
            chain_.enter({});
            Frame& items = push({}, *frame.inside);
            items.kind = Frame::Kind::Items;
            items.form = frame.inside;
            items.serializer = frame.serializer;
            items.itemCount = count;
            items.itemsElement = {};
            return;
        }
    }
    appendEnd(*frame.form, frame.name);
    pop();
}

template <class Unit> void ObjectTextWriter<Unit>::stepItems(Frame& frame) {
    const std::size_t depth = depth_;
    while (frame.next < frame.itemCount) {
        const TNuSerializerItem item = frame.serializer->GetItem(frame.next++);
        changeItemsElement(frame, item.itemsElement);
        if (item.object) {
            beginObject(nestedForm_, item.name, frame.next, item.object, nullptr);
        } else if (item.value) {
            // Names differ from item to item, so that no tag can be kept.
            frame.elementTags[0].type = nullptr;
            writeElement(frame, 0, item.name, frame.next, item.value);
        }
        if (depth_ != depth) {
            return;
        }
    }
    changeItemsElement(frame, {});
    pop();
}

/// Ends the element around the items before, and begins the one around those that come.
template <class Unit>
void ObjectTextWriter<Unit>::changeItemsElement(Frame& frame, std::u16string_view name) {
    if (frame.itemsElement == name) {
        return;
    }
    if (!frame.itemsElement.empty()) {
        appendEnd(*frame.form, frame.itemsElement);
    }
    if (!name.empty()) {
        appendUntypedStart(*frame.form, name);
    }
    frame.itemsElement = name;
}

template <class Unit> void ObjectTextWriter<Unit>::stepList(Frame& frame) {
    const std::size_t depth = depth_;
    const host::ValueType& type = *frame.container.type;
    while (const void* const element = type.list->next(frame.container.value, frame.cursor)) {
        writeElement(frame, 0, itemName, ++frame.next, {const_cast<void*>(element), type.element});
        if (depth_ != depth) {
            return;
        }
    }
    appendEnd(*frame.form, frame.name);
    pop();
}

template <class Unit> void ObjectTextWriter<Unit>::stepMap(Frame& frame) {
    const std::size_t depth = depth_;
    const host::ValueType& type = *frame.container.type;
    for (;;) {
        if (std::exchange(frame.isItemOpen, false)) {
            appendEnd(*frame.inside, itemName);
        }
        const void* value = nullptr;
        const void* const key = type.map->next(frame.container.value, frame.cursor, value);
        if (key == nullptr) {
            break;
        }
        appendUntypedStart(*frame.inside, itemName);
        frame.isItemOpen = true;
        writeElement(frame, 0, keyName, ++frame.next, {const_cast<void*>(key), type.key});
        writeElement(frame, 1, valueName, frame.next, {const_cast<void*>(value), type.element});
        if (depth_ != depth) {
            return;
        }
    }
    appendEnd(*frame.form, frame.name);
    pop();
}

// Beginning and ending

template <class Unit>
typename ObjectTextWriter<Unit>::Frame& ObjectTextWriter<Unit>::push(std::u16string_view name,
                                                                     const ElementForm& inside) {
    if (depth_ == frames_.size()) {
        frames_.push_back(std::make_unique<Frame>());
    }
    Frame& frame = *frames_[depth_++];
    frame.name = name;
    frame.inside = &inside;
    frame.next = 0;
    frame.serializer = nullptr;
    frame.areItemsWritten = false;
    return frame;
}

template <class Unit> void ObjectTextWriter<Unit>::pop() noexcept {
    Frame& frame = *frames_[--depth_];
    frame.owned.reset();
    frame.held.reset();
    frame.isItemOpen = false;
    frame.elementTags[0].type = nullptr;
    frame.elementTags[1].type = nullptr;
    chain_.leave();
}

/// `own` is the serializer that writes the outermost object, or null for the registered one.
template <class Unit>
void ObjectTextWriter<Unit>::beginObject(const ElementForm& form, std::u16string_view name,
                                         std::size_t index, Instance object, TNuSerializer* own) {
    // 1. What writes it.
    const ElementForm& inside = own != nullptr || depth_ == 0 ? rootForm_ : nestedForm_;
    ClassTags<Unit>& tags = tagsIn(inside).of(*object.info);
    if (own == nullptr && object.info->isObject && tags.serializerClass == nullptr) {
        tags.serializerClass = &serializerClassOf(*object.info);
    }
    const TNuSerializerClass* const serializerClass =
        own == nullptr ? tags.serializerClass : nullptr;
    // 2. It may be written here. A serializer of its own kind says so itself.
    chain_.enter(name, index);
    const bool isCustom = serializerClass != nullptr && serializerClass->isCustom;
    try {
        if (isCustom) {
            writeCustom(*serializerClass, name, *static_cast<host::TObject*>(object.object));
        } else {
            chain_.hold(object);
        }
    } catch (...) {
        chain_.leave();
        throw;
    }
    if (isCustom) {
        chain_.leave();
        return;
    }
    // 3. Its start tag. The rest is for the steps.
    Frame& frame = push(name, inside);
    frame.kind = Frame::Kind::Object;
    frame.form = &form;
    frame.object = object;
    frame.tags = &tags;
    frame.serializer = own;
    if (serializerClass != nullptr && !serializerClass->isStandard) {
        frame.owned =
            serializerClass->createFromInstance(*static_cast<host::TObject*>(object.object));
        frame.serializer = frame.owned.get();
    }
    out_.append(tagsIn(form).startOf(name, *object.info));
}

/// A serializer that writes in its own way writes a text of its own, which then goes in here.
template <class Unit>
void ObjectTextWriter<Unit>::writeCustom(const TNuSerializerClass& serializerClass,
                                         std::u16string_view name, host::TObject& object) {
    const auto serializer = serializerClass.createFromInstance(object);
    serializer->uri_ = settings_.uri_;
    serializer->prefix_ = settings_.prefix_;
    serializer->schemaLocation_ = settings_.schemaLocation_;
    if (depth_ == 0) {
        serializer->options_ = settings_.options_;
    }
    serializer->around_ = &chain_;
    TNuStringStream stream(cNuXmlStringType);
    serializer->Serialize(stream, name);
    out_.appendWide(stream.WideView());
}

template <class Unit>
void ObjectTextWriter<Unit>::beginContainer(const ElementForm& form, std::u16string_view name,
                                            std::size_t index, ValueRef container,
                                            OwnedValue held) {
    chain_.enter(name, index);
    Frame& frame = push(name, form);
    const bool isList = container.type->kind == host::ValueKind::List;
    frame.kind = isList ? Frame::Kind::List : Frame::Kind::Map;
    frame.form = &form;
    frame.container = container;
    frame.held = std::move(held);
    if (isList) {
        container.type->list->begin(container.value, frame.cursor);
    } else {
        container.type->map->begin(container.value, frame.cursor);
    }
    appendUntypedStart(form, name);
}

// Tags

template <class Unit>
void ObjectTextWriter<Unit>::appendUntypedStart(const ElementForm& form, std::u16string_view name) {
    appendPiece([&](NuXmlString& text) { form.appendUntypedStart(text, name); });
}

template <class Unit>
void ObjectTextWriter<Unit>::appendEnd(const ElementForm& form, std::u16string_view name) {
    appendPiece([&](NuXmlString& text) { form.appendEnd(text, name); });
}

template class ObjectTextWriter<char>;
template class ObjectTextWriter<char16_t>;

} // namespace nu
