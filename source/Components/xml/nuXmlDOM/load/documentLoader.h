#pragma once

#include <string>
#include <string_view>

#include "host/runtime/stream.h"
#include "nuXmlDOM/core/document.h"

class TNuLoadReport;
struct TNuConformingOptions;

namespace nu {

/// How a document is loaded.
struct Loading {
    const TNuConformingOptions* options = nullptr; ///< null: by the reader's own rules
    TNuLoadReport* report = nullptr;               ///< null: nobody wants to know
    std::u16string file{};                         ///< empty where it comes from no file
};

/// Puts what a stream holds from its position on behind what a document has.
void loadStream(TNuDOMDocument& document, host::TStream& stream, const Loading& loading);

/// Puts XML text in the place of what a document has.
void loadText(TNuDOMDocument& document, std::u16string_view xml, const Loading& loading);

} // namespace nu
