#pragma once

#include <optional>
#include <string_view>

#include "console.h"
#include "documentInput.h"
#include "documentText.h"
#include "exitCode.h"
#include "nuXmlDOM.h"

namespace tool {

/// Where a document comes from and goes to.
struct Destination {
    std::string_view source; ///< the name of a file, or "-" for standard input
    std::string_view target; ///< the same; "-" is standard output
    bool isForced = false;   ///< whatever speaks against replacing a file
};

/// Where a document goes: back to its `source` in place, to the target that was given, else "-" for
/// standard output. Throws UsageError where the two do not go together.
std::string_view targetOf(std::string_view source, bool isInPlace,
                          std::optional<std::string_view> given);

/// Throws InputError for a source that is to be replaced and is no file: one would wait for what
/// comes out of a pipe, in vain.
void checkReplaced(const Destination& destination);

/// Writes a document in its own encoding, with its document type and its line ends.
///
/// To a file only when nothing speaks against it: that the reading was complained about, that the
/// encoding cannot be written (UTF-8 is then), or that the document type was lost; otherwise says
/// so and gives exitFault. A file takes the place of an old one when it is complete. The document
/// is good for nothing else afterwards.
ExitCode writeDocument(Console& console, const LoadedDocument& loaded, DocumentForm form,
                       const Destination& destination);

/// Whether a document is written as it stands in `source`, byte for byte. The document is good for
/// nothing else afterwards.
bool isWrittenAlike(const LoadedDocument& loaded, DocumentForm form, host::TStream& source);

} // namespace tool
