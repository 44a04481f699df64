#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "host/runtime/stream.h"
#include "nuXmlParser/conforming/conformingOptions.h"
#include "nuXmlParser/conforming/sourceForm.h"
#include "nuXmlParser/conforming/xmlFault.h"

namespace nu {
class ConformingPass;
}

/// A document as a stream that the reader reads as XML means it: the conforming stage by itself,
/// for who wants the bytes. A reader with SetConforming puts the stage in front by itself and
/// carries a little more: line breaks in comments, "?" in instructions, prefixes that differ in
/// letter case.
///
/// Reads the source from its position on, in blocks; memory is bounded by the longest tag, the
/// names of the open elements and the declared entities. Gives UTF-8 with a mark in front. The
/// source must outlive the stream. Reading throws what the source throws, and ENuXmlFault for a
/// fault of the document, after everything before it was given.
class NUXML_API TNuConformingStream final : public host::TStream {
public:
    explicit TNuConformingStream(host::TStream& source, const TNuConformingOptions& options = {});
    /// \cond internal
    explicit TNuConformingStream(std::unique_ptr<nu::ConformingPass> pass);
    /// \endcond
    ~TNuConformingStream() override;

    std::size_t Read(void* buffer, std::size_t count) override;
    /// Throws host::EStreamError.
    std::size_t Write(const void* buffer, std::size_t count) override;
    /// Tells the position, and goes back as long as no more than the first few bytes were read,
    /// which is what whoever looks for a mark does. Anything else throws host::EStreamError.
    std::int64_t Seek(std::int64_t offset, host::SeekOrigin origin) override;
    /// Throws host::EStreamError: nobody knows before all is read.
    std::int64_t GetSize() override;

    /// What is known of the source so far.
    [[nodiscard]] const TNuSourceForm& Form() const noexcept;
    /// With cfPassOn: the fault behind which everything goes on unchanged.
    [[nodiscard]] const std::optional<ENuXmlFault>& PassedFault() const noexcept;

private:
    static constexpr std::size_t headSize = 64;

    std::unique_ptr<nu::ConformingPass> pass_;
    std::int64_t position_ = 0;
    std::string head_; ///< the first bytes, as long as no more than headSize were read
};

/// Reads the rest of the source and throws ENuXmlFault for its first fault: the fastest way to
/// learn whether a document is well-formed. Gives the form of the document.
NUXML_API TNuSourceForm NuCheckXML(host::TStream& source, const TNuConformingOptions& options = {});
