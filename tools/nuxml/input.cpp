#include "input.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "host/runtime/fileStream.h"

namespace tool {

namespace {

constexpr std::size_t firstBlock = std::size_t{64} * 1024;

[[noreturn]] void fail(std::string_view action, std::string_view name, int error) {
    throw InputError("cannot " + std::string(action) + " " + std::string(displayName(name)) + ": " +
                     std::generic_category().message(error));
}

/// A descriptor that is closed with its owner.
class Descriptor {
public:
    explicit Descriptor(const std::string& path) noexcept
        : number_(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (number_ >= 0) {
            ::close(number_);
        }
    }

    [[nodiscard]] int number() const noexcept { return number_; }

private:
    int number_;
};

/// Reads to the end; the memory doubles as it fills.
std::unique_ptr<host::TMemoryStream> readAll(int descriptor, std::string_view name,
                                             Progress& progress) {
    auto stream = std::make_unique<host::TMemoryStream>();
    std::size_t fill = 0;
    std::size_t size = firstBlock;
    for (;;) {
        stream->SetSize(static_cast<std::int64_t>(size));
        const ssize_t got = ::read(descriptor, stream->WritableMemory() + fill, size - fill);
        if (got > 0) {
            fill += static_cast<std::size_t>(got);
            size = fill == size ? 2 * size : size;
        } else if (got == 0) {
            break;
        } else if (errno != EINTR) {
            fail("read", name, errno);
        }
        if (progress.isDue()) {
            progress.show("reading " + std::string(displayName(name)) + ": " +
                          std::to_string(fill / 1000) + " kB");
        }
    }
    progress.clear();
    stream->SetSize(static_cast<std::int64_t>(fill));
    stream->SetPosition(0);
    return stream;
}

} // namespace

std::string_view displayName(std::string_view name) noexcept {
    return name == standardInput ? "standard input" : name;
}

std::unique_ptr<host::TMemoryStream> readStandardInput(Progress& progress) {
    return readAll(STDIN_FILENO, standardInput, progress);
}

std::unique_ptr<host::TStream> openInput(std::string_view name, Progress& progress) {
    if (name == standardInput) {
        return readStandardInput(progress);
    }

    // 1. What it is shows only once it is open: the name may lead to a pipe.
    const std::string path(name);
    const Descriptor descriptor(path);
    struct stat status = {};
    if (descriptor.number() < 0 || ::fstat(descriptor.number(), &status) != 0) {
        fail("open", name, errno);
    }
    if (S_ISDIR(status.st_mode)) {
        fail("open", name, EISDIR);
    }

    // 2. A file without a size may hold something all the same, below /proc for example.
    if (!S_ISREG(status.st_mode) || status.st_size == 0) {
        return readAll(descriptor.number(), name, progress);
    }
    return std::make_unique<host::TFileStream>(std::filesystem::path(path),
                                               host::fmOpenRead | host::fmShareDenyNone);
}

} // namespace tool
