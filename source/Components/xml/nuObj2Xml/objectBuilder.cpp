#include "nuObj2Xml/objectBuilder.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "common/expects.h"
#include "host/runtime/asciiCase.h"
#include "host/runtime/classRegistry.h"
#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "host/runtime/whiteSpace.h"
#include "nuObj2Xml/elementPath.h"
#include "nuObj2Xml/messages.h"
#include "nuObj2Xml/objectFrame.h"
#include "nuObj2Xml/slotClass.h"
#include "nuXmlParser/scan.h"
#include "nuXmlParser/unescape.h"

namespace nu {

ObjectBuilder::ObjectBuilder(TNuDeserializeOptions options) noexcept : options_(options) {}
ObjectBuilder::~ObjectBuilder() = default;

void ObjectBuilder::begin(host::Instance object, TNuSerializer* serializer, bool isNew,
                          const StartedElement& element) {
    if (!element.className.empty() && !isRelated(element.className, *object.info)) {
        throw host::Exception(host::formatMessage(messages::doesNotInherit, {element.className}));
    }
    Frame& frame = push(element.name);
    frame.resetsMissing = isNew || options_.has(dsResetMissing);
    startObject(frame, object, serializer);
}

void ObjectBuilder::startElement(const StartedElement& element) {
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

void ObjectBuilder::characters(std::u16string_view text, bool isCData) {
    const Frame& frame = *frames_[depth_ - 1];
    if (frame.kind == Frame::Kind::Value) {
        const char16_t* const end = text.data() + text.size();
        if (isCData || findOneOf<cNuAmpA>(text.data(), end) == end) {
            text_.append(text);
            return;
        }
        withPlace([&] {
            const std::size_t before = text_.size();
            text_.append(text);
            unescapeFrom(text_, before);
        });
    } else if (frame.kind != Frame::Kind::Skip && isStrict() && !host::trimmed(text).empty()) {
        fail(NuXmlString(messages::textBesideElements));
    }
}

void ObjectBuilder::endElement(TNuDOMElement* tree) {
    expects(depth_ > 0);
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
    case Frame::Kind::Items:
    case Frame::Kind::List:
    case Frame::Kind::Map:
    case Frame::Kind::MapItem:
        endHeld(frame);
    }
    pop();
}

host::Instance ObjectBuilder::innermostObject() const noexcept {
    if (depth_ == 0 || frames_[depth_ - 1]->kind != Frame::Kind::Object) {
        return {};
    }
    return frames_[depth_ - 1]->object;
}

bool ObjectBuilder::notesProperties() const noexcept {
    return depth_ > 0 && !frames_[depth_ - 1]->seen.empty();
}

void ObjectBuilder::noteRead(const host::TPropInfo& property) noexcept {
    Frame& frame = *frames_[depth_ - 1];
    frame.seen[static_cast<std::size_t>(&property - frame.object.info->properties.data())] = true;
}

bool ObjectBuilder::wantsText() const noexcept {
    if (depth_ == 0) {
        return false;
    }
    const Frame::Kind kind = frames_[depth_ - 1]->kind;
    return kind == Frame::Kind::Value || (isStrict() && kind != Frame::Kind::Skip);
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
void ObjectBuilder::skipUnknown(std::u16string_view message, const StartedElement& element,
                                std::u16string_view className) {
    if (isStrict()) {
        fail(host::formatMessage(message, {element.name, className}));
    }
    skip(element.name);
}

// Errors

NuXmlString ObjectBuilder::place() const {
    if (locator_ == nullptr) {
        return host::formatMessage(messages::at, {path()});
    }
    if (!knowsPlaces_) {
        throw PlaceUnknown();
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
