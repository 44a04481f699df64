// The guide: what real documents hold.

#include <iostream>

#include "common/utf8.h"
#include "nuXmlDOM.h"

int main() {
    const char16_t* const xml = u"<!DOCTYPE p [<!ENTITY me 'Tom &amp; Ann'>"
                                u"<!ATTLIST p kind CDATA 'letter'>]>"
                                u"<p xmlns:x='urn:x'>\n  <x:to>&me;</x:to> <![CDATA[a<b]]>\n</p>";

    // As XML means it: entities expanded, defaults put in, and line breaks between tags dropped.
    TNuConformingOptions options;
    options.whiteSpace = cwInline;
    const auto document = NuCreateDOMDocument(xml, options);
    std::cout << document->At("p") << '\n';

    // A name has a prefix, a local part and a namespace.
    const TNuDOMElement& to = document->At("p/x:to");
    std::cout << NuToUtf8(to.get_localName()) << " in " << NuToUtf8(to.get_namespaceURI()) << '\n';

    // Programs of others choose prefixes as they like: compare local names, or namespaces.
    std::cout << document->CreateNodeList("//to")->Count() << ' '
              << document->CreateNodeList("//to", soIgnoreNamespace)->Count() << ' '
              << document->getElementsByTagNameNS(u"urn:x", u"to")->Count() << '\n';
}
