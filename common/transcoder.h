#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "host/runtime/export.h"

/// \file
/// Text of any encoding as UTF-8, a stretch at a time.

/// What ended a stretch.
enum class TNuTranscoding : std::uint8_t {
    All,       ///< everything was read
    NeedsRoom, ///< there is more to write than room
    CutShort,  ///< what is left begins a character whose rest is missing
    Malformed, ///< what is left begins with bytes that are no character
};

/// How far a stretch came.
struct TNuTranscoded {
    std::size_t Read;    ///< bytes of the source that are done with
    std::size_t Written; ///< bytes of UTF-8
    TNuTranscoding Stop;
};

/// Turns the text of one encoding into UTF-8. What it gives is well-formed, whatever it is given.
///
/// UTF-16 and UTF-32 in both byte orders and the single-byte pages of codePage.h are read by
/// tables of our own, everything else by iconv of the C library. Deliberate: not the other way
/// round, because some C libraries compose the letters of a page with the points behind them.
class NUXML_API TNuTranscoder {
public:
    /// Room that is always enough for one character.
    static constexpr std::size_t LeastRoom = 16;

    TNuTranscoder() = default;
    TNuTranscoder(const TNuTranscoder&) = delete;
    TNuTranscoder& operator=(const TNuTranscoder&) = delete;
    virtual ~TNuTranscoder();

    /// A transcoder for the encoding of that name, whatever its letter case, or null where nobody
    /// knows it. "UTF-16" and "UTF-32" without a byte order mean that with the high byte first.
    ///
    /// The name may come from anywhere: one that is longer than 40 characters, or holds anything
    /// but letters, digits, ".", "_" and "-", is not known, nor is one that stands for the locale.
    [[nodiscard]] static std::unique_ptr<TNuTranscoder> Create(std::string_view encoding);

    /// Reads as much of `bytes` as fits into `room` bytes, at least LeastRoom, at `target`.
    /// With `isLast` nothing follows: what is cut short then stays so, and a shift back to the
    /// start, which some encodings need, is made.
    virtual TNuTranscoded Transcode(std::string_view bytes, bool isLast, char* target,
                                    std::size_t room) = 0;
};
