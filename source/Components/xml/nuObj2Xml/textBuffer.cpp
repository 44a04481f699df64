#include "nuObj2Xml/textBuffer.h"

#include <array>
#include <string>

#include "common/utf8.h"
#include "host/runtime/numberText.h"
#include "host/runtime/utf8Sequence.h"
#include "nuXmlParser/scan.h"

namespace nu {

namespace {

/// What is written in place of a character; empty for one that is dropped.
constexpr std::string_view replacementOf(char16_t unit) noexcept {
    switch (unit) {
    case cNuApos:
        return "&apos;";
    case cNuQuote:
        return "&quot;";
    case cNuAmp:
        return "&amp;";
    case cNuLt:
        return "&lt;";
    case cNuGt:
        return "&gt;";
    case u'\r':
        return "&#13;";
    default:
        return "";
    }
}

/// Whether an ASCII character stands for itself; indexed by it.
constexpr auto isVerbatim = [] {
    std::array<bool, 128> table{};
    for (std::size_t unit = 1; unit < table.size(); ++unit) {
        table[unit] = replacementOf(static_cast<char16_t>(unit)).empty();
    }
    return table;
}();

template <class Unit> constexpr bool isVerbatimAscii(Unit unit) noexcept {
    const auto index = static_cast<std::make_unsigned_t<Unit>>(unit);
    return index < isVerbatim.size() && isVerbatim[index];
}

/// Whether readers would take a text for white space between tags: control characters count for
/// some.
template <class Unit> bool isBlank(std::basic_string_view<Unit> text) noexcept {
    return std::all_of(text.begin(), text.end(), [](Unit unit) {
        return static_cast<std::make_unsigned_t<Unit>>(unit) <= ' ';
    });
}

} // namespace

template <class Unit> void TextBuffer<Unit>::makeRoom(std::size_t count) {
    if (target_ != nullptr) {
        flush();
    }
    const auto fill = static_cast<std::size_t>(next_ - block_.get());
    const auto capacity = static_cast<std::size_t>(end_ - block_.get());
    if (capacity - fill >= count) {
        return;
    }
    const std::size_t least = target_ != nullptr ? blockSize : 256;
    const std::size_t larger = std::max({fill + count, capacity * 2, least});
    auto block = std::make_unique_for_overwrite<Unit[]>(larger);
    std::copy_n(block_.get(), fill, block.get());
    block_ = std::move(block);
    next_ = block_.get() + fill;
    end_ = block_.get() + larger;
}

template <class Unit> void TextBuffer<Unit>::flush() {
    if (target_ != nullptr) {
        const auto text = view();
        clear();
        target_->WriteBuffer(text.data(), text.size() * sizeof(Unit));
    }
}

template <class Unit> void TextBuffer<Unit>::appendWide(std::u16string_view text) {
    if constexpr (isUtf8) {
        appendEncoded(text);
    } else {
        append(text);
    }
}

/// UTF-8 out of UTF-16, in parts of which each has room in a block.
template <class Unit> void TextBuffer<Unit>::appendEncoded(std::u16string_view text) {
    if constexpr (isUtf8) {
        constexpr std::size_t longest = blockSize / 4;
        while (!text.empty()) {
            std::size_t count = std::min(text.size(), longest);
            // The halves of a character stay together.
            if (count < text.size() && host::isHighSurrogate(text[count - 1])) {
                --count;
            }
            Unit* const place = room(3 * count);
            next_ = place + NuEncodeUtf8(text.substr(0, count), place);
            text.remove_prefix(count);
        }
    }
}

/// A short text in one go, as most values are; false, with nothing written, for one that is long or
/// blank, and for characters that take more than a look at one unit.
template <class Unit>
template <class Source>
bool TextBuffer<Unit>::appendShort(std::basic_string_view<Source> text) {
    constexpr std::size_t longest = 64;
    constexpr std::size_t mostUnits = 6; // "&quot;"
    constexpr bool isWide = std::is_same_v<Source, char16_t>;
    if (text.size() > longest || (isBlank(text) && !text.empty())) {
        return false;
    }
    Unit* place = room(longest * mostUnits);
    for (const Source unit : text) {
        const auto code = static_cast<std::make_unsigned_t<Source>>(unit);
        if (isVerbatimAscii(unit)) [[likely]] {
            *place++ = static_cast<Unit>(code);
        } else if (code < isVerbatim.size()) {
            for (const char written : replacementOf(static_cast<char16_t>(code))) {
                *place++ = static_cast<Unit>(written);
            }
        } else if constexpr (isWide && !isUtf8) {
            *place++ = unit;
        } else if (isWide && code < 0x800) {
            *place++ = static_cast<char>(0xC0 | code >> 6U);
            *place++ = static_cast<char>(0x80 | (code & 0x3FU));
        } else {
            return false; // a part of a character, or a script that is encoded by blocks
        }
    }
    next_ = place;
    return true;
}

template <class Unit>
template <class Source>
void TextBuffer<Unit>::appendEscaped(std::basic_string_view<Source> text) {
    if (appendShort(text)) {
        return;
    }
    std::basic_string<Source> withoutNul;
    if (text.find(Source{0}) != text.npos) {
        withoutNul = text;
        std::erase(withoutNul, Source{0});
        text = withoutNul;
    }
    if (isBlank(text) && !text.empty()) {
        appendAscii("&#");
        appendAscii(host::NumberText(static_cast<unsigned>(text.front())).view());
        appendAscii(";");
        text.remove_prefix(1);
    }
    const Source* place = text.data();
    const Source* const end = place + text.size();
    while (place != end) {
        // Parts of bounded length, so that a text of any length goes through a block.
        const Source* const partEnd =
            place + std::min<std::size_t>(static_cast<std::size_t>(end - place), blockSize / 4);
        const Source* const found =
            findOneOf<cNuAposA, cNuQuoteA, cNuAmpA, cNuLtA, cNuGtA, '\r'>(place, partEnd);
        const auto length = static_cast<std::size_t>(found - place);
        if constexpr (std::is_same_v<Source, Unit>) {
            append({place, length});
        } else {
            // The first half of a character waits for the second.
            const bool isHalf = found == partEnd && partEnd != end && length > 1 &&
                                host::isHighSurrogate(found[-1]);
            appendEncoded({place, length - (isHalf ? 1 : 0)});
            if (isHalf) {
                place = found - 1;
                continue;
            }
        }
        place = found;
        if (found != partEnd) {
            appendAscii(replacementOf(static_cast<char16_t>(*place++)));
        }
    }
}

template <class Unit> void TextBuffer<Unit>::appendContent(std::u16string_view text) {
    appendEscaped(text);
}

template <class Unit> void TextBuffer<Unit>::appendUtf8Content(std::string_view text) {
    if constexpr (isUtf8) {
        if (appendShort(text)) {
            return;
        }
        if (NuIsUtf8(text)) {
            appendEscaped(text);
            return;
        }
    }
    appendContent(NuFromUtf8(text));
}

template class TextBuffer<char>;
template class TextBuffer<char16_t>;

} // namespace nu
