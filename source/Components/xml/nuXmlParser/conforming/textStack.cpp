#include "nuXmlParser/conforming/textStack.h"

#include "common/expects.h"
#include "host/runtime/format.h"
#include "nuXmlParser/conforming/conformingMessages.h"
#include "nuXmlParser/lineFeeds.h"

namespace nu {

bool TextStack::showMore() {
    if (isInEntity()) {
        return false;
    }
    if (source_.staysInPlace()) {
        const bool isMore = source_.showMore(place);
        end = source_.end();
        return isMore;
    }
    write();
    elements_.settleLines(source_, source_.offsetOf(place));
    // The text moves even where what follows it is a fault, and it may still be written then.
    const auto follow = [this] {
        notWritten_ = place;
        end = source_.end();
    };
    try {
        const bool isMore = source_.showMore(place);
        follow();
        return isMore;
    } catch (...) {
        follow();
        throw;
    }
}

bool TextStack::startsWith(std::string_view text) {
    for (;;) {
        const std::string_view shown(place, end);
        if (shown.size() >= text.size() || !text.starts_with(shown)) {
            return shown.starts_with(text);
        }
        if (!showMore()) {
            return false;
        }
    }
}

void TextStack::write() {
    if (place < notWritten_) {
        return; // a fault broke off text of which some was changed ahead of the place
    }
    if (dropped_ == nullptr) {
        output_.append(notWritten_, place);
    } else if (!isInEntity()) {
        dropped_->add({notWritten_, place});
    }
    notWritten_ = place;
}

void TextStack::beginDropping(DroppedText& dropped) {
    change(place, place, {});
    dropped_ = &dropped;
}

void TextStack::endDropping() {
    write();
    dropped_ = nullptr;
}

void TextStack::insertBreaks(const char* at) {
    insert(at, {});
    output_.append(static_cast<std::size_t>(keptBreaks_), '\n');
    keptBreaks_ = 0;
}

void TextStack::enter(Entity& entity, const char* behindReference) {
    // The reference goes, or is dropped with what stands around it.
    change(place, behindReference, {});
    if (dropped_ != nullptr && !isInEntity()) {
        dropped_->add({notWritten_, behindReference});
    }
    frames_.push_back({&entity, elements_.depth(), place, behindReference, end});
    entity.isOpen = true;
    place = entity.text.data();
    end = place + entity.text.size();
    notWritten_ = place;
}

void TextStack::leave() {
    expects(isInEntity() && frames_.back().entity->isOpen);
    write();
    const Frame& frame = frames_.back();
    frame.entity->isOpen = false;
    place = frame.place;
    end = frame.end;
    notWritten_ = place;
    frames_.pop_back();
}

void TextStack::leaveAll() {
    while (isInEntity()) {
        notWritten_ = place;
        leave();
    }
}

void TextStack::fail(std::u16string_view message, const char* at) const {
    failWith(std::u16string(message), at);
}

void TextStack::fail(std::u16string_view message, std::string_view text, const char* at) const {
    const std::u16string shown = shortened(text);
    failWith(host::formatMessage(message, {shown}), at);
}

void TextStack::failWith(const std::u16string& message, const char* at) const {
    if (!isInEntity()) {
        throw makeFault(message, source_.placeOf(at));
    }
    const std::u16string name = shortened(frames_.back().entity->name);
    throw makeFault(host::formatMessage(messages::insideEntity, {message, name}),
                    source_.placeOf(frames_.front().reference));
}

void TextStack::failEntity(std::u16string_view message) const {
    throw makeFault(message, frames_.back().entity->name,
                    source_.placeOf(frames_.front().reference));
}

std::int64_t countBreaks(std::string_view text) noexcept {
    if (text.size() == 1) {
        return text[0] == '\n' || text[0] == '\r' ? 1 : 0;
    }
    std::int64_t count = countLineFeeds(text);
    for (std::size_t cr = text.find('\r'); cr != text.npos; cr = text.find('\r', cr + 1)) {
        count += cr + 1 == text.size() || text[cr + 1] != '\n' ? 1 : 0;
    }
    return count;
}

} // namespace nu
