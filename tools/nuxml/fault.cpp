#include "fault.h"

#include <exception>

#include "host/runtime/exception.h"

namespace tool {

namespace {

/// Whether the exception that is being handled came from a stream: the reader reports what it did
/// not throw itself while it handles it.
bool isHandlingStreamError() noexcept {
    const std::exception_ptr handled = std::current_exception();
    if (!handled) {
        return false;
    }
    try {
        std::rethrow_exception(handled);
    } catch (const host::EStreamError&) {
        return true;
    } catch (...) {
        return false;
    }
}

} // namespace

Fatality fatalityOf(host::ISAXParseError& error) {
    return {error.getMessage(),
            {error.getLineNumber(), error.getColumnNumber()},
            isHandlingStreamError()};
}

void complainAt(Console& console, std::string_view name, EventPlace place,
                std::u16string_view message) {
    std::string text(name);
    if (place.line > 0) {
        text += ':';
        text += std::to_string(place.line);
        text += ':';
        text += std::to_string(place.column);
    }
    console.complain(text, message);
}

ExitCode explain(Console& console, std::string_view name, const Fatality& fatality) {
    if (fatality.isAboutReading) {
        console.complain("cannot read " + std::string(name), fatality.message);
        return exitInputOutput;
    }
    complainAt(console, name, fatality.place, fatality.message);
    return exitFault;
}

} // namespace tool
