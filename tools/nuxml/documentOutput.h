#pragma once

#include <string_view>

#include "console.h"
#include "exitCode.h"
#include "nuXmlDOM.h"

namespace tool {

/// Writes a document as UTF-8 without a byte-order mark, whatever its encoding was, and makes its
/// XML declaration say so. To a file, or "-" for standard output. A file takes the place of an old
/// one when it is complete.
ExitCode writeDocument(Console& console, TNuDOMDocument& document, bool formatted,
                       std::string_view target);

} // namespace tool
