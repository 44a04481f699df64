// Puts plain text into a document and gets it back.

#include <iostream>

#include "common/utf8.h"
#include "nuXmlParser.h"

int main() {
    const std::u16string plain = u"Tom & Jerry's <café>";
    const std::u16string escaped = NuStrToXML(plain);
    std::cout << NuToUtf8(escaped) << '\n' << NuToUtf8(NuXMLToStr(escaped)) << '\n';

    // The references of HTML 4.01 and numbers are understood as well.
    std::cout << NuToUtf8(NuXMLToStr(u"caf&eacute;, 3 &euro;, &#916;&#x3B4;")) << '\n';

    // A number that is none is a fault; an unknown name is just text.
    std::cout << NuToUtf8(NuXMLToStr(u"AT&T; &unknown;")) << '\n';
    try {
        std::cout << NuToUtf8(NuXMLToStr(u"&#12z;")) << '\n';
    } catch (const host::EConvertError& error) {
        std::cout << error.what() << '\n';
    }
}
