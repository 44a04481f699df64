#pragma once

#include <string>
#include <string_view>

#include "console.h"
#include "event.h"
#include "exitCode.h"
#include "host/sax/Sax.h"

namespace tool {

/// What a fatal error is about.
enum class FatalityCause {
    Document,
    Reading, ///< the input failed, not its content
    Memory,
};

/// The fatal error of a document.
struct Fatality {
    std::u16string message;
    EventPlace place;
    FatalityCause cause;
};

/// What a reader reports as a fatal error; called while it does.
Fatality fatalityOf(host::ISAXParseError& error);

enum class Severity { Warning, Error };

/// Says on standard error what is wrong with an input, and where, if that is known:
/// "FILE:LINE:COLUMN: error: MESSAGE".
void complainAt(Console& console, std::string_view name, EventPlace place, Severity severity,
                std::u16string_view message);

/// Says on standard error why a document ended before its time.
ExitCode explain(Console& console, std::string_view name, const Fatality& fatality);

} // namespace tool
