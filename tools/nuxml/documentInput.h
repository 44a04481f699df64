#pragma once

#include <string_view>

#include "console.h"
#include "exitCode.h"
#include "nuXmlDOM.h"
#include "sourceLayout.h"

namespace tool {

/// An input as a tree.
struct LoadedDocument {
    NuRef<TNuDOMDocument> document; ///< empty when the input is no document
    ExitCode exitCode = exitDone;
    bool hadDocumentType = false; ///< which a tree does not keep
    SourceLayout layout{};
};

/// Loads a file or standard input and says on standard error what is wrong with it. Throws
/// InputError when it cannot be opened.
LoadedDocument loadDocument(Console& console, std::string_view name);

} // namespace tool
