#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string_view>

#include "common/encoding.h"
#include "host/runtime/stream.h"
#include "nuXmlParser/chars.h"
#include "nuXmlParser/textMemory.h"

namespace nu {

/// Turns the bytes of a stream into UTF-16, a block at a time, and knows where in the stream each
/// unit comes from.
///
/// 8-bit text is widened byte for byte. Malformed UTF-8 becomes U+FFFD as TNuUTF8StreamAdapter
/// decodes it, and half a unit at the end of UTF-16 a unit whose high byte is 0.
class StreamDecoder {
public:
    /// Starts at the stream's position.
    /// \param encoding neAnsi, neUtf8 or neUtf16LittleEndian
    /// \param blockSize the bytes to read at once, at least 8
    StreamDecoder(host::TStream& stream, TNuEncoding encoding, std::size_t blockSize);

    /// Decodes up to `room` units, at least 4, and gives their number: 0 only at the end. Throws
    /// what the stream throws, before anything is decoded.
    std::size_t decode(NuXmlChar* units, std::size_t room);

    /// Units before the one of that number, counted from 0, will not be asked for.
    void forgetBefore(std::int64_t number) noexcept;
    /// Where in the stream a unit starts; the second of a pair a byte before the end of its
    /// character. `place` holds the unit, and the units decoded after it follow.
    [[nodiscard]] std::int64_t positionOf(std::int64_t number, PNuXmlChar place) const noexcept;

    /// Leaves the stream there.
    void leaveStreamAt(std::int64_t position);

private:
    /// The end of a run of units between which and their bytes the encoding tells the way.
    struct RunEnd {
        std::int64_t number;   ///< of the unit behind the run
        std::int64_t position; ///< of that unit in the stream
    };

    void readBlock();
    std::size_t decodeRest(NuXmlChar* units, std::size_t room);
    std::size_t decodeUtf8(NuXmlChar* units, std::size_t room);
    std::size_t decodeUtf16(NuXmlChar* units, std::size_t room);
    std::size_t endRun(std::size_t bytes, std::size_t units);
    [[nodiscard]] std::int64_t bytesOf(NuXmlChar unit) const noexcept;

    host::TStream& stream_;
    TNuEncoding encoding_;
    TextMemory block_;
    std::size_t blockSize_;
    std::string_view rest_;        ///< what is left of the block
    std::int64_t blockEnd_;        ///< where the block ends in the stream
    bool hasEnded_ = false;        ///< the stream had no more bytes
    std::deque<RunEnd> runEnds_{}; ///< in order; the last one is where decoding goes on
};

} // namespace nu
