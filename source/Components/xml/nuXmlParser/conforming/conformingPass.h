#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "host/runtime/stream.h"
#include "nuXmlParser/conforming/conformingOptions.h"
#include "nuXmlParser/conforming/elementWatch.h"
#include "nuXmlParser/conforming/markupRules.h"
#include "nuXmlParser/conforming/normaliser.h"
#include "nuXmlParser/conforming/outputText.h"
#include "nuXmlParser/conforming/sourceForm.h"
#include "nuXmlParser/conforming/sourceText.h"
#include "nuXmlParser/conforming/xmlFault.h"

namespace nu {

/// One way of a document through the conforming stage: as a whole, or as a stream of blocks.
class ConformingPass {
public:
    /// Blocks in which streams are read and text goes out.
    static constexpr std::size_t blockSize = 64 * 1024;

    /// The rest of a stream. Text that lies in memory is looked at there.
    ConformingPass(host::TStream& stream, const TNuConformingOptions& options, ReaderForm reader);
    ConformingPass(const ConformingPass&) = delete;
    ConformingPass& operator=(const ConformingPass&) = delete;
    ~ConformingPass();

    /// With cfPassOn, who is told of the fault; it is also kept.
    std::function<void(const ENuXmlFault&)> onPassedFault;

    /// Goes through the whole document; gives what the reader is to read, which lives as long as
    /// this object: the source's own bytes if there was nothing to change. Throws ENuXmlFault for
    /// any fault; then this object is of no use any more.
    [[nodiscard]] std::string_view readWhole();
    /// Goes through the whole document and keeps nothing of it.
    void check();
    /// Goes on to the end of the next element that `watch`, always the same, takes; gives it as it
    /// is written, until the next call. Nothing at the end of the document. Throws ENuXmlFault, and
    /// OutputLimit where the element is longer than that; then this object is of no use any more.
    [[nodiscard]] std::optional<std::string_view> readElement(ElementWatch& watch,
                                                              std::size_t limit);
    /// The first line of the source counts as the one of that number. To be called first.
    void countLinesFrom(std::int64_t line) noexcept { source_.countLinesFrom(line); }
    /// The next bytes; 0 at the end. Throws a fault when everything before it was given.
    std::size_t read(char* target, std::size_t count);

    [[nodiscard]] const TNuSourceForm& form() const noexcept { return form_; }
    [[nodiscard]] const std::optional<ENuXmlFault>& passedFault() const noexcept {
        return passedFault_;
    }

private:
    void open();
    void fillOutput();
    void passOn(const ENuXmlFault& fault);
    [[nodiscard]] bool isReadAsUtf8(std::string_view bytes) const;
    void noteForm();

    TNuConformingOptions options_;
    ReaderForm reader_;
    std::string_view memory_; ///< of a source in memory, all its bytes
    SourceText source_;
    OutputText output_;
    TNuSourceForm form_;
    std::optional<Normaliser> normaliser_;
    bool hasEnded_ = false;
    std::exception_ptr failure_; ///< thrown when everything before it was given
    std::optional<ENuXmlFault> passedFault_;
    std::string passedText_;
};

} // namespace nu
