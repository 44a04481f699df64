#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "documentInput.h"
#include "host/runtime/stream.h"

namespace tool {

/// How a document stands on its lines.
struct DocumentForm {
    bool isFormatted = true;
    bool breaksTopLevel = true;   ///< what stands right below the document has lines of its own
    bool endsWithLine = true;     ///< the last line ends as well
    std::uint8_t indentation = 2; ///< blanks of each level
};

/// The encoding that a document is written in.
struct TargetEncoding {
    std::uint32_t codePage = 0; ///< as TNuSaveOptions has it
    bool isMarked = false;
    std::string lost{}; ///< the name of the encoding that was to be kept and cannot be
};

/// The encoding of the source if it can be written, else UTF-8.
TargetEncoding targetEncodingOf(const LoadedDocument& loaded);

/// The parts of a document in their order.
class DocumentText {
public:
    /// Takes everything but the document element out of the document.
    DocumentText(const LoadedDocument& loaded, const TargetEncoding& encoding);

    /// Writes all of it to a stream that takes what is written as it is.
    void write(host::TStream& stream, const DocumentForm& form);

private:
    void writeText(host::TStream& stream, std::u16string_view text) const;

    TNuDOMDocument& document_;
    TargetEncoding encoding_;
    std::u16string_view lineEnd_;
    std::vector<std::u16string> before_; ///< the document element
    std::vector<std::u16string> behind_;
};

} // namespace tool
