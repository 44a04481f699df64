#include "host/runtime/fileStream.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "host/runtime/streamMessages.h"
#include "host/runtime/unicode.h"

namespace host {

namespace {

constexpr std::size_t blockSize = 64 * 1024;

std::u16string systemReason(int error) {
    return utf8ToUtf16(std::generic_category().message(error));
}

[[noreturn]] void throwWriteError(int error) {
    throw EWriteError(formatMessage(messages::writeErrorBecause, {systemReason(error)}));
}

int systemFlags(unsigned mode) {
    if (mode == fmCreate) {
        return O_RDWR | O_CREAT | O_TRUNC;
    }
    switch (mode & 3U) {
    case fmOpenWrite:
        return O_WRONLY;
    case fmOpenReadWrite:
        return O_RDWR;
    default:
        return O_RDONLY;
    }
}

/// Opens a file, but no folder, which the system would open to be read and then not read.
int openFile(const std::filesystem::path& path, unsigned mode) noexcept {
    const int descriptor = ::open(path.c_str(), systemFlags(mode) | O_CLOEXEC, 0666);
    struct stat status = {};
    if (descriptor >= 0 && ::fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode)) {
        ::close(descriptor);
        errno = EISDIR;
        return -1;
    }
    return descriptor;
}

int openOrThrow(const std::filesystem::path& path, unsigned mode) {
    const int descriptor = openFile(path, mode);
    if (descriptor < 0) {
        const int error = errno;
        throw EFileOpenError(formatMessage(mode == fmCreate ? u"Cannot create file \"%s\". %s"
                                                            : u"Cannot open file \"%s\". %s",
                                           {utf8ToUtf16(path.string()), systemReason(error)}));
    }
    return descriptor;
}

/// Whether it has no places, as a pipe.
bool hasNoPlaces(int descriptor) noexcept { return ::lseek(descriptor, 0, SEEK_CUR) < 0; }

} // namespace

TFileStream::TFileStream(const std::filesystem::path& path, unsigned mode)
    : TFileStream(openOrThrow(path, mode), false) {
    isSequential_ = hasNoPlaces(descriptor_);
}

TFileStream::TFileStream(int descriptor, bool isSequential)
    : descriptor_(descriptor), isWritable_((::fcntl(descriptor, F_GETFL) & O_ACCMODE) != O_RDONLY),
      isSequential_(isSequential) {
    try {
        block_ = std::make_unique_for_overwrite<std::byte[]>(blockSize);
    } catch (...) {
        ::close(descriptor_);
        throw;
    }
}

std::filesystem::path TFileStream::systemPath(std::u16string_view path) {
    // A name that the system cannot have must not open the file of another one.
    const std::string name = utf16ToUtf8(path);
    if (name.find('\0') != name.npos || utf8ToUtf16(name) != path) {
        throw EFileOpenError(
            formatMessage(u"Cannot open file \"%s\". %s", {path, systemReason(EINVAL)}));
    }
    return name;
}

TFileStream::~TFileStream() {
    try {
        Flush();
    } catch (...) {
        // Nobody is left to tell; who wants to know calls Close first.
    }
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

std::size_t TFileStream::Read(void* buffer, std::size_t count) {
    if (blockIsDirty_) {
        Flush();
    }
    auto* const target = static_cast<std::byte*>(buffer);
    std::size_t done = 0;
    while (done < count) {
        const std::size_t buffered = std::min(count - done, blockFill_ - blockPosition_);
        if (buffered > 0) {
            std::memcpy(target + done, block_.get() + blockPosition_, buffered);
            blockPosition_ += buffered;
            done += buffered;
            continue;
        }
        leaveBlock();
        std::size_t got = 0;
        if (count - done >= blockSize) {
            got = readFromSystem(target + done, count - done);
            blockStart_ += static_cast<std::int64_t>(got);
            done += got;
        } else {
            got = readFromSystem(block_.get(), blockSize);
            blockFill_ = got;
        }
        if (got == 0) {
            break;
        }
    }
    return done;
}

std::size_t TFileStream::Write(const void* buffer, std::size_t count) {
    if (!isWritable_) {
        // At once, not when the buffer goes to the file: the caller can still tell somebody.
        throwWriteError(EBADF);
    }
    if (count == 0) {
        return 0;
    }
    if (!blockIsDirty_ || count > blockSize - blockFill_) {
        Flush();
        leaveBlock();
    }
    if (count >= blockSize) {
        writeToSystem(static_cast<const std::byte*>(buffer), count);
        blockStart_ += static_cast<std::int64_t>(count);
        return count;
    }
    std::memcpy(block_.get() + blockFill_, buffer, count);
    blockFill_ += count;
    blockPosition_ = blockFill_;
    blockIsDirty_ = true;
    return count;
}

std::int64_t TFileStream::Seek(std::int64_t offset, SeekOrigin origin) {
    std::int64_t base = 0;
    if (origin == SeekOrigin::Current) {
        base = logicalPosition();
    } else if (origin == SeekOrigin::End) {
        base = GetSize();
    }
    std::int64_t target = 0;
    if (__builtin_add_overflow(base, offset, &target) || target < 0) {
        throw EStreamError(messages::seekError);
    }
    const bool insideBlock =
        target >= blockStart_ && target - blockStart_ <= static_cast<std::int64_t>(blockFill_);
    if (insideBlock && !blockIsDirty_) {
        blockPosition_ = static_cast<std::size_t>(target - blockStart_);
    } else if (target != logicalPosition()) {
        if (isSequential_) {
            throw EStreamError(messages::seekError);
        }
        Flush();
        blockStart_ = target;
        blockPosition_ = 0;
        blockFill_ = 0;
    }
    return target;
}

std::int64_t TFileStream::GetSize() {
    Flush();
    if (isSequential_) {
        return logicalPosition();
    }
    struct stat status = {};
    if (::fstat(descriptor_, &status) != 0) {
        throw EStreamError(systemReason(errno));
    }
    return status.st_size;
}

void TFileStream::SetSize(std::int64_t size) {
    Flush();
    leaveBlock();
    if (::ftruncate(descriptor_, size) != 0) {
        throw EStreamError(systemReason(errno));
    }
    blockStart_ = std::min(blockStart_, size);
}

void TFileStream::Flush() {
    if (blockIsDirty_) {
        writeToSystem(block_.get(), blockFill_);
        blockIsDirty_ = false;
        leaveBlock();
    }
}

void TFileStream::Close() {
    Flush();
    // Interrupted, it is closed all the same.
    if (::close(std::exchange(descriptor_, -1)) != 0 && errno != EINTR) {
        throwWriteError(errno);
    }
}

/// Forgets the block and keeps the logical position.
void TFileStream::leaveBlock() {
    blockStart_ = logicalPosition();
    blockPosition_ = 0;
    blockFill_ = 0;
}

std::size_t TFileStream::readFromSystem(std::byte* target, std::size_t count) {
    for (;;) {
        const ssize_t got = ::pread(descriptor_, target, count, blockStart_);
        if (got >= 0) {
            return static_cast<std::size_t>(got);
        }
        if (errno != EINTR) {
            throw EReadError(formatMessage(messages::readErrorBecause, {systemReason(errno)}));
        }
    }
}

void TFileStream::writeToSystem(const std::byte* source, std::size_t count) {
    std::int64_t place = blockStart_;
    while (count > 0) {
        const ssize_t taken = isSequential_ ? ::write(descriptor_, source, count)
                                            : ::pwrite(descriptor_, source, count, place);
        if (taken < 0) {
            if (errno == EINTR) {
                continue;
            }
            throwWriteError(errno);
        }
        source += taken;
        place += taken;
        count -= static_cast<std::size_t>(taken);
    }
}

bool fileExists(std::u16string_view path) noexcept {
    try {
        const std::string name = utf16ToUtf8(path);
        if (path.empty() || name.find('\0') != name.npos || utf8ToUtf16(name) != path) {
            return false;
        }
        std::error_code error;
        const auto status = std::filesystem::status(name, error);
        return !error && std::filesystem::exists(status) && !std::filesystem::is_directory(status);
    } catch (...) {
        return false;
    }
}

} // namespace host
