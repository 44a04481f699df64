#include "host/sax/SaxHelpers.h"

namespace host {

TSAXParseError::TSAXParseError(std::u16string_view message, std::u16string_view publicId,
                               std::u16string_view systemId, std::int64_t line, std::int64_t column)
    : message_(message), publicId_(publicId), systemId_(systemId), line_(line), column_(column) {}

TSAXParseError::~TSAXParseError() = default;
TInputSource::~TInputSource() = default;

TBufferedDefaultHandler::~TBufferedDefaultHandler() = default;
void TBufferedDefaultHandler::setDocumentLocator(ILocator& /*locator*/) {}
void TBufferedDefaultHandler::startDocument() {}
void TBufferedDefaultHandler::endDocument() {}
void TBufferedDefaultHandler::startPrefixMapping(std::u16string_view /*prefix*/,
                                                 std::u16string_view /*uri*/) {}
void TBufferedDefaultHandler::endPrefixMapping(std::u16string_view /*prefix*/) {}
void TBufferedDefaultHandler::startElement(std::u16string_view /*uri*/,
                                           std::u16string_view /*localName*/,
                                           std::u16string_view /*qName*/,
                                           IBufferedAttributes& /*attributes*/) {}
void TBufferedDefaultHandler::endElement(std::u16string_view /*uri*/,
                                         std::u16string_view /*localName*/,
                                         std::u16string_view /*qName*/) {}
void TBufferedDefaultHandler::characters(std::u16string_view /*text*/) {}
void TBufferedDefaultHandler::ignorableWhitespace(std::u16string_view /*text*/) {}
void TBufferedDefaultHandler::processingInstruction(std::u16string_view /*target*/,
                                                    std::u16string_view /*data*/) {}
void TBufferedDefaultHandler::skippedEntity(std::u16string_view /*name*/) {}
void TBufferedDefaultHandler::comment(std::u16string_view /*text*/) {}
void TBufferedDefaultHandler::startCDATA() {}
void TBufferedDefaultHandler::endCDATA() {}
void TBufferedDefaultHandler::startDTD(std::u16string_view /*name*/,
                                       std::u16string_view /*publicId*/,
                                       std::u16string_view /*systemId*/) {}
void TBufferedDefaultHandler::endDTD() {}
void TBufferedDefaultHandler::startEntity(std::u16string_view /*name*/) {}
void TBufferedDefaultHandler::endEntity(std::u16string_view /*name*/) {}
void TBufferedDefaultHandler::warning(ISAXParseError& /*error*/) {}
void TBufferedDefaultHandler::error(ISAXParseError& /*error*/) {}
void TBufferedDefaultHandler::fatalError(ISAXParseError& /*error*/) {}

} // namespace host
