#pragma once

#include <filesystem>
#include <memory>
#include <string_view>
#include <type_traits>

#include "host/runtime/stream.h"

namespace host {

/// How a file is opened. Values of one group combine with those of the share group.
enum FileMode : unsigned {
    fmOpenRead = 0,
    fmOpenWrite = 1,
    fmOpenReadWrite = 2,
    fmShareDenyNone = 0x40,
    fmCreate = 0xFFFF,
};

/// A file as a stream, with a buffer of its own, so that small reads and writes are cheap. Read
/// gives less than asked only at the end of the file; Write takes everything.
///
/// Opening throws EFileOpenError, a failing read EReadError, a failing write EWriteError, each with
/// the system's reason. Written bytes reach the file at the latest with Flush or Close; the
/// destructor does both but has no way to report a failure.
class NUXML_API TFileStream final : public TStream {
public:
    TFileStream(const std::filesystem::path& path, unsigned mode);
    /// The path as UTF-16 text of any kind.
    template <class Text>
    requires std::is_convertible_v<const Text&, std::u16string_view> TFileStream(const Text& path,
                                                                                 unsigned mode)
        : TFileStream(systemPath(path), mode) {}
    /// What is open already, and becomes this stream's to close. One that is sequential is written
    /// to where it stands and has no other places: a pipe, or an output that is shared with others.
    TFileStream(int descriptor, bool isSequential);
    ~TFileStream() override;

    /// The path that a name stands for. Throws EFileOpenError for a name that the system cannot
    /// have (a NUL inside, an unpaired surrogate).
    static std::filesystem::path systemPath(std::u16string_view path);

    std::size_t Read(void* buffer, std::size_t count) override;
    std::size_t Write(const void* buffer, std::size_t count) override;
    std::int64_t Seek(std::int64_t offset, SeekOrigin origin) override;
    std::int64_t GetSize() override;
    void SetSize(std::int64_t size) override;

    /// Hands everything written so far to the system.
    void Flush() override;
    /// Flushes and closes the file, which may fail where the system writes late. Nothing can be
    /// done with the stream any more.
    void Close();

private:
    [[nodiscard]] std::int64_t logicalPosition() const noexcept {
        return blockStart_ + static_cast<std::int64_t>(blockPosition_);
    }
    NUXML_LOCAL void leaveBlock();
    NUXML_LOCAL std::size_t readFromSystem(std::byte* target, std::size_t count);
    NUXML_LOCAL void writeToSystem(const std::byte* source, std::size_t count);

    int descriptor_;
    bool isWritable_;
    bool isSequential_;
    std::unique_ptr<std::byte[]> block_;
    std::int64_t blockStart_ = 0;   ///< place of the block's first byte in the file
    std::size_t blockPosition_ = 0; ///< next byte inside the block
    std::size_t blockFill_ = 0;     ///< bytes in the block
    bool blockIsDirty_ = false;     ///< the block holds bytes that the file has not yet
};

/// Whether `path` names an existing file that is no directory. Never throws: a name that the system
/// cannot have (too long, a NUL inside, an unpaired surrogate) names no file.
NUXML_API bool fileExists(std::u16string_view path) noexcept;

} // namespace host
