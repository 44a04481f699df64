#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

#include "host/runtime/export.h"
#include "host/runtime/stream.h"
#include "nuXmlRecords/recordShare.h"

namespace nu {

/// Guesses where workers can begin in a document in UTF-8 that has no index: where something reads
/// as the start tag of a record, in the surroundings of the first one.
///
/// Whether it is right shows when what comes before was read up to there: a guess is right if the
/// reader before, which was right, has stopped where this one has its first record
/// (RecordReader::Stop, RecordReader::First). What was read on a wrong guess is worth nothing.
class NUXML_API RecordGuess {
public:
    /// Reads the document up to its first record. The file has to outlive this. Throws
    /// host::Exception for a path that is none and for another encoding.
    RecordGuess(host::TStream& file, std::u16string_view path);
    RecordGuess(const RecordGuess&) = delete;
    RecordGuess& operator=(const RecordGuess&) = delete;
    ~RecordGuess();

    /// Whether anything can be guessed: the path gives the name of records, and one of them begins
    /// in the first 16 MiB.
    [[nodiscard]] bool IsPossible() const noexcept;
    /// The first guess from a position on; nothing where there is none before `end`.
    [[nodiscard]] std::optional<RecordStart> From(std::int64_t position, std::int64_t end);

private:
    class Body;

    std::unique_ptr<Body> body_;
};

} // namespace nu
