#include "nuXmlRecords/recordJson.h"

#include <array>
#include <bit>

#include "common/simd/block.h"

namespace nu {

namespace {

/// What cannot stand in a string of JSON as it is, and "&".
constexpr std::array<bool, 256> stops = [] {
    std::array<bool, 256> table{};
    for (std::size_t control = 0; control < 0x20; ++control) {
        table[control] = true;
    }
    table['"'] = table['\\'] = table['&'] = true;
    return table;
}();

const char* findStop(const char* place, const char* end) noexcept {
    constexpr auto blockSize = static_cast<std::ptrdiff_t>(simd::blockSize);
    for (; end - place >= blockSize; place += blockSize) {
        const auto block = simd::Block::load(place);
        const unsigned found = (simd::isAnyOf<'"', '\\', '&'>(block) | block.isAtMost(0x1F)).mask();
        if (found != 0) {
            return place + std::countr_zero(found);
        }
    }
    while (place != end && !stops[static_cast<unsigned char>(*place)]) {
        ++place;
    }
    return place;
}

void appendEscape(std::string& target, char c) {
    constexpr std::string_view digits = "0123456789abcdef";
    switch (c) {
    case '"':
        target += "\\\"";
        break;
    case '\\':
        target += "\\\\";
        break;
    case '\n':
        target += "\\n";
        break;
    case '\r':
        target += "\\r";
        break;
    case '\t':
        target += "\\t";
        break;
    default: // only what came as a reference is another control character
        target.append("\\u00").append(1, digits[static_cast<unsigned char>(c) >> 4]);
        target += digits[c & 0xF];
    }
}

/// Behind the reference whose "&" stands at `mark`, or behind that if it is none.
const char* appendReference(std::string& target, const char* mark, const char* end) {
    const std::string_view rest(mark, end);
    const std::size_t semicolon = rest.find(';');
    const std::string_view reference = rest.substr(0, semicolon == rest.npos ? 1 : semicolon + 1);
    std::string characters;
    appendUnescaped(characters, reference);
    for (const char c : characters) {
        if (c != '&' && stops[static_cast<unsigned char>(c)]) {
            appendEscape(target, c);
        } else {
            target += c;
        }
    }
    return mark + reference.size();
}

void appendText(std::string& target, const RecordOutline& outline,
                const RecordOutline::Element& element) {
    target += '"';
    for (RecordOutline::Index index = element.firstText; index != RecordOutline::none;
         index = outline.text(index).next) {
        appendJsonText(target, outline.text(index).text, outline.text(index).isCData);
    }
    target += '"';
}

void appendKey(std::string& target, std::string_view start, std::string_view name) {
    // No character of a name needs an escape.
    target.append(start).append(name).append("\":");
}

} // namespace

void appendJsonText(std::string& target, std::string_view text, bool isCData) {
    const char* place = text.data();
    const char* const end = place + text.size();
    for (;;) {
        const char* const stop = findStop(place, end);
        target.append(place, stop);
        if (stop == end) {
            return;
        }
        if (*stop != '&') {
            appendEscape(target, *stop);
            place = stop + 1;
        } else if (isCData) {
            target += '&';
            place = stop + 1;
        } else {
            place = appendReference(target, stop, end);
        }
    }
}

void RecordJson::append(std::string& target, const RecordOutline& outline) {
    outline_ = &outline;
    frames_.clear();
    open(target, RecordOutline::root());
    while (!frames_.empty()) {
        continueObject(target);
    }
}

/// Writes a string, or an object up to its child elements.
void RecordJson::open(std::string& target, RecordOutline::Index index) {
    const RecordOutline::Element& element = (*outline_)[index];
    if (outline_->isText(index)) {
        appendText(target, *outline_, element);
        return;
    }
    bool hasMembers = false;
    for (RecordOutline::Index at = element.firstAttribute; at != element.behindAttributes; ++at) {
        appendKey(target, hasMembers ? ",\"@" : "{\"@", outline_->attribute(at).name);
        target += '"';
        appendJsonText(target, outline_->attribute(at).value, false);
        target += '"';
        hasMembers = true;
    }
    if (element.hasSolidText ||
        (element.firstChild == RecordOutline::none && element.firstText != RecordOutline::none)) {
        appendKey(target, hasMembers ? ",\"" : "{\"", "#text");
        appendText(target, *outline_, element);
        hasMembers = true;
    }
    if (!hasMembers) {
        target += '{';
    }
    frames_.push_back({element.firstChild, RecordOutline::none, false, hasMembers});
}

/// Writes the next child element of the innermost object, or its end.
void RecordJson::continueObject(std::string& target) {
    Frame& frame = frames_.back();
    // 1. The next one in the array.
    if (frame.nextSame != RecordOutline::none) {
        const RecordOutline::Index index = frame.nextSame;
        frame.nextSame = (*outline_)[index].nextSame;
        target += ',';
        open(target, index);
        return;
    }
    if (frame.isInArray) {
        target += ']';
        frame.isInArray = false;
    }
    // 2. The next name.
    if (frame.nextName == RecordOutline::none) {
        target += '}';
        frames_.pop_back();
        return;
    }
    const RecordOutline::Index index = frame.nextName;
    const RecordOutline::Element& element = (*outline_)[index];
    appendKey(target, frame.hasMembers ? ",\"" : "\"", element.name);
    frame.hasMembers = true;
    frame.nextName = element.nextName;
    frame.nextSame = element.nextSame;
    frame.isInArray = element.nextSame != RecordOutline::none;
    if (frame.isInArray) {
        target += '[';
    }
    open(target, index);
}

} // namespace nu
