#pragma once

#include <string_view>

#include "console.h"
#include "exitCode.h"
#include "input.h"
#include "nuXmlDOM.h"
#include "nuXmlParser.h"
#include "readingOptions.h"
#include "sourceLayout.h"
#include "treeBuilder.h"

namespace tool {

/// What a document and the paths in it may grow to before the tool gives up.
inline constexpr TNuDOMLimits documentLimits{inputLimits, 100'000'000, 32'000'000'000,
                                             10'000'000'000};

/// An input as a tree, and what a tree does not keep of it.
struct LoadedDocument {
    NuRef<TNuDOMDocument> document; ///< empty when the input is no document
    ExitCode exitCode = exitDone;
    bool isComplainedAbout = false; ///< something may be missing in the tree, or be another
    bool isRaw = false;             ///< then nothing is known of the form
    TNuSourceForm form{};
    TopLevelOrder order{};
    SourceLayout layout{};
};

/// Loads a file or standard input and says on standard error what is wrong with it. The tree is all
/// that is held of a long input. Throws InputError when it cannot be opened, UsageError where the
/// options contradict each other.
LoadedDocument loadDocument(Console& console, std::string_view name, const ReadingOptions& options);

/// The same of an input that is open already.
LoadedDocument loadDocument(Console& console, const Input& input, std::string_view name,
                            const ReadingOptions& options);
/// Opens an input in the way that documents are loaded from.
Input openDocument(std::string_view name, const ReadingOptions& options, Progress& progress);

} // namespace tool
