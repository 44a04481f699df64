#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <numeric>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// \file
/// Sixteen bytes at once: the one place that knows how a processor does that. Whoever searches in
/// blocks is written once, with `simd::Block`; that is the form for SSE2 or the portable one. Both
/// have the same operations, and each reads and writes exactly the bytes that it names; addresses
/// need no alignment.

namespace nu::simd {

/// The bytes of a block, and the characters that the functions below handle at once.
inline constexpr std::size_t blockSize = 16;

/// Sixteen bytes, or for each of them all ones where something is true of it and zero where not.
class PortableBlock {
public:
    [[nodiscard]] static PortableBlock load(const void* from) noexcept {
        PortableBlock block;
        std::memcpy(block.bytes_.data(), from, blockSize);
        return block;
    }
    /// Sixteen units as bytes. Those that are no ASCII become what is no ASCII character but
    /// U+007F.
    [[nodiscard]] static PortableBlock loadUnits(const char16_t* from) noexcept {
        return make([from](std::size_t index) { return from[index] < 0x80 ? from[index] : 0xFFU; });
    }
    /// `count` characters and as many others, 8 or 4, as the first bytes. Units as in loadUnits.
    template <std::size_t count, class Unit>
    [[nodiscard]] static PortableBlock loadPieces(const Unit* from, const Unit* others) noexcept {
        return make([=](std::size_t index) {
            const auto unit = index < count       ? from[index]
                              : index < 2 * count ? others[index - count]
                                                  : Unit{};
            return sizeof unit == 1 || unit < 0x80 ? static_cast<unsigned>(unit) : 0xFFU;
        });
    }
    [[nodiscard]] static PortableBlock all(unsigned value) noexcept {
        return make([value](std::size_t /*index*/) { return value; });
    }
    void store(void* to) const noexcept { std::memcpy(to, bytes_.data(), blockSize); }

    [[nodiscard]] PortableBlock equals(PortableBlock other) const noexcept {
        return make([&](std::size_t index) { return ones(bytes_[index] == other.bytes_[index]); });
    }
    /// Bytes as numbers without a sign.
    [[nodiscard]] PortableBlock isAtMost(unsigned most) const noexcept {
        return make([&](std::size_t index) { return ones(bytes_[index] <= most); });
    }
    /// Which bytes begin a sequence of UTF-8, or are one.
    [[nodiscard]] PortableBlock beginsSequence() const noexcept {
        return make([&](std::size_t index) { return ones((bytes_[index] & 0xC0) != 0x80); });
    }
    [[nodiscard]] PortableBlock isAtLeast(unsigned least) const noexcept {
        return make([&](std::size_t index) { return ones(bytes_[index] >= least); });
    }
    [[nodiscard]] PortableBlock butNot(PortableBlock other) const noexcept {
        return make(
            [&](std::size_t index) { return bytes_[index] & ~unsigned{other.bytes_[index]}; });
    }
    friend PortableBlock operator|(PortableBlock left, PortableBlock right) noexcept {
        return make([&](std::size_t index) { return left.bytes_[index] | right.bytes_[index]; });
    }
    friend PortableBlock operator&(PortableBlock left, PortableBlock right) noexcept {
        return make([&](std::size_t index) { return left.bytes_[index] & right.bytes_[index]; });
    }
    /// Each byte less that of the other, beyond zero from the top.
    [[nodiscard]] PortableBlock less(PortableBlock other) const noexcept {
        return make([&](std::size_t index) { return bytes_[index] - other.bytes_[index]; });
    }
    /// All bytes together, as numbers without a sign.
    [[nodiscard]] std::int64_t sum() const noexcept {
        return std::accumulate(bytes_.begin(), bytes_.end(), std::int64_t{0});
    }
    /// The highest bit of each byte, that of the first one lowest.
    [[nodiscard]] unsigned mask() const noexcept {
        unsigned bits = 0;
        for (std::size_t index = 0; index < blockSize; ++index) {
            bits |= unsigned{bytes_[index]} >> 7 << index;
        }
        return bits;
    }
    /// The bytes as units.
    void widen(char16_t* units) const noexcept {
        for (std::size_t index = 0; index < blockSize; ++index) {
            units[index] = bytes_[index];
        }
    }
    /// Writes as many units as bytes when all are below 0x80; otherwise writes nothing and returns
    /// false.
    template <std::size_t count>
    static bool narrowAscii(const char16_t* units, char* bytes) noexcept {
        unsigned all = 0;
        for (std::size_t index = 0; index < count; ++index) {
            all |= units[index];
        }
        for (std::size_t index = 0; all < 0x80 && index < count; ++index) {
            bytes[index] = static_cast<char>(units[index]);
        }
        return all < 0x80;
    }

private:
    template <class ByteAt> static PortableBlock make(ByteAt byteAt) noexcept {
        PortableBlock block;
        for (std::size_t index = 0; index < blockSize; ++index) {
            block.bytes_[index] = static_cast<std::uint8_t>(byteAt(index));
        }
        return block;
    }
    static constexpr unsigned ones(bool is) noexcept { return is ? 0xFFU : 0U; }

    std::array<std::uint8_t, blockSize> bytes_;
};

#if defined(__SSE2__)

/// The same with instructions that every x86-64 has.
class Sse2Block {
public:
    Sse2Block(__m128i lanes) noexcept : lanes_(lanes) {}
    operator __m128i() const noexcept { return lanes_; }

    [[nodiscard]] static Sse2Block load(const void* from) noexcept {
        return _mm_loadu_si128(static_cast<const __m128i*>(from));
    }
    [[nodiscard]] static Sse2Block loadUnits(const char16_t* from) noexcept {
        // Saturation keeps what is below 0x7F and takes nothing else there.
        return _mm_packs_epi16(load(from), load(from + blockSize / 2));
    }
    template <std::size_t count>
    [[nodiscard]] static Sse2Block loadPieces(const char* from, const char* others) noexcept {
        if constexpr (count == blockSize / 2) {
            return _mm_unpacklo_epi64(loadLow(from), loadLow(others));
        } else {
            std::int32_t four[2];
            std::memcpy(&four[0], from, sizeof four[0]);
            std::memcpy(&four[1], others, sizeof four[1]);
            return _mm_set_epi32(0, 0, four[1], four[0]);
        }
    }
    template <std::size_t count>
    [[nodiscard]] static Sse2Block loadPieces(const char16_t* from,
                                              const char16_t* others) noexcept {
        if constexpr (count == blockSize / 2) {
            return _mm_packs_epi16(load(from), load(others));
        } else {
            return _mm_packs_epi16(_mm_unpacklo_epi64(loadLow(from), loadLow(others)),
                                   _mm_setzero_si128());
        }
    }
    [[nodiscard]] static Sse2Block all(unsigned value) noexcept {
        return _mm_set1_epi8(static_cast<char>(value));
    }
    void store(void* to) const noexcept { _mm_storeu_si128(static_cast<__m128i*>(to), lanes_); }

    [[nodiscard]] Sse2Block equals(Sse2Block other) const noexcept {
        return _mm_cmpeq_epi8(lanes_, other);
    }
    [[nodiscard]] Sse2Block isAtMost(unsigned most) const noexcept {
        return _mm_cmpeq_epi8(_mm_min_epu8(lanes_, all(most)), lanes_);
    }
    [[nodiscard]] Sse2Block beginsSequence() const noexcept {
        // With a sign, the others are the lowest numbers.
        return _mm_cmpgt_epi8(lanes_, all(0xBF));
    }
    [[nodiscard]] Sse2Block isAtLeast(unsigned least) const noexcept {
        return _mm_cmpeq_epi8(_mm_max_epu8(lanes_, all(least)), lanes_);
    }
    [[nodiscard]] Sse2Block butNot(Sse2Block other) const noexcept {
        return _mm_andnot_si128(other, lanes_);
    }
    friend Sse2Block operator|(Sse2Block left, Sse2Block right) noexcept {
        return _mm_or_si128(left, right);
    }
    friend Sse2Block operator&(Sse2Block left, Sse2Block right) noexcept {
        return _mm_and_si128(left, right);
    }
    [[nodiscard]] Sse2Block less(Sse2Block other) const noexcept {
        return _mm_sub_epi8(lanes_, other);
    }
    [[nodiscard]] std::int64_t sum() const noexcept {
        const __m128i halves = _mm_sad_epu8(lanes_, _mm_setzero_si128());
        return _mm_cvtsi128_si32(halves) + _mm_extract_epi16(halves, 4);
    }
    [[nodiscard]] unsigned mask() const noexcept {
        return static_cast<unsigned>(_mm_movemask_epi8(lanes_));
    }
    void widen(char16_t* units) const noexcept {
        const __m128i zero = _mm_setzero_si128();
        Sse2Block(_mm_unpacklo_epi8(lanes_, zero)).store(units);
        Sse2Block(_mm_unpackhi_epi8(lanes_, zero)).store(units + blockSize / 2);
    }
    template <std::size_t count>
    static bool narrowAscii(const char16_t* units, char* bytes) noexcept {
        static_assert(count == blockSize || count == blockSize / 2);
        const Sse2Block low = load(units);
        const Sse2Block high = count == blockSize ? load(units + blockSize / 2) : low;
        const __m128i beyond =
            _mm_and_si128(low | high, _mm_set1_epi16(static_cast<short>(0xFF80)));
        if (_mm_movemask_epi8(_mm_cmpeq_epi8(beyond, _mm_setzero_si128())) != 0xFFFF) {
            return false;
        }
        const Sse2Block narrow = _mm_packus_epi16(low, high);
        if constexpr (count == blockSize) {
            narrow.store(bytes);
        } else {
            _mm_storel_epi64(reinterpret_cast<__m128i*>(bytes), narrow);
        }
        return true;
    }

private:
    static __m128i loadLow(const void* from) noexcept {
        return _mm_loadl_epi64(static_cast<const __m128i*>(from));
    }

    __m128i lanes_;
};

using Block = Sse2Block;

#else

using Block = PortableBlock;

#endif

/// Which bytes of a block are one of `sought`.
template <char... sought, class AnyBlock> AnyBlock isAnyOf(AnyBlock block) noexcept {
    return (... | block.equals(AnyBlock::all(static_cast<unsigned char>(sought))));
}

/// Sixteen characters as bytes, good for being compared with ASCII characters but U+007F.
inline Block loadCharacters(const char* from) noexcept { return Block::load(from); }
inline Block loadCharacters(const char16_t* from) noexcept { return Block::loadUnits(from); }

/// True when 16 bytes are all below 0x80.
inline bool isAsciiBlock(const void* bytes) noexcept { return Block::load(bytes).mask() == 0; }

/// Zero-extends 16 bytes to 16 units.
inline void widenBlock(const void* bytes, char16_t* units) noexcept {
    Block::load(bytes).widen(units);
}

/// Writes 16 units as 16 bytes when all are below 0x80; otherwise writes nothing and returns false.
inline bool narrowAsciiBlock(const char16_t* units, char* bytes) noexcept {
    return Block::narrowAscii<blockSize>(units, bytes);
}

/// The same for 8 units and bytes.
inline bool narrowAsciiHalf(const char16_t* units, char* bytes) noexcept {
    return Block::narrowAscii<blockSize / 2>(units, bytes);
}

} // namespace nu::simd
