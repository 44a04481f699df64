#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/runtime/export.h"
#include "host/runtime/stream.h"
#include "nuXmlRecords/recordShare.h"

namespace nu {

class MarkupWalk;

/// What tells one state of a file from another.
struct FileState {
    std::int64_t size = 0;         ///< in bytes
    std::int64_t modified = 0;     ///< any number that changes with the file; 0 where nobody knows
    std::uint64_t startDigest = 0; ///< of the first 64 KiB
    std::uint64_t endDigest = 0;   ///< of the last 64 KiB

    /// Reads both ends of the file, 64 KiB each, and leaves it at its beginning.
    [[nodiscard]] NUXML_API static FileState of(host::TStream& file, std::int64_t modified = 0);
    friend bool operator==(const FileState&, const FileState&) = default;
};

/// Finds places to begin reading at in a document in UTF-8, in one fast pass: start tags that
/// stand in no comment, CDATA section or instruction.
class NUXML_API RecordIndexer {
public:
    /// \param spacing how many bytes lie between two places at least
    ///
    /// Throws host::Exception for another encoding.
    RecordIndexer(host::TStream& file, std::int64_t spacing);
    RecordIndexer(const RecordIndexer&) = delete;
    RecordIndexer& operator=(const RecordIndexer&) = delete;
    ~RecordIndexer();

    /// Goes to the next place; false behind the last one. Throws ENuXmlFault where the markup
    /// cannot be followed.
    bool Next();
    /// The same to the first place at or behind a position that is ahead.
    bool NextFrom(std::int64_t position);
    /// What has to be known to begin there.
    [[nodiscard]] RecordStart Start();

    /// \cond internal
    [[nodiscard]] MarkupWalk& walk() noexcept { return *walk_; }
    /// \endcond

private:
    std::unique_ptr<MarkupWalk> walk_;
    std::int64_t spacing_;
    std::int64_t next_;
};

/// Where reading can begin in a file, and in which state the file was then. It knows nothing of
/// records, so one index serves all paths.
class NUXML_API RecordIndex {
public:
    /// Bytes between two places unless the file has more than 65536 times as many.
    static constexpr std::int64_t standardSpacing = 1024 * 1024;

    /// Makes the index of a file in one pass. Throws as RecordIndexer does.
    /// \param modified any number that changes with the file; 0 where nobody knows
    /// \param spacing bytes between two places; 0 to leave it to the index
    /// \param onProgress hears how many bytes were passed
    [[nodiscard]] static RecordIndex
    Build(host::TStream& file, std::int64_t modified = 0, std::int64_t spacing = 0,
          const std::function<void(std::int64_t)>& onProgress = {});
    /// Reads an index that was saved. Throws host::Exception for anything else, also for one that
    /// is not all there.
    [[nodiscard]] static RecordIndex Load(host::TStream& stream);
    /// Writes the index, less than a thousandth of its file.
    void Save(host::TStream& stream) const;

    /// Throws host::Exception if the file is not as it was, as far as its size and both ends tell.
    void Check(host::TStream& file) const;
    /// What the file was like when the index was made.
    [[nodiscard]] const FileState& State() const noexcept { return state_; }
    /// How many places there are; shares beyond this number are empty.
    [[nodiscard]] std::size_t PlaceCount() const noexcept { return places_.size(); }
    /// The share of one of `count` workers, numbered from 0, that begins at a place of the index,
    /// so that nothing before it has to be read.
    [[nodiscard]] RecordShare Share(std::int64_t number, std::int64_t count) const noexcept;

    /// Everything from the first place at or behind a position on.
    [[nodiscard]] RecordShare ShareFrom(std::int64_t position) const noexcept {
        return {beginOf(position), RecordShare().behind};
    }
    /// Where to begin reading, to find what stands from `position` on.
    [[nodiscard]] RecordStart StartFor(std::int64_t position) const;

private:
    struct Place {
        std::int64_t position;
        std::int64_t line;
        std::int64_t column;
        std::size_t kept;              ///< open elements that are those of the place before
        std::vector<std::string> tags; ///< of the others
    };

    [[nodiscard]] std::int64_t beginOf(std::int64_t position) const noexcept;

    FileState state_;
    std::string prolog_;
    std::vector<Place> places_;
};

} // namespace nu
