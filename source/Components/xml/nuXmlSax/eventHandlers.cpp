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

/// The same with the reader, which a handler has only as long as it has events.
void notifySender(const TNuSAXHandler& handler, const TNuSAXReaderEvents::Notification& event) {
    if (event) {
        event(handler.Reader());
    }
}

} // namespace

TNuSAXContentHandler::~TNuSAXContentHandler() noexcept(false) = default;

void TNuSAXContentHandler::setDocumentLocator(host::ILocator& /*locator*/) {}
void TNuSAXContentHandler::ignorableWhitespace(std::u16string_view /*text*/) {}
void TNuSAXContentHandler::skippedEntity(std::u16string_view /*name*/) {}

void TNuSAXContentHandler::startDocument() { notifySender(*this, events().OnStartDocument); }
void TNuSAXContentHandler::endDocument() { notifySender(*this, events().OnEndDocument); }
void TNuSAXContentHandler::EndProlog() { notifySender(*this, events().OnEndProlog); }

void TNuSAXContentHandler::startPrefixMapping(std::u16string_view prefix, std::u16string_view uri) {
    if (!events().OnStartPrefixMapping) {
        return;
    }
    TNuStringStream prefixText(prefix);
    TNuStringStream uriText(uri);
    callEvent(nu::messages::startPrefixMappingFailed,
              [&] { events().OnStartPrefixMapping(Reader(), prefixText, uriText); });
}

void TNuSAXContentHandler::endPrefixMapping(std::u16string_view prefix) {
    if (!events().OnEndPrefixMapping) {
        return;
    }
    TNuStringStream prefixText(prefix);
    callEvent(nu::messages::endPrefixMappingFailed,
              [&] { events().OnEndPrefixMapping(Reader(), prefixText); });
}

void TNuSAXContentHandler::startElement(std::u16string_view uri, std::u16string_view localName,
                                        std::u16string_view qName,
                                        host::IBufferedAttributes& attributes) {
    if (!events().OnStartElement) {
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
        events().OnStartElement(Reader(), uriText, localNameText, qNameText, *stringAttributes);
    });
}

void TNuSAXContentHandler::endElement(std::u16string_view uri, std::u16string_view localName,
                                      std::u16string_view qName) {
    if (!events().OnEndElement) {
        return;
    }
    TNuStringStream uriText(uri);
    TNuStringStream localNameText(localName);
    TNuStringStream qNameText(qName);
    callEvent(nu::messages::endElementFailed,
              [&] { events().OnEndElement(Reader(), uriText, localNameText, qNameText); });
}

void TNuSAXContentHandler::characters(std::u16string_view text) {
    if (!events().OnCharacters) {
        return;
    }
    TNuStringStream textStream(text);
    callEvent(nu::messages::charactersFailed, [&] { events().OnCharacters(Reader(), textStream); });
}

void TNuSAXContentHandler::processingInstruction(std::u16string_view target,
                                                 std::u16string_view data) {
    if (!events().OnProcessingInstruction) {
        return;
    }
    TNuStringStream targetText(target);
    TNuStringStream dataText(data);
    callEvent(nu::messages::processingInstructionFailed,
              [&] { events().OnProcessingInstruction(Reader(), targetText, dataText); });
}

TNuSAXLexicalHandler::~TNuSAXLexicalHandler() noexcept(false) = default;

void TNuSAXLexicalHandler::startEntity(std::u16string_view /*name*/) {}
void TNuSAXLexicalHandler::endEntity(std::u16string_view /*name*/) {}

void TNuSAXLexicalHandler::comment(std::u16string_view text) {
    if (!events().OnComment) {
        return;
    }
    TNuStringStream textStream(text);
    callEvent(nu::messages::commentFailed, [&] { events().OnComment(textStream); });
}

void TNuSAXLexicalHandler::startDTD(std::u16string_view name, std::u16string_view publicId,
                                    std::u16string_view systemId) {
    if (!events().OnStartDTD) {
        return;
    }
    TNuStringStream nameText(name);
    TNuStringStream publicIdText(publicId);
    TNuStringStream systemIdText(systemId);
    callEvent(nu::messages::startDTDFailed,
              [&] { events().OnStartDTD(nameText, publicIdText, systemIdText); });
}

void TNuSAXLexicalHandler::endDTD() { notify(events().OnEndDTD); }
void TNuSAXLexicalHandler::startCDATA() { notify(events().OnStartCDATA); }
void TNuSAXLexicalHandler::endCDATA() { notify(events().OnEndCDATA); }

TNuSaxErrorHandler::~TNuSaxErrorHandler() noexcept(false) = default;

void TNuSaxErrorHandler::warning(host::ISAXParseError& error) { notify(events().OnWarning, error); }
void TNuSaxErrorHandler::error(host::ISAXParseError& error) { notify(events().OnError, error); }
void TNuSaxErrorHandler::fatalError(host::ISAXParseError& error) {
    notify(events().OnFatalError, error);
}
