#pragma once

#include <bit>
#include <cstring>
#include <string>
#include <string_view>

#include "common/simd/block.h"

/// \file
/// Tags in bytes that are looked at for where they end only. Behind `end` a block can be read.

namespace nu {

inline bool isTagSpace(char c) noexcept { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; }

/// The next "<"; `end` where there is none.
inline const char* findLess(const char* place, const char* end) noexcept {
    // Nearly always it is near.
    constexpr int nearBlocks = 4;
    for (int count = 0; count < nearBlocks; ++count) {
        if (const unsigned found = simd::isAnyOf<'<'>(simd::Block::load(place)).mask();
            found != 0) {
            const char* const at = place + std::countr_zero(found);
            return at < end ? at : end;
        }
        place += simd::blockSize;
        if (place >= end) {
            return end;
        }
    }
    const void* const found = std::memchr(place, '<', static_cast<std::size_t>(end - place));
    return found == nullptr ? end : static_cast<const char*>(found);
}

/// The ">" that ends the tag in which `place` is, outside of quotes; null where it is not there.
inline const char* findTagEndByByte(const char* place, const char* end) noexcept {
    char quote = 0;
    for (; place != end; ++place) {
        if (quote != 0) {
            quote = *place == quote ? '\0' : quote;
        } else if (*place == '>') {
            return place;
        } else if (*place == '"' || *place == '\'') {
            quote = *place;
        }
    }
    return nullptr;
}

inline const char* findTagEnd(const char* place, const char* end) noexcept {
    unsigned quoted = 0; // all ones inside of quotes
    for (const char* at = place; at < end; at += simd::blockSize) {
        const auto block = simd::Block::load(at);
        const auto bits = [block](char c) {
            return block.equals(simd::Block::all(static_cast<unsigned char>(c))).mask();
        };
        // Each bit becomes the parity of the quotes up to it.
        unsigned inside = bits('"');
        inside ^= inside << 1;
        inside ^= inside << 2;
        inside ^= inside << 4;
        inside ^= inside << 8;
        inside = (inside ^ quoted) & 0xFFFF;
        const unsigned ends = bits('>') & ~inside;
        const unsigned before = ends == 0 ? 0xFFFF : ends ^ (ends - 1);
        // An apostrophe outside of quotes is one, too.
        if ((bits('\'') & ~inside & before) != 0) {
            return findTagEndByByte(place, end);
        }
        if (ends != 0) {
            const char* const found = at + std::countr_zero(ends);
            return found < end ? found : nullptr;
        }
        quoted = (inside & 0x8000) != 0 ? 0xFFFF : 0;
    }
    return nullptr;
}

/// Behind the name at `place`, in a tag that is all there.
inline const char* findNameEnd(const char* place) noexcept {
    while (!isTagSpace(*place) && *place != '>' && *place != '/' && *place != '=') {
        ++place;
    }
    return place;
}

/// A start tag with those of its attributes only that count for what is inside of the element:
/// declarations of namespaces, and "xml:space" and its like.
[[nodiscard]] std::string contextTag(const char* less, const char* greater);

} // namespace nu
