#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "common/utf8.h"
#include "nuXmlDOM/storage/asciiText.h"
#include "nuXmlDOM/storage/nodeName.h"
#include "nuXmlDOM/storage/storedText.h"

/// \file
/// What markup is put together from, in the two forms that it is written in: for each kind of piece
/// the room that it needs at most, in units, and a copy of it into such room. Copies give the place
/// behind what they wrote and may use the rest of the room.

namespace nu {

/// So many blanks for each level, nothing for a level below 1.
struct Indentation {
    std::int64_t levels;
    std::size_t width;

    [[nodiscard]] std::size_t length() const noexcept {
        return levels > 0 ? width * static_cast<std::size_t>(levels) : 0;
    }
};

/// Copies bytes, most often few: up to 16 without a call. What is copied twice is cheaper than a
/// loop.
inline char* copyBytes(std::string_view bytes, char* to) noexcept {
    const char* const from = bytes.data();
    const std::size_t size = bytes.size();
    if (size > 16) {
        std::memcpy(to, from, size);
    } else if (size >= 8) {
        std::uint64_t words[2];
        std::memcpy(&words[0], from, 8);
        std::memcpy(&words[1], from + size - 8, 8);
        std::memcpy(to, &words[0], 8);
        std::memcpy(to + size - 8, &words[1], 8);
    } else if (size >= 4) {
        std::uint32_t words[2];
        std::memcpy(&words[0], from, 4);
        std::memcpy(&words[1], from + size - 4, 4);
        std::memcpy(to, &words[0], 4);
        std::memcpy(to + size - 4, &words[1], 4);
    } else if (size > 0) {
        to[0] = from[0];
        to[size / 2] = from[size / 2];
        to[size - 1] = from[size - 1];
    }
    return to + size;
}

/// What is the same in both forms.
template <class Unit> struct CommonPieces {
    template <std::size_t size> static constexpr std::size_t room(const char (&)[size]) noexcept {
        return size - 1;
    }
    template <std::size_t size> static Unit* copy(const char (&ascii)[size], Unit* to) noexcept {
        for (std::size_t index = 0; index + 1 < size; ++index) {
            to[index] = static_cast<Unit>(ascii[index]);
        }
        return to + size - 1;
    }

    static std::size_t room(Indentation indentation) noexcept {
        return indentation.length() + blanks;
    }
    static Unit* copy(Indentation indentation, Unit* to) noexcept {
        Unit* const end = to + indentation.length();
        // Whole blocks: almost always it is one.
        do {
            std::fill_n(to, blanks, Unit{' '});
            to += blanks;
        } while (to < end);
        return end;
    }

protected:
    static constexpr std::size_t blanks = 16; ///< written at once
};

template <class Unit> struct Pieces;

/// As UTF-16.
template <> struct Pieces<char16_t> : CommonPieces<char16_t> {
    using CommonPieces::copy;
    using CommonPieces::room;

    static std::u16string_view view(const NodeName& name) noexcept { return name.qualified(); }
    static std::size_t room(const NodeName& name) noexcept { return view(name).size(); }
    static char16_t* copy(const NodeName& name, char16_t* to) noexcept {
        return copy(view(name), to);
    }

    static std::size_t room(const StoredText& text) noexcept {
        return text.isWide() ? text.length() : text.bytes().size();
    }
    static char16_t* copy(const StoredText& text, char16_t* to) noexcept {
        if (text.isUtf8()) {
            return to + NuDecodeUtf8Prefix(text.bytes(), to).Units;
        }
        return text.isWide() ? copy(text.wide(), to) : copy(text.bytes(), to);
    }

    /// ASCII only.
    static std::size_t room(std::string_view text) noexcept { return text.size(); }
    static char16_t* copy(std::string_view text, char16_t* to) noexcept {
        widenAscii(text, to);
        return to + text.size();
    }
    static std::size_t room(std::u16string_view text) noexcept { return text.size(); }
    static char16_t* copy(std::u16string_view text, char16_t* to) noexcept {
        return std::copy_n(text.data(), text.size(), to);
    }
};

/// As UTF-8.
template <> struct Pieces<char> : CommonPieces<char> {
    using CommonPieces::copy;
    using CommonPieces::room;

    /// What a unit of UTF-16 becomes at most.
    static constexpr std::size_t bytesOfUnit = 3;

    static std::string_view view(const NodeName& name) noexcept { return name.utf8(); }
    static std::size_t room(const NodeName& name) noexcept { return view(name).size(); }
    static char* copy(const NodeName& name, char* to) noexcept { return copy(view(name), to); }

    static std::size_t room(const StoredText& text) noexcept {
        return text.isWide() ? room(text.wide()) : room(text.bytes());
    }
    static char* copy(const StoredText& text, char* to) noexcept {
        return text.isWide() ? copy(text.wide(), to) : copy(text.bytes(), to);
    }

    static std::size_t room(std::string_view text) noexcept { return text.size(); }
    static char* copy(std::string_view text, char* to) noexcept { return copyBytes(text, to); }
    static std::size_t room(std::u16string_view text) noexcept { return text.size() * bytesOfUnit; }
    static char* copy(std::u16string_view text, char* to) noexcept {
        return to + NuEncodeUtf8(text, to);
    }
};

} // namespace nu
