#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/runtime/stream.h"
#include "nuXmlParser/conforming/openElements.h"
#include "nuXmlParser/conforming/sourcePlace.h"
#include "nuXmlRecords/recordShare.h"

namespace nu {

/// Goes over the markup of a document in UTF-8, from its first byte on: where tags, comments, CDATA
/// sections and instructions begin and end, which elements are open, and nothing else. What is not
/// well-formed may go unseen; whoever reads on from a place that it gives meets that again.
class MarkupWalk {
public:
    /// Throws host::Exception where the document is in another encoding.
    explicit MarkupWalk(host::TStream& file);

    /// Goes on to the next start tag at or behind `position`; false at the end of the document.
    /// Throws ENuXmlFault and what the stream throws.
    bool walkTo(std::int64_t position);

    /// Where it stands.
    [[nodiscard]] std::int64_t position() const noexcept { return base_ + (place_ - begin()); }
    [[nodiscard]] std::size_t depth() const noexcept { return elements_.depth(); }
    /// The name in the start tag that it stands at.
    [[nodiscard]] std::string_view name() const noexcept;
    /// Line and column there; fewer look-ups if asked for in order.
    [[nodiscard]] SourcePlace place();

    /// The XML declaration and the document type as they stand.
    [[nodiscard]] const std::string& prolog() const noexcept { return prolog_; }
    /// The start tags of the open elements from the root down, with their declarations and what
    /// "xml:" says only.
    [[nodiscard]] const std::vector<std::string>& openTags();
    /// How many of them, from the root down, have not changed since this was asked last.
    [[nodiscard]] std::size_t takeUnchanged() noexcept;

private:
    [[nodiscard]] const char* begin() const noexcept { return window_.data(); }
    bool readMore(const char*& keep);
    const char* completeTag(const char*& less);
    void passEndTag(const char* less);
    void passTag(const char* less);
    void passSpecial(const char* less);
    void passBehind(const char* place, std::string_view mark);
    void passDocumentType(const char* less);
    void keepTags(std::int64_t position);
    [[noreturn]] void fail(std::u16string_view what, const char* at);
    [[noreturn]] static void fail(std::u16string_view what, const SourcePlace& where);

    host::TStream& file_;
    std::vector<char> window_; ///< longer than the text by what block operations look at
    std::int64_t base_ = 0;    ///< position of the window
    const char* place_ = nullptr;
    const char* end_ = nullptr;
    bool hasEnded_ = false;

    OpenElements elements_;
    std::vector<std::int64_t> tagPositions_; ///< one for each open element
    std::vector<std::string> openTags_;      ///< of the outer ones
    std::size_t unchanged_ = 0;
    std::string prolog_;
    PlaceCounter lines_;
    std::int64_t countedTo_ = 0;
};

} // namespace nu
