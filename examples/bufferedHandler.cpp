// Prints the titles of a catalogue with the lines they stand on, through a handler of its own:
// names and text come as spans of the parser's buffer, without a copy.

#include <iostream>
#include <string>

#include "common/utf8.h"
#include "host/sax/SaxHelpers.h"
#include "nuXmlSax.h"

namespace {

class TitlePrinter : public host::TBufferedDefaultHandler {
public:
    // The locator may be asked during the whole parse.
    void setDocumentLocator(host::ILocator& locator) override { locator_ = &locator; }

    void startElement(std::u16string_view uri, std::u16string_view localName,
                      std::u16string_view /*qName*/,
                      host::IBufferedAttributes& attributes) override {
        if (uri != u"urn:lindenau:library") {
            return;
        }
        if (localName == u"book") {
            // A span lives as long as the call, so what is needed later becomes a string.
            language_ = valueOf(attributes, u"lang");
        }
        isInTitle_ = localName == u"title";
    }

    void endElement(std::u16string_view /*uri*/, std::u16string_view /*localName*/,
                    std::u16string_view /*qName*/) override {
        isInTitle_ = false;
    }

    void characters(std::u16string_view text) override {
        if (isInTitle_) {
            std::cout << locator_->getLineNumber() << " [" << language_ << "] " << NuToUtf8(text)
                      << '\n';
        }
    }

    void warning(host::ISAXParseError& error) override {
        std::cout << error.getLineNumber() << ": " << NuToUtf8(error.getMessage()) << '\n';
    }

private:
    static std::string valueOf(host::IBufferedAttributes& attributes, std::u16string_view name) {
        const host::SAXChar* value = nullptr;
        host::SAXLength length = 0;
        attributes.getValue(name.data(), static_cast<host::SAXLength>(name.size()), value, length);
        return NuToUtf8({value, static_cast<std::size_t>(length)});
    }

    host::Ref<host::ILocator> locator_;
    std::string language_;
    bool isInTitle_ = false;
};

} // namespace

int main() {
    const auto handler = host::makeRef<TitlePrinter>();
    TNuSAXXMLReader reader;
    reader.SetConforming({}); // documents as XML means them
    reader.setContentHandler(handler);
    reader.setErrorHandler(handler);
    reader.ParseFile("library.xml");
}
