#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// Block operations with a portable form beside the one for SSE2. Every function reads and writes
/// exactly the block it names; addresses need no alignment.
namespace nu::simd {

/// Bytes or units that the functions below handle at once.
inline constexpr std::size_t blockSize = 16;

#if defined(__SSE2__)

inline __m128i loadBlock(const void* from) noexcept {
    return _mm_loadu_si128(static_cast<const __m128i*>(from));
}

inline void storeBlock(void* to, __m128i block) noexcept {
    _mm_storeu_si128(static_cast<__m128i*>(to), block);
}

/// True when 16 bytes are all below 0x80.
inline bool isAsciiBlock(const unsigned char* bytes) noexcept {
    return _mm_movemask_epi8(loadBlock(bytes)) == 0;
}

/// Zero-extends 16 bytes to 16 units.
inline void widenBlock(const unsigned char* bytes, char16_t* units) noexcept {
    const __m128i block = loadBlock(bytes);
    const __m128i zero = _mm_setzero_si128();
    storeBlock(units, _mm_unpacklo_epi8(block, zero));
    storeBlock(units + 8, _mm_unpackhi_epi8(block, zero));
}

/// True when 8 units are all below 0x80.
inline bool isAsciiUnits(__m128i units) noexcept {
    const __m128i beyond = _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xFF80)));
    return _mm_movemask_epi8(_mm_cmpeq_epi8(beyond, _mm_setzero_si128())) == 0xFFFF;
}

/// Writes 16 units as 16 bytes when all are below 0x80; otherwise writes nothing and returns false.
inline bool narrowAsciiBlock(const char16_t* units, char* bytes) noexcept {
    const __m128i low = loadBlock(units);
    const __m128i high = loadBlock(units + 8);
    if (!isAsciiUnits(_mm_or_si128(low, high)))
        return false;
    storeBlock(bytes, _mm_packus_epi16(low, high));
    return true;
}

/// The same for 8 units and bytes.
inline bool narrowAsciiHalf(const char16_t* units, char* bytes) noexcept {
    const __m128i half = loadBlock(units);
    if (!isAsciiUnits(half))
        return false;
    _mm_storel_epi64(reinterpret_cast<__m128i*>(bytes), _mm_packus_epi16(half, half));
    return true;
}

#else

inline bool isAsciiBlock(const unsigned char* bytes) noexcept {
    std::uint64_t words[2];
    std::memcpy(words, bytes, sizeof words);
    return ((words[0] | words[1]) & 0x8080808080808080u) == 0;
}

inline void widenBlock(const unsigned char* bytes, char16_t* units) noexcept {
    for (std::size_t index = 0; index < blockSize; ++index)
        units[index] = bytes[index];
}

/// Writes `count` units as bytes when all are below 0x80; otherwise writes nothing and returns
/// false.
inline bool narrowAsciiUnits(const char16_t* units, char* bytes, std::size_t count) noexcept {
    unsigned all = 0;
    for (std::size_t index = 0; index < count; ++index)
        all |= units[index];
    if (all >= 0x80)
        return false;
    for (std::size_t index = 0; index < count; ++index)
        bytes[index] = static_cast<char>(units[index]);
    return true;
}

inline bool narrowAsciiBlock(const char16_t* units, char* bytes) noexcept {
    return narrowAsciiUnits(units, bytes, blockSize);
}

inline bool narrowAsciiHalf(const char16_t* units, char* bytes) noexcept {
    return narrowAsciiUnits(units, bytes, blockSize / 2);
}

#endif

} // namespace nu::simd
