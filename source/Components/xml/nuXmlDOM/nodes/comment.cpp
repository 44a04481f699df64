#include "nuXmlDOM/core/comment.h"

#include <algorithm>

#include "host/runtime/exception.h"
#include "host/runtime/streamMessages.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/nodes/makeNode.h"
#include "nuXmlDOM/upkeep/documentParts.h"

const TNuDOMNodeClass TNuDOMComment::Class{u"TNuDOMComment", host::COMMENT_NODE,
                                           nu::createNode<TNuDOMComment>};

namespace {

/// A text that is put together from parts of an old one, as a stream copies from another.
class Rebuilt {
public:
    explicit Rebuilt(std::u16string_view old) : old_(old) {}

    /// Copies `count` characters from the place in the old text, and moves it.
    /// Deliberate: 0 stands for the whole old text; streams copy so.
    void copy(std::ptrdiff_t count) {
        if (count == 0) {
            place_ = 0;
            count = std::ssize(old_);
        }
        if (count < 0 || count > left()) {
            throw host::EReadError(host::messages::readError);
        }
        text_ += old_.substr(static_cast<std::size_t>(place_), static_cast<std::size_t>(count));
        place_ += count;
    }
    void skip(std::ptrdiff_t count) {
        if (count < -place_ || count > left()) {
            throw host::EReadError(host::messages::readError);
        }
        place_ += count;
    }
    void write(std::u16string_view text) { text_ += text; }

    /// How much of the old text there is behind the place.
    [[nodiscard]] std::ptrdiff_t left() const { return std::ssize(old_) - place_; }
    [[nodiscard]] const NuXmlString& text() const { return text_; }

private:
    std::u16string_view old_;
    std::ptrdiff_t place_ = 0;
    NuXmlString text_;
};

/// Whether "--" stands where one of the groups of two begins.
bool hasRefusedGroup(std::u16string_view text) {
    for (std::size_t place = 0; text.size() - place >= 2; place += 2) {
        if (text[place] == cNuLine && text[place + 1] == cNuLine) {
            return true;
        }
    }
    return false;
}

std::size_t checkedPlace(std::ptrdiff_t offset) {
    if (offset < 0) {
        throw host::EStreamError(host::messages::seekError);
    }
    return static_cast<std::size_t>(offset);
}

} // namespace

NuXmlString TNuDOMComment::get_nodeName() const { return u"#comment"; }

void TNuDOMComment::set_nodeValue(std::u16string_view value) {
    if (hasRefusedGroup(value)) {
        stored().clear(OwnerDocument()->parts().memory);
        position_ = cEnd;
        throw ENuDomInvalidCharacter(nu::messages::invalidComment);
    }
    store(value);
    position_ = cEnd;
}

std::size_t TNuDOMComment::get_length() const { return indexed().length(); }

NuXmlString TNuDOMComment::substringData(std::ptrdiff_t offset, std::ptrdiff_t count) {
    const std::size_t start = checkedPlace(offset);
    const auto length = static_cast<std::size_t>(std::max<std::ptrdiff_t>(count, 0));
    NuXmlString part = indexed().part(start, length);
    position_ = start + part.size();
    return part;
}

void TNuDOMComment::appendData(std::u16string_view text) {
    if (position_ != cEnd && !text.empty()) {
        writeAt(position_, text);
        return;
    }
    stored().append(OwnerDocument()->parts().memory, text);
}

void TNuDOMComment::insertData(std::ptrdiff_t offset, std::u16string_view text) {
    if (text.empty()) {
        return;
    }
    const NuXmlString data = get_data();
    // An offset further outside fails in the same way.
    offset = std::clamp<std::ptrdiff_t>(offset, -1, std::ssize(data) + 2);
    position_ = cEnd;
    Rebuilt rebuilt(data);
    if (offset > 0) {
        rebuilt.copy(offset - 1);
    }
    rebuilt.write(text);
    rebuilt.copy(std::ssize(data) - offset);
    store(rebuilt.text());
}

void TNuDOMComment::deleteData(std::ptrdiff_t offset, std::ptrdiff_t count) {
    const NuXmlString data = get_data();
    position_ = cEnd;
    Rebuilt rebuilt(data);
    if (offset > 0) {
        rebuilt.copy(offset);
    }
    rebuilt.skip(count);
    rebuilt.copy(rebuilt.left());
    store(rebuilt.text());
}

void TNuDOMComment::replaceData(std::ptrdiff_t offset, std::ptrdiff_t /*count*/,
                                std::u16string_view text) {
    if (!text.empty()) {
        writeAt(checkedPlace(offset), text);
    }
}

void TNuDOMComment::writeAt(std::size_t position, std::u16string_view text) {
    const std::size_t end = position + text.size();
    if (position == stored().length()) {
        stored().append(OwnerDocument()->parts().memory, text);
    } else {
        // What lies between the old end and the place becomes NUL.
        NuXmlString data = get_data();
        data.resize(std::max(data.size(), end));
        text.copy(data.data() + position, text.size());
        store(data);
    }
    position_ = end;
}
