#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

#include "host/runtime/export.h"
#include "nuXmlParser/chars.h"

/// \file
/// What was wrong with a document that was loaded.

/// How bad a fault is.
enum TNuFaultSeverity : std::uint8_t {
    fsWarning, ///< the reader went on
    fsError,   ///< the reader went on, and the tree may lack something
    fsFatal,   ///< the loading ended there
};

/// One fault of a document.
struct TNuLoadFault {
    TNuFaultSeverity severity; ///< whether the loading went on
    NuXmlString message;       ///< a sentence in English, without the place
    NuXmlString file;          ///< as it was opened; empty where the document came from no file
    std::int64_t line = 0;     ///< from 1; 0 where it is not known
    std::int64_t column = 0;   ///< the same

    /// "FILE:LINE:COLUMN: warning: MESSAGE", or "error", as much of the place as is known; line
    /// breaks of the message are blanks.
    [[nodiscard]] NUXML_API NuXmlString Text() const;
};

/// What loading a document told about it, in the order of the document. Give one to a loading
/// function; whoever gives none hears of the fault that ends the loading only, as an exception.
class NUXML_API TNuLoadReport {
public:
    /// Keeps that many faults; later ones are counted only, but a fatal one is kept in any case.
    explicit TNuLoadReport(std::size_t limit = 1000) : limit_(limit) {}

    /// \name All of the loading that was last
    /// @{

    /// The faults that were kept; valid until the next load with this report.
    [[nodiscard]] const std::vector<TNuLoadFault>& Faults() const noexcept { return faults_; }
    /// How many there were, whether kept or not.
    [[nodiscard]] std::size_t Count() const noexcept { return count_; }
    /// Whether the document was read without any.
    [[nodiscard]] bool IsEmpty() const noexcept { return count_ == 0; }
    /// The fault that ended the loading; null without one.
    [[nodiscard]] const TNuLoadFault* Fatal() const noexcept;
    /// The texts of all faults that were kept, a line each.
    [[nodiscard]] NuXmlString Text() const;
    /// @}

    /// Forgets all faults; the limit stays. Loading does it first of all.
    void Clear() noexcept;
    /// Counts a fault, and keeps it as far as the limit allows.
    void Add(TNuLoadFault fault);

private:
    std::size_t limit_;
    std::size_t count_ = 0;
    std::vector<TNuLoadFault> faults_;
};

/// Write what Text gives, in UTF-8; of a report a line each.
NUXML_API std::ostream& operator<<(std::ostream& stream, const TNuLoadFault& fault);
NUXML_API std::ostream& operator<<(std::ostream& stream, const TNuLoadReport& report);
