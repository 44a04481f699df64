#include "host/runtime/exception.h"

#include "host/runtime/format.h"
#include "host/runtime/unicode.h"

namespace host {

Exception::Exception(std::u16string_view message)
    : message_(message), utf8_(utf16ToUtf8(message)) {}

ESystemError::ESystemError(std::u16string_view message, std::int32_t code)
    : Exception(message), code_(code) {}

// The destructors stand here so that each class has one home for its type information, which is
// what makes catching across shared libraries reliable.
Exception::~Exception() = default;
EConvertError::~EConvertError() = default;
EListError::~EListError() = default;
EAssertionFailed::~EAssertionFailed() = default;
EStreamError::~EStreamError() = default;
EReadError::~EReadError() = default;
EWriteError::~EWriteError() = default;
EFileOpenError::~EFileOpenError() = default;
EInvalidPointer::~EInvalidPointer() = default;
EInvalidCast::~EInvalidCast() = default;
ESystemError::~ESystemError() = default;

void failAssertion(std::u16string_view message, std::u16string_view location, int line) {
    throw EAssertionFailed(formatMessage(u"%s (%s, line %d)", {message, location, line}));
}

void raiseListIndex(std::int64_t index) {
    throw EListError(formatMessage(u"List index out of bounds (%d)", {index}));
}

std::u16string messageOf(const std::exception& exception) {
    const auto* const own = dynamic_cast<const Exception*>(&exception);
    return own != nullptr ? own->Message() : utf8ToUtf16(exception.what());
}

std::u16string currentExceptionMessage() {
    try {
        throw;
    } catch (const std::exception& exception) {
        return messageOf(exception);
    } catch (...) {
        return {};
    }
}

} // namespace host
