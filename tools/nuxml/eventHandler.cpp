#include "eventHandler.h"

#include "nuXmlParser.h"

namespace tool {

namespace {

/// The clock is asked only once in so many events, a power of two.
constexpr std::uint64_t eventsBetweenLooks = 1024;

} // namespace

void EventHandler::setDocumentLocator(host::ILocator& locator) { locator_ = &locator; }

void EventHandler::startDocument() { report(EventKind::StartDocument); }
void EventHandler::endDocument() { report(EventKind::EndDocument); }
void EventHandler::EndProlog() { report(EventKind::EndProlog); }

void EventHandler::startPrefixMapping(std::u16string_view prefix, std::u16string_view uri) {
    report(EventKind::StartPrefixMapping, {{"prefix", prefix}, {"uri", uri}});
}

void EventHandler::startElement(std::u16string_view uri, std::u16string_view localName,
                                std::u16string_view qName, host::IBufferedAttributes& attributes) {
    report(EventKind::StartElement, {{"uri", uri}, {"localName", localName}, {"qName", qName}},
           &attributes);
}

void EventHandler::endElement(std::u16string_view uri, std::u16string_view localName,
                              std::u16string_view qName) {
    report(EventKind::EndElement, {{"uri", uri}, {"localName", localName}, {"qName", qName}});
}

void EventHandler::characters(std::u16string_view text) {
    report(EventKind::Characters, {{"text", text}});
}

void EventHandler::processingInstruction(std::u16string_view target, std::u16string_view data) {
    report(EventKind::ProcessingInstruction, {{"target", target}, {"data", data}});
}

void EventHandler::comment(std::u16string_view text) {
    report(EventKind::Comment, {{"text", text}});
}

void EventHandler::startCDATA() { report(EventKind::StartCDATA); }
void EventHandler::endCDATA() { report(EventKind::EndCDATA); }

void EventHandler::startDTD(std::u16string_view name, std::u16string_view publicId,
                            std::u16string_view systemId) {
    report(EventKind::StartDTD, {{"name", name}, {"publicId", publicId}, {"systemId", systemId}});
}

void EventHandler::warning(host::ISAXParseError& error) { reportFault(EventKind::Warning, error); }
void EventHandler::error(host::ISAXParseError& error) { reportFault(EventKind::Error, error); }

void EventHandler::fatalError(host::ISAXParseError& error) {
    fatality_ = fatalityOf(error);
    reportFault(EventKind::FatalError, error);
}

void EventHandler::report(EventKind kind, std::initializer_list<EventField> fields,
                          host::IBufferedAttributes* attributes) {
    Event event{kind, {fields.begin(), fields.size()}, attributes};
    if (showsPlaces_ && locator_) {
        event.place = {locator_->getLineNumber(), locator_->getColumnNumber()};
    }
    passOn(event);
}

/// A fault tells its own place.
void EventHandler::reportFault(EventKind kind, host::ISAXParseError& error) {
    const std::u16string message = error.getMessage();
    const EventField field{"message", message};
    passOn(
        {kind, {&field, 1}, nullptr, EventPlace{error.getLineNumber(), error.getColumnNumber()}});
}

void EventHandler::passOn(const Event& event) {
    format_.write(event);
    if (!console_.output().isOpen()) {
        throw ENuSaxHandledAbort(u""); // nobody reads on: the one way to end a parse quietly
    }
    if (++eventCount_ % eventsBetweenLooks == 0 && console_.progress().isDue()) {
        showProgress();
    }
}

void EventHandler::showProgress() {
    if (console_.output().isTerminal()) {
        return; // the events themselves run over it
    }
    std::string text(name_);
    text += ": " + std::to_string(eventCount_) + " events";
    if (locator_) {
        text += ", line " + std::to_string(locator_->getLineNumber());
    }
    console_.progress().show(text);
}

} // namespace tool
