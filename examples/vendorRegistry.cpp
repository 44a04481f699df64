// Asks the registry for a parser by the description of its vendor, as an application does that
// wants to stay free to change it. Loading the library has registered it.

#include <iostream>

#include "common/utf8.h"
#include "host/sax/SaxHelpers.h"
#include "nuXmlSax.h"

namespace {

class Listener : public host::TBufferedDefaultHandler {
public:
    void startElement(std::u16string_view /*uri*/, std::u16string_view /*localName*/,
                      std::u16string_view qName,
                      host::IBufferedAttributes& /*attributes*/) override {
        std::cout << "element " << NuToUtf8(qName) << '\n';
    }
};

} // namespace

int main() {
    for (const host::TSAXVendor* vendor : host::RegisteredSAXVendors()) {
        std::cout << "vendor \"" << NuToUtf8(vendor->Description()) << "\"\n";
    }
    std::cout << "default \"" << NuToUtf8(host::DefaultSAXVendor()) << "\"\n";

    const host::Ref<host::IBufferedXMLReader> reader = host::CreateBufferedXMLReader();
    reader->setContentHandler(host::makeRef<Listener>());
    try {
        reader->Parse(u"<shelf><book/><book title=\"Dune");
    } catch (const ENuSaxFatalError& error) {
        std::cout << "fault: " << error.what() << '\n';
    }
}
