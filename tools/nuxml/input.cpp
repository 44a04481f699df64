#include "input.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <limits>
#include <system_error>
#include <utility>

#include "forwardStream.h"
#include "host/runtime/exception.h"
#include "host/runtime/fileStream.h"

namespace tool {

namespace {

constexpr std::size_t firstBlock = std::size_t{64} * 1024;

[[noreturn]] void fail(std::string_view action, std::string_view name, int error) {
    throw InputError("cannot " + std::string(action) + " " + std::string(displayName(name)) + ": " +
                     std::generic_category().message(error));
}

constexpr std::size_t everything = std::numeric_limits<std::size_t>::max();

/// Reads to the end, or until there are `limit` bytes; the memory doubles as it fills.
std::unique_ptr<host::TMemoryStream> readAll(int descriptor, std::string_view name,
                                             Progress& progress, std::size_t limit = everything) {
    auto stream = std::make_unique<host::TMemoryStream>();
    std::size_t fill = 0;
    std::size_t size = firstBlock;
    while (fill < limit) {
        stream->SetSize(static_cast<std::int64_t>(size));
        const ssize_t got = ::read(descriptor, stream->WritableMemory() + fill, size - fill);
        if (got > 0) {
            fill += static_cast<std::size_t>(got);
            size = fill == size ? std::min(2 * size, limit) : size;
        } else if (got == 0) {
            break;
        } else if (errno != EINTR) {
            fail("read", name, errno);
        }
        showReading(progress, name, static_cast<std::int64_t>(fill));
    }
    progress.clear();
    stream->SetSize(static_cast<std::int64_t>(fill));
    stream->SetPosition(0);
    return stream;
}

TNuSaxParserChoice parserFor(InputReading reading) noexcept {
    switch (reading) {
    case InputReading::Whole:
        return TNuSaxParserChoice::SmallStream;
    case InputReading::InPieces:
        return TNuSaxParserChoice::LargeStream;
    case InputReading::BySize:
        break;
    }
    return TNuSaxParserChoice::BySize;
}

/// An input that is open: a file that has a size, or else only its descriptor.
struct Opened {
    Descriptor descriptor;
    std::unique_ptr<host::TStream> file;
};

Opened open(std::string_view name) {
    if (name == standardInput) {
        return {Descriptor(STDIN_FILENO), nullptr};
    }

    // 1. What it is shows only once it is open: the name may lead to a pipe.
    const std::string path(name);
    Descriptor descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat status = {};
    if (descriptor.number() < 0 || ::fstat(descriptor.number(), &status) != 0) {
        fail("open", name, errno);
    }
    if (S_ISDIR(status.st_mode)) {
        fail("open", name, EISDIR);
    }

    // 2. A file without a size may hold something all the same, below /proc for example.
    std::unique_ptr<host::TStream> file;
    if (S_ISREG(status.st_mode) && status.st_size > 0) {
        try {
            file = std::make_unique<host::TFileStream>(std::filesystem::path(path),
                                                       host::fmOpenRead | host::fmShareDenyNone);
        } catch (const host::EStreamError& error) {
            throw InputError(error.what());
        }
    }
    return {std::move(descriptor), std::move(file)};
}

} // namespace

std::string_view displayName(std::string_view name) noexcept {
    return name == standardInput ? "standard input" : name;
}

std::unique_ptr<host::TMemoryStream> readStandardInput(Progress& progress) {
    return readAll(STDIN_FILENO, standardInput, progress);
}

void showReading(Progress& progress, std::string_view name, std::int64_t count) {
    if (progress.isDue()) {
        progress.show("reading " + std::string(displayName(name)) + ": " +
                      std::to_string(count / 1000) + " kB");
    }
}

Input openInput(std::string_view name, InputReading reading, Progress& progress) {
    Opened input = open(name);
    if (input.file) {
        return {std::move(input.file), parserFor(reading)};
    }
    auto start = std::make_unique<host::TMemoryStream>();
    if (reading != InputReading::InPieces) {
        const std::size_t limit = reading == InputReading::Whole
                                      ? everything
                                      : static_cast<std::size_t>(TNuSAXXMLReader::largeStreamSize);
        start = readAll(input.descriptor.number(), name, progress, limit);
        if (static_cast<std::size_t>(start->GetSize()) < limit) {
            return {std::move(start), TNuSaxParserChoice::SmallStream};
        }
    }
    return {std::make_unique<ForwardStream>(std::move(input.descriptor), std::move(start)),
            TNuSaxParserChoice::LargeStream};
}

} // namespace tool
