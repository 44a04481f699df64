#include "nuXmlDOM/write/pageCharacters.h"

#include "common/codePage.h"
#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "host/runtime/utf8Sequence.h"
#include "nuXmlDOM/core/domMessages.h"

namespace nu {

namespace {

[[noreturn]] void raiseLacking(std::u16string_view text) {
    throw host::EConvertError(host::formatMessage(messages::lackingCharacter, {text}));
}

/// A value with references for the characters that a parser makes blanks of.
template <class Unit>
std::basic_string_view<Unit> withReferencesForBlanks(std::basic_string_view<Unit> text,
                                                     std::basic_string<Unit>& room) {
    static constexpr Unit blanks[] = {'\t', '\n', '\r'};
    constexpr std::basic_string_view<Unit> all(blanks, 3);
    std::size_t found = text.find_first_of(all);
    if (found == text.npos) {
        return text;
    }
    room.clear();
    for (; found != text.npos; found = text.find_first_of(all)) {
        room += text.substr(0, found);
        for (const char unit : "&#" + std::to_string(static_cast<int>(text[found])) + ';') {
            room += static_cast<Unit>(unit);
        }
        text.remove_prefix(found + 1);
    }
    room += text;
    return room;
}

/// A text that is not narrow.
std::u16string_view unitsOf(const StoredText& text, NuXmlString& room) {
    if (text.isWide()) {
        return text.wide();
    }
    room.clear();
    text.appendTo(room);
    return room;
}

} // namespace

std::string_view ExactCharacters::value(std::string_view text) {
    return withReferencesForBlanks(text, narrow_);
}

std::u16string_view ExactCharacters::value(const StoredText& text) {
    return withReferencesForBlanks(unitsOf(text, units_), wide_);
}

/// Half of a character is none that XML could have.
PageCharacters::Character PageCharacters::firstOf(std::u16string_view text) noexcept {
    constexpr std::uint32_t firstBeyond = 0x10000;
    const NuXmlChar unit = text.front();
    if (host::isHighSurrogate(unit) && text.size() > 1 && host::isLowSurrogate(text[1])) {
        return {firstBeyond + ((unit & 0x3FFu) << 10) + (text[1] & 0x3FFu), 2};
    }
    return {host::isSurrogate(unit) ? host::replacementCharacter : unit, 1};
}

template <class WriteLacking>
std::string_view PageCharacters::convert(std::u16string_view text, std::string& bytes,
                                         WriteLacking&& lacking) {
    // Bounded, because the room for a piece is cleared anew behind each character that is lacking.
    constexpr std::size_t longestPiece = 64;
    bytes.clear();
    while (!text.empty()) {
        // 1. What the page has.
        const std::u16string_view piece = text.substr(0, longestPiece);
        const std::size_t start = bytes.size();
        bytes.resize(start + piece.size());
        const std::size_t count = NuNarrowAnsiPrefix(piece, codePage_, bytes.data() + start);
        bytes.resize(start + count);
        text.remove_prefix(count);
        // 2. The character that it lacks.
        if (count < piece.size()) {
            const Character character = firstOf(text);
            lacking(character.value);
            text.remove_prefix(character.length);
        }
    }
    return bytes;
}

std::string_view PageCharacters::withReferences(std::u16string_view text, std::string_view before,
                                                std::string_view behind) {
    return convert(text, text_, [&](std::uint32_t character) {
        text_ += before;
        text_ += "&#";
        text_ += std::to_string(character);
        text_ += ';';
        text_ += behind;
    });
}

std::string_view PageCharacters::name(const NodeName& name) {
    if (name.utf8().size() == name.qualified().size()) {
        return name.utf8(); // ASCII
    }
    return convert(name.qualified(), name_, [&](std::uint32_t) { raiseLacking(name.qualified()); });
}

std::u16string_view PageCharacters::units(const StoredText& text) { return unitsOf(text, units_); }

std::string_view PageCharacters::text(const StoredText& text) {
    return text.isNarrow() ? text.bytes() : withReferences(units(text), {}, {});
}

std::string_view PageCharacters::section(const StoredText& text) {
    return text.isNarrow() ? text.bytes() : withReferences(units(text), "]]>", "<![CDATA[");
}

std::string_view PageCharacters::comment(const StoredText& text) {
    return text.isNarrow() ? text.bytes()
                           : convert(units(text), text_, [&](std::uint32_t) { text_ += '?'; });
}

std::string_view PageCharacters::instruction(const StoredText& text) {
    return text.isNarrow()
               ? text.bytes()
               : convert(units(text), text_, [&](std::uint32_t) { raiseLacking(text.toString()); });
}

} // namespace nu
