#include "nuXmlParser/parserErrors.h"

#include "host/runtime/format.h"
#include "host/runtime/unicode.h"

ENuSaxFatalError::ENuSaxFatalError(std::u16string_view message, std::int64_t line,
                                   std::int64_t column)
    : Exception(message), line_(line), column_(column) {
    makeText();
}
ENuSaxFatalError::~ENuSaxFatalError() = default;
ENuSaxHandledAbort::~ENuSaxHandledAbort() = default;

void ENuSaxFatalError::SetFile(std::u16string_view name) {
    if (file_.empty()) {
        file_ = name;
        makeText();
    }
}

void ENuSaxFatalError::makeText() {
    text_ = host::utf16ToUtf8(nu::placeText(file_, line_, column_) + Message());
}

std::u16string nu::placeText(std::u16string_view file, std::int64_t line, std::int64_t column) {
    std::u16string text(file);
    if (line > 0) {
        text += host::formatMessage(text.empty() ? u"%d:%d" : u":%d:%d", {line, column});
    }
    return text.empty() ? text : text + u": ";
}
