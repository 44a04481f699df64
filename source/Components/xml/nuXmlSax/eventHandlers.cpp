#include "nuXmlSax/eventHandlers.h"

#include "common/stringStream.h"
#include "host/runtime/format.h"
#include "nuXmlSax/messages.h"
#include "nuXmlSax/reader.h"

namespace {

/// Raises an event with texts, if it is assigned: `pass` calls it with the streams that are made of
/// them. Whatever it throws becomes the exception that names it. Deliberate: three events are named
/// with their "On", the others without.
template <class Event, class Pass, class... Texts>
void raise(const Event& event, std::u16string_view name, Pass&& pass, Texts... texts) {
    if (!event) {
        return;
    }
    const auto call = [&](auto&&... streams) {
        try {
            pass(streams...);
        } catch (...) {
            throw host::ESAXException(host::formatMessage(nu::messages::eventFailed,
                                                          {name, host::currentExceptionMessage()}));
        }
    };
    call(TNuStringStream(texts)...);
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
    const auto& event = events().OnStartPrefixMapping;
    raise(
        event, u"OnStartPrefixMapping", [&](auto&... texts) { event(Reader(), texts...); }, prefix,
        uri);
}

void TNuSAXContentHandler::endPrefixMapping(std::u16string_view prefix) {
    const auto& event = events().OnEndPrefixMapping;
    raise(
        event, u"OnEndPrefixMapping", [&](auto&... texts) { event(Reader(), texts...); }, prefix);
}

void TNuSAXContentHandler::startElement(std::u16string_view uri, std::u16string_view localName,
                                        std::u16string_view qName,
                                        host::IBufferedAttributes& attributes) {
    const auto& event = events().OnStartElement;
    if (!event) {
        return;
    }
    const auto stringAttributes = host::queryInterface<host::IAttributes>(&attributes);
    if (!stringAttributes) {
        throw host::ESAXException(nu::messages::attributesNotSupported);
    }
    raise(
        event, u"StartElement",
        [&](auto&... texts) { event(Reader(), texts..., *stringAttributes); }, uri, localName,
        qName);
}

void TNuSAXContentHandler::endElement(std::u16string_view uri, std::u16string_view localName,
                                      std::u16string_view qName) {
    const auto& event = events().OnEndElement;
    raise(
        event, u"EndElement", [&](auto&... texts) { event(Reader(), texts...); }, uri, localName,
        qName);
}

void TNuSAXContentHandler::characters(std::u16string_view text) {
    const auto& event = events().OnCharacters;
    raise(
        event, u"Characters", [&](auto&... texts) { event(Reader(), texts...); }, text);
}

void TNuSAXContentHandler::processingInstruction(std::u16string_view target,
                                                 std::u16string_view data) {
    const auto& event = events().OnProcessingInstruction;
    raise(
        event, u"OnProcessingInstruction", [&](auto&... texts) { event(Reader(), texts...); },
        target, data);
}

TNuSAXLexicalHandler::~TNuSAXLexicalHandler() noexcept(false) = default;

void TNuSAXLexicalHandler::startEntity(std::u16string_view /*name*/) {}
void TNuSAXLexicalHandler::endEntity(std::u16string_view /*name*/) {}

void TNuSAXLexicalHandler::comment(std::u16string_view text) {
    raise(events().OnComment, u"Comment", events().OnComment, text);
}

void TNuSAXLexicalHandler::startDTD(std::u16string_view name, std::u16string_view publicId,
                                    std::u16string_view systemId) {
    raise(events().OnStartDTD, u"StartDTD", events().OnStartDTD, name, publicId, systemId);
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
