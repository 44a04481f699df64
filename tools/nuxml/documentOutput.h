#pragma once

#include <optional>
#include <string_view>

#include "console.h"
#include "documentInput.h"
#include "exitCode.h"
#include "nuXmlDOM.h"

namespace tool {

/// How a document stands on its lines.
struct DocumentForm {
    bool isFormatted = true;
    bool endsLinesWithCR = true; ///< only of a formatted document
    bool endsWithLine = false;   ///< the last line ends as well
};

/// Where a document goes: back to its `source` in place, to the target that was given, else "-" for
/// standard output. Throws UsageError where the two do not go together.
std::string_view targetOf(std::string_view source, bool isInPlace,
                          std::optional<std::string_view> given);

/// Says on standard error if a document lost its document type declaration when it was loaded. A
/// document that goes beside the old one may be without it; the only one must not: false then.
bool mayBeWritten(Console& console, const LoadedDocument& loaded, std::string_view source,
                  std::string_view target);

/// Writes a document as UTF-8 without a byte-order mark, whatever its encoding was, and makes its
/// XML declaration say so. To a file, or "-" for standard output. A file takes the place of an old
/// one when it is complete.
ExitCode writeDocument(Console& console, TNuDOMDocument& document, DocumentForm form,
                       std::string_view target);

} // namespace tool
