// The reader over any bytes as a stream, and over the same as text in three ways that must agree.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "common/codePage.h"
#include "common/stringStream.h"
#include "host/runtime/memoryStream.h"
#include "host/runtime/unicode.h"
#include "host/sax/SaxHelpers.h"
#include "nuXmlParser/parserErrors.h"
#include "nuXmlParser/smallStreamParser.h"
#include "nuXmlSax/reader.h"
#include "nuXmlSax/scanAttributes.h"
#include "nuXmlSax/scanDocument.h"
#include "nuXmlSax/scanElement.h"
#include "nuXmlSax/scanMarkup.h"
#include "nuXmlSax/scanPlain.h"
#include "tests/support/plainSource.h"

namespace {

/// Writes down what it is told, and where; reads every character of it.
class Record final : public host::TBufferedDefaultHandler {
public:
    std::u16string log;

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
    template <class Parse> static std::u16string of(Parse&& parse) {
        const auto record = host::makeRef<Record>();
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
        return record->log;
    }

private:
    template <class... Texts> void add(std::u16string_view kind, const Texts&... texts) {
        log += kind;
        if (locator_) {
            log += static_cast<char16_t>(locator_->getLineNumber());
            log += static_cast<char16_t>(locator_->getColumnNumber());
        }
        ((log += texts, log += u'|'), ...);
    }

    host::Ref<host::ILocator> locator_;
};

template <class Source> void scan(TNuSAXXMLReader& reader, Source* source) {
    const std::unique_ptr<TNuXmlBaseParser, void (*)(TNuXmlBaseParser*)> end(
        source, [](TNuXmlBaseParser* parser) { parser->Free(); });
    nu::SaxScanner<Source>(reader, *source).scanDocument();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // 1. The bytes themselves, in memory that ends where they end.
    NuSetSystemCodePage(size % 2 == 0 ? cNuCodePageUtf8 : 1252);
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    Record::of([&](TNuSAXXMLReader& reader, const auto&) { reader.ParseBytes(bytes); });

    // 2. The text, unit by unit, in one piece, and in a window that moves.
    const std::u16string text = u'<' + host::utf8ToUtf16(bytes);
    const std::u16string plain = Record::of([&](auto& reader, const auto& errorHandler) {
        scan(reader, new support::PlainSource(text, errorHandler));
    });
    const std::u16string whole =
        Record::of([&](TNuSAXXMLReader& reader, const auto&) { reader.Parse(text); });
    const std::string encoded = "\xEF\xBB\xBF" + host::utf16ToUtf8(text);
    const std::u16string moving = Record::of([&](auto& reader, const auto& errorHandler) {
        scan(reader, new TNuXmlSmallStreamParser(new host::TMemoryViewStream(encoded), true,
                                                 errorHandler, 16 + size % 64));
    });
    if (whole != plain || moving != plain) {
        std::abort();
    }
    return 0;
}
