#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "host/runtime/memoryStream.h"
#include "host/runtime/stream.h"
#include "nuXmlSax.h"
#include "progress.h"

namespace tool {

/// What a document may ask for before the tool gives it up: far more than real ones do.
inline constexpr TNuSaxLimits inputLimits{1'000'000, 100'000, 100'000};

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
    TNuSaxParserChoice parserChoice; ///< what a reader has to take for this stream
};

/// How a reader gets at an input.
enum class InputReading {
    BySize, ///< as the library does: from some size on in pieces
    Whole,
    InPieces,
};

/// Opens an input at its start. What has no size, standard input for example, is read into memory
/// if it is read whole or a small stream for the reader, else passed on as it comes: then the
/// stream cannot tell how long it is, and go back only at its start. Throws InputError.
Input openInput(std::string_view name, InputReading reading, Progress& progress);

/// Tells that so many bytes of an input were read, if it is time to.
void showReading(Progress& progress, std::string_view name, std::int64_t count);

/// Everything that is left of standard input. Throws InputError.
std::unique_ptr<host::TMemoryStream> readStandardInput(Progress& progress);

} // namespace tool
