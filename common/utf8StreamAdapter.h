#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "host/runtime/stream.h"

/// \file
/// UTF-8 streams that are read and written as UTF-16.

/// UTF-16 (low byte first) on this side, UTF-8 in the stream beneath: reading decodes, writing
/// encodes.
///
/// Reading never fails because of the text: each maximal bad prefix of a sequence becomes U+FFFD.
/// No byte-order mark is looked for. The position of the stream beneath is the whole state of
/// reading, so that it can be moved between two reads: it stands behind the characters delivered,
/// and between the two units of one character a byte before its end. Read may give fewer bytes than
/// asked before the end.
///
/// Writing takes everything or throws what the stream beneath throws, host::EWriteError where that
/// takes less than it should. Units and surrogate pairs may be split between calls; an unpaired
/// surrogate becomes U+FFFD.
class NUXML_API TNuUTF8StreamAdapter final : public host::TStream {
public:
    /// Throws host::Exception when the stream is missing. If the constructor throws, the stream
    /// still belongs to the caller.
    /// \param stream     the stream beneath; it is used from its position on
    /// \param writeBOM   whether to write a byte-order mark of UTF-8 right away
    /// \param ownsStream whether the stream goes with the adapter; otherwise it must outlive it
    explicit TNuUTF8StreamAdapter(host::TStream* stream, bool writeBOM = false,
                                  bool ownsStream = false);
    /// Does what Finish does, but has no way to report a failure.
    ~TNuUTF8StreamAdapter() override;

    std::size_t Read(void* buffer, std::size_t count) override;
    std::size_t Write(const void* buffer, std::size_t count) override;
    /// Only tells the position, which is the number of bytes of UTF-16 read and written so far;
    /// everything else throws host::EStreamError.
    std::int64_t Seek(std::int64_t offset, host::SeekOrigin origin) override;
    /// Flushes the stream beneath. The first half of a pair still waits for the second.
    void Flush() override;
    /// Ends the text: a first half of a pair that still waits becomes U+FFFD, half a unit is
    /// dropped, and the stream beneath is flushed.
    void Finish();

private:
    static constexpr std::size_t blockLength = 16 * 1024; ///< units converted at once

    NUXML_LOCAL void makeBlocks();
    NUXML_LOCAL std::size_t readUnits(std::size_t room);
    NUXML_LOCAL std::size_t readBytes(std::size_t offset, std::size_t count);
    NUXML_LOCAL bool readSecondHalf(std::size_t bytesRead);

    host::TStream* stream_;
    std::unique_ptr<host::TStream> owned_;
    std::unique_ptr<char16_t[]> units_; ///< a block of text on its way
    std::unique_ptr<char[]> bytes_;     ///< the same as UTF-8
    std::int64_t transferred_ = 0;

    /// Reading a single byte leaves the other one of its unit here.
    char halfUnit_ = 0;
    std::int64_t halfUnitPosition_ = -1; ///< where the stream beneath stood then

    char waiting_[3] = {};         ///< what was written but does not make a character yet
    std::size_t waitingCount_ = 0; ///< a first half of a pair and a half unit at most
};
