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

/// Loads a file or standard input and says on standard error what is wrong with it. The tree is all
/// that is held of a long input. Throws InputError when it cannot be opened.
/// \param isLarge whether it is read in pieces, however short it is
LoadedDocument loadDocument(Console& console, std::string_view name, bool isLarge);

} // namespace tool
