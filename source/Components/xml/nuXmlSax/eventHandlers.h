#pragma once

#include "host/sax/BSaxExt.h"
#include "nuXmlSax/contentHandler.h"
#include "nuXmlSax/handler.h"

/// \file
/// The handlers that a reader installs where the application has set none: each forwards to the
/// events of its reader, until the parse is over: one that is kept longer does nothing.

/// Forwards content to the reader's events.
class NUXML_API TNuSAXContentHandler : public TNuSAXHandlerOf<INuSaxContentHandler> {
public:
    using TNuSAXHandlerOf::TNuSAXHandlerOf;
    ~TNuSAXContentHandler() noexcept(false) override;

    void setDocumentLocator(host::ILocator& locator) override;
    void startDocument() override;
    void endDocument() override;
    void EndProlog() override;
    void startPrefixMapping(std::u16string_view prefix, std::u16string_view uri) override;
    void endPrefixMapping(std::u16string_view prefix) override;
    void startElement(std::u16string_view uri, std::u16string_view localName,
                      std::u16string_view qName, host::IBufferedAttributes& attributes) override;
    void endElement(std::u16string_view uri, std::u16string_view localName,
                    std::u16string_view qName) override;
    void characters(std::u16string_view text) override;
    void ignorableWhitespace(std::u16string_view text) override;
    void processingInstruction(std::u16string_view target, std::u16string_view data) override;
    void skippedEntity(std::u16string_view name) override;
};

/// Forwards comments, CDATA borders and the document type to the reader's events.
class NUXML_API TNuSAXLexicalHandler : public TNuSAXHandlerOf<host::IBufferedLexicalHandler> {
public:
    using TNuSAXHandlerOf::TNuSAXHandlerOf;
    ~TNuSAXLexicalHandler() noexcept(false) override;

    void comment(std::u16string_view text) override;
    void startCDATA() override;
    void endCDATA() override;
    void startDTD(std::u16string_view name, std::u16string_view publicId,
                  std::u16string_view systemId) override;
    void endDTD() override;
    void startEntity(std::u16string_view name) override;
    void endEntity(std::u16string_view name) override;
};

/// Forwards faults to the reader's events.
class NUXML_API TNuSaxErrorHandler : public TNuSAXHandlerOf<host::IErrorHandler> {
public:
    using TNuSAXHandlerOf::TNuSAXHandlerOf;
    ~TNuSaxErrorHandler() noexcept(false) override;

    void warning(host::ISAXParseError& error) override;
    void error(host::ISAXParseError& error) override;
    void fatalError(host::ISAXParseError& error) override;
};
