#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/sax/SaxHelpers.h"
#include "nuXmlParser/parserErrors.h"
#include "nuXmlSax/reader.h"
#include "nuXmlSax/scanAttributes.h"
#include "nuXmlSax/scanDocument.h"
#include "nuXmlSax/scanElement.h"
#include "nuXmlSax/scanMarkup.h"
#include "nuXmlSax/scanPlain.h"

namespace fuzz {

using Events = std::vector<std::u16string>;

/// Writes down what it is told, and where; reads every character of it.
class Record final : public host::TBufferedDefaultHandler {
public:
    Events events;

    explicit Record(bool showsPlaces) : showsPlaces_(showsPlaces) {}

    void setDocumentLocator(host::ILocator& locator) override { locator_ = &locator; }
    void startDocument() override { add(u"SD"); }
    void endDocument() override { add(u"ED"); }
    void startPrefixMapping(std::u16string_view prefix, std::u16string_view uri) override {
        add(u"M", prefix, uri);
    }
    void startElement(std::u16string_view uri, std::u16string_view localName,
                      std::u16string_view qName, host::IBufferedAttributes& list) override {
        add(u"S", uri, localName, qName);
        const auto strings = host::queryInterface<host::IAttributes>(&list);
        for (host::SAXLength index = 0; index < list.getLength(); ++index) {
            add(u"A", strings->getURI(index), strings->getLocalName(index),
                strings->getQName(index), strings->getValue(index));
        }
    }
    void endElement(std::u16string_view uri, std::u16string_view localName,
                    std::u16string_view qName) override {
        add(u"E", uri, localName, qName);
    }
    void characters(std::u16string_view text) override { add(u"T", text); }
    void processingInstruction(std::u16string_view target, std::u16string_view data) override {
        add(u"I", target, data);
    }
    void comment(std::u16string_view text) override { add(u"C", text); }
    void startCDATA() override { add(u"SC"); }
    void startDTD(std::u16string_view name, std::u16string_view, std::u16string_view) override {
        add(u"D", name);
    }
    void warning(host::ISAXParseError& error) override { add(u"W", error.getMessage()); }
    void error(host::ISAXParseError& error) override { add(u"R", error.getMessage()); }
    void fatalError(host::ISAXParseError& error) override { add(u"F", error.getMessage()); }

    /// What a parse of `source` by `parse` tells; only the two exceptions of a parse may leave it.
    template <class Parse> static Events of(Parse&& parse, bool showsPlaces = true) {
        const auto record = host::makeRef<Record>(showsPlaces);
        TNuSAXXMLReader reader;
        reader.setContentHandler(host::Ref<host::IBufferedContentHandler>(record.get()));
        reader.setLexicalHandler(host::Ref<host::IBufferedLexicalHandler>(record.get()));
        reader.setErrorHandler(host::Ref<host::IErrorHandler>(record.get()));
        try {
            parse(reader, host::Ref<host::IErrorHandler>(record.get()));
        } catch (const ENuSaxFatalError& failure) {
            record->add(u"X", failure.Message());
        } catch (const ENuSaxHandledAbort& failure) {
            record->add(u"Y", failure.Message());
        }
        return record->events;
    }

private:
    template <class... Texts> void add(std::u16string_view kind, const Texts&... texts) {
        std::u16string event(kind);
        if (locator_ && showsPlaces_) {
            event += static_cast<char16_t>(locator_->getLineNumber());
            event += static_cast<char16_t>(locator_->getColumnNumber());
        }
        ((event += texts, event += u'|'), ...);
        events.push_back(std::move(event));
    }

    bool showsPlaces_;
    host::Ref<host::ILocator> locator_;
};

template <class Source> void scan(TNuSAXXMLReader& reader, Source* source) {
    const std::unique_ptr<TNuXmlBaseParser, void (*)(TNuXmlBaseParser*)> end(
        source, [](TNuXmlBaseParser* parser) { parser->Free(); });
    nu::SaxScanner<Source>(reader, *source).scanDocument();
}

} // namespace fuzz
