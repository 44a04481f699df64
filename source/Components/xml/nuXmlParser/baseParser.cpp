#include "nuXmlParser/baseParser.h"

#include "host/com/implements.h"
#include "host/sax/SaxHelpers.h"
#include "nuXmlParser/parserErrors.h"

TNuXmlBaseParser::TNuXmlBaseParser(host::TStream* sourceStream, bool ownsStream,
                                   const host::Ref<host::IErrorHandler>& errorHandler)
    : sourceStream_(sourceStream), ownsStream_(ownsStream), errorHandler_(errorHandler) {
    // Throwing here leaves the stream alone: the destructor does not run.
    if (!errorHandler) {
        throw host::ESAXException(nu::messages::errorHandlerMissing);
    }
    if (sourceStream == nullptr) {
        throw host::ESAXException(nu::messages::sourceStreamMissing);
    }
}

TNuXmlBaseParser::~TNuXmlBaseParser() { releaseStream(); }

void TNuXmlBaseParser::Initialize() {
    eof_ = false;
    setCounters(1, 0, 0);
}

std::int64_t TNuXmlBaseParser::GetStreamPos() {
    return sourceStream_ == nullptr ? 0 : sourceStream_->GetPosition();
}

void TNuXmlBaseParser::RaiseFatalError(std::u16string_view message) {
    if (errorHandler_) {
        const auto error =
            host::makeRef<host::TSAXParseError>(message, u"", u"", LineNumber(), ColumnNumber());
        errorHandler_->fatalError(*error);
    }
    throw ENuSaxHandledAbort(nu::messages::abort);
}

std::int64_t TNuXmlBaseParser::LineNumber() {
    updateCounters();
    return lineNumber_;
}

std::int64_t TNuXmlBaseParser::ColumnNumber() {
    updateCounters();
    return columnNumber_;
}

std::int64_t TNuXmlBaseParser::CharCount() {
    updateCounters();
    return charCount_;
}

void TNuXmlBaseParser::updateCounters() {}

host::ResultCode TNuXmlBaseParser::QueryInterface(const host::InterfaceId& id,
                                                  void** object) noexcept {
    *object = host::findInterface<host::ILocator>(this, id);
    if (*object == nullptr) {
        return host::resultNoInterface;
    }
    _AddRef();
    return host::resultOk;
}

std::int32_t TNuXmlBaseParser::_AddRef() noexcept {
    return referenceCount_.fetch_add(1, std::memory_order_relaxed) + 1;
}

std::int32_t TNuXmlBaseParser::_Release() noexcept {
    const std::int32_t left = referenceCount_.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (left == 0) {
        delete this;
    }
    return left;
}

void TNuXmlBaseParser::Free() {
    if (referenceCount_.load(std::memory_order_relaxed) > 1) {
        // Somebody keeps the locator and may ask it for the last place.
        updateCounters();
    }
    releaseText();
    releaseStream();
    // A handler that keeps the locator would otherwise keep itself alive through it.
    errorHandler_.reset();
    _Release();
}

void TNuXmlBaseParser::releaseStream() noexcept {
    if (ownsStream_) {
        delete sourceStream_;
    }
    sourceStream_ = nullptr;
    ownsStream_ = false;
}

void TNuXmlBaseParser::raiseUnexpectedEof() {
    throw ENuSaxFatalError(nu::messages::unexpectedEof, LineNumber(), ColumnNumber());
}

void TNuXmlBaseParser::setCounters(std::int64_t line, std::int64_t column,
                                   std::int64_t charCount) noexcept {
    lineNumber_ = line;
    columnNumber_ = column;
    charCount_ = charCount;
}
