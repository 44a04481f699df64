#include "nuXmlDOM/load/loadReport.h"

#include <ostream>
#include <utility>

#include "common/utf8.h"
#include "nuXmlParser/parserErrors.h"

namespace {

/// Runs of line breaks as one blank each.
NuXmlString onOneLine(std::u16string_view text) {
    NuXmlString line;
    for (const NuXmlChar unit : text) {
        const bool isBreak = unit == u'\r' || unit == u'\n';
        if (!isBreak) {
            line += unit;
        } else if (!line.ends_with(u' ')) {
            line += u' ';
        }
    }
    return line;
}

} // namespace

NuXmlString TNuLoadFault::Text() const {
    return nu::placeText(file, line, column) + (severity == fsWarning ? u"warning: " : u"error: ") +
           onOneLine(message);
}

const TNuLoadFault* TNuLoadReport::Fatal() const noexcept {
    return !faults_.empty() && faults_.back().severity == fsFatal ? &faults_.back() : nullptr;
}

NuXmlString TNuLoadReport::Text() const {
    NuXmlString text;
    for (const TNuLoadFault& fault : faults_) {
        text += fault.Text();
        text += u'\n';
    }
    return text;
}

void TNuLoadReport::Clear() noexcept {
    faults_.clear();
    count_ = 0;
}

void TNuLoadReport::Add(TNuLoadFault fault) {
    ++count_;
    if (faults_.size() < limit_ || fault.severity == fsFatal) {
        faults_.push_back(std::move(fault));
    }
}

std::ostream& operator<<(std::ostream& stream, const TNuLoadFault& fault) {
    return stream << NuToUtf8(fault.Text());
}

std::ostream& operator<<(std::ostream& stream, const TNuLoadReport& report) {
    return stream << NuToUtf8(report.Text());
}
