#include "fault.h"

#include <exception>
#include <new>

#include "host/runtime/exception.h"

namespace tool {

namespace {

/// What the exception that is being handled is about: the reader reports what it did not throw
/// itself while it handles it.
FatalityCause causeOfHandled() noexcept {
    const std::exception_ptr handled = std::current_exception();
    if (!handled) {
        return FatalityCause::Document;
    }
    try {
        std::rethrow_exception(handled);
    } catch (const host::EStreamError&) {
        return FatalityCause::Reading;
    } catch (const std::bad_alloc&) {
        return FatalityCause::Memory;
    } catch (...) {
        return FatalityCause::Document;
    }
}

} // namespace

Fatality fatalityOf(host::ISAXParseError& error) {
    return {error.getMessage(), {error.getLineNumber(), error.getColumnNumber()}, causeOfHandled()};
}

void complainAt(Console& console, std::string_view name, EventPlace place, Severity severity,
                std::u16string_view message) {
    std::string text(name);
    if (place.line > 0) {
        text += ':';
        text += std::to_string(place.line);
        text += ':';
        text += std::to_string(place.column);
    }
    text += severity == Severity::Warning ? ": warning" : ": error";
    console.complainAbout(text, message);
}

ExitCode explain(Console& console, std::string_view name, const Fatality& fatality) {
    if (fatality.cause == FatalityCause::Memory) {
        console.complain(std::string(name) + ": there is not enough memory");
        return exitInputOutput;
    }
    if (fatality.cause == FatalityCause::Reading) {
        console.complain("cannot read " + std::string(name), fatality.message);
        return exitInputOutput;
    }
    complainAt(console, name, fatality.place, Severity::Error, fatality.message);
    return exitFault;
}

} // namespace tool
