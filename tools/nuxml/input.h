#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "host/runtime/memoryStream.h"
#include "host/runtime/stream.h"
#include "progress.h"

namespace tool {

/// The name that stands for standard input.
inline constexpr std::string_view standardInput = "-";

/// An input cannot be opened or read; what() says which and why.
class InputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// How messages name an input.
std::string_view displayName(std::string_view name) noexcept;

/// An input to be read once from front to back.
struct Input {
    std::unique_ptr<host::TStream> stream;
    bool
        hasSize; ///< otherwise the stream cannot tell how long it is, and go back only at its start
};

/// Opens an input at its start. What has no size, standard input for example, is read into memory
/// if it is a small stream for the reader, and passed on as it comes if it is longer or
/// `isPassedOn`. Throws InputError.
Input openForReading(std::string_view name, bool isPassedOn, Progress& progress);

/// Opens an input at its start: a file as it is, everything that has no size (standard input,
/// pipes, devices) read into memory. Throws InputError.
std::unique_ptr<host::TStream> openInput(std::string_view name, Progress& progress);

/// Everything that is left of standard input. Throws InputError.
std::unique_ptr<host::TMemoryStream> readStandardInput(Progress& progress);

} // namespace tool
