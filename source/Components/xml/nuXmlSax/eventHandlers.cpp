#include "nuXmlSax/eventHandlers.h"

#include "common/stringStream.h"
#include "host/runtime/format.h"
#include "nuXmlSax/messages.h"
#include "nuXmlSax/reader.h"

namespace {

/// Calls an event and turns whatever it throws into the exception that names it.
template <class Call> void callEvent(std::u16string_view failure, Call&& call) {
    try {
        call();
    } catch (...) {
        throw host::ESAXException(host::formatMessage(failure, {host::currentExceptionMessage()}));
    }
}

/// Calls an event without text, if it is assigned.
template <class Event, class... Arguments>
void notify(const Event& event, Arguments&... arguments) {
    if (event) {
        event(arguments...);
    }
}

} // namespace

TNuSAXContentHandler::~TNuSAXContentHandler() noexcept(false) = default;

void TNuSAXContentHandler::setDocumentLocator(host::ILocator& /*locator*/) {}
void TNuSAXContentHandler::ignorableWhitespace(std::u16string_view /*text*/) {}
void TNuSAXContentHandler::skippedEntity(std::u16string_view /*name*/) {}

void TNuSAXContentHandler::startDocument() { notify(Reader().OnStartDocument, Reader()); }
void TNuSAXContentHandler::endDocument() { notify(Reader().OnEndDocument, Reader()); }
void TNuSAXContentHandler::EndProlog() { notify(Reader().OnEndProlog, Reader()); }

void TNuSAXContentHandler::startPrefixMapping(std::u16string_view prefix, std::u16string_view uri) {
    if (!Reader().OnStartPrefixMapping) {
        return;
    }
    TNuStringStream prefixText(prefix);
    TNuStringStream uriText(uri);
    callEvent(nu::messages::startPrefixMappingFailed,
              [&] { Reader().OnStartPrefixMapping(Reader(), prefixText, uriText); });
}

void TNuSAXContentHandler::endPrefixMapping(std::u16string_view prefix) {
    if (!Reader().OnEndPrefixMapping) {
        return;
    }
    TNuStringStream prefixText(prefix);
    callEvent(nu::messages::endPrefixMappingFailed,
              [&] { Reader().OnEndPrefixMapping(Reader(), prefixText); });
}

void TNuSAXContentHandler::startElement(std::u16string_view uri, std::u16string_view localName,
                                        std::u16string_view qName,
                                        host::IBufferedAttributes& attributes) {
    if (!Reader().OnStartElement) {
        return;
    }
    const auto stringAttributes = host::queryInterface<host::IAttributes>(&attributes);
    if (!stringAttributes) {
        throw host::ESAXException(nu::messages::attributesNotSupported);
    }
    TNuStringStream uriText(uri);
    TNuStringStream localNameText(localName);
    TNuStringStream qNameText(qName);
    callEvent(nu::messages::startElementFailed, [&] {
        Reader().OnStartElement(Reader(), uriText, localNameText, qNameText, *stringAttributes);
    });
}

void TNuSAXContentHandler::endElement(std::u16string_view uri, std::u16string_view localName,
                                      std::u16string_view qName) {
    if (!Reader().OnEndElement) {
        return;
    }
    TNuStringStream uriText(uri);
    TNuStringStream localNameText(localName);
    TNuStringStream qNameText(qName);
    callEvent(nu::messages::endElementFailed,
              [&] { Reader().OnEndElement(Reader(), uriText, localNameText, qNameText); });
}

void TNuSAXContentHandler::characters(std::u16string_view text) {
    if (!Reader().OnCharacters) {
        return;
    }
    TNuStringStream textStream(text);
    callEvent(nu::messages::charactersFailed, [&] { Reader().OnCharacters(Reader(), textStream); });
}

void TNuSAXContentHandler::processingInstruction(std::u16string_view target,
                                                 std::u16string_view data) {
    if (!Reader().OnProcessingInstruction) {
        return;
    }
    TNuStringStream targetText(target);
    TNuStringStream dataText(data);
    callEvent(nu::messages::processingInstructionFailed,
              [&] { Reader().OnProcessingInstruction(Reader(), targetText, dataText); });
}

TNuSAXLexicalHandler::~TNuSAXLexicalHandler() noexcept(false) = default;

void TNuSAXLexicalHandler::startEntity(std::u16string_view /*name*/) {}
void TNuSAXLexicalHandler::endEntity(std::u16string_view /*name*/) {}

void TNuSAXLexicalHandler::comment(std::u16string_view text) {
    if (!Reader().OnComment) {
        return;
    }
    TNuStringStream textStream(text);
    callEvent(nu::messages::commentFailed, [&] { Reader().OnComment(textStream); });
}

void TNuSAXLexicalHandler::startDTD(std::u16string_view name, std::u16string_view publicId,
                                    std::u16string_view systemId) {
    if (!Reader().OnStartDTD) {
        return;
    }
    TNuStringStream nameText(name);
    TNuStringStream publicIdText(publicId);
    TNuStringStream systemIdText(systemId);
    callEvent(nu::messages::startDTDFailed,
              [&] { Reader().OnStartDTD(nameText, publicIdText, systemIdText); });
}

void TNuSAXLexicalHandler::endDTD() { notify(Reader().OnEndDTD); }
void TNuSAXLexicalHandler::startCDATA() { notify(Reader().OnStartCDATA); }
void TNuSAXLexicalHandler::endCDATA() { notify(Reader().OnEndCDATA); }

TNuSaxErrorHandler::~TNuSaxErrorHandler() noexcept(false) = default;

void TNuSaxErrorHandler::warning(host::ISAXParseError& error) { notify(Reader().OnWarning, error); }
void TNuSaxErrorHandler::error(host::ISAXParseError& error) { notify(Reader().OnError, error); }
void TNuSaxErrorHandler::fatalError(host::ISAXParseError& error) {
    notify(Reader().OnFatalError, error);
}
