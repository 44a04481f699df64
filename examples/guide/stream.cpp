// The guide: documents of any size, event by event.

#include <iostream>

#include "common/utf8.h"
#include "nuXmlSax.h"

int main() {
    TNuSAXXMLReader reader;
    reader.SetConforming({}); // documents as XML means them

    // Nothing of the document is kept but what the program keeps itself.
    std::size_t books = 0;
    std::u16string longest;
    bool isTitle = false;
    reader.OnStartElement = [&](auto&, auto&, auto&, TNuStringStream& name, auto&) {
        books += name.WideView() == u"book" ? 1 : 0;
        isTitle = name.WideView() == u"title";
    };
    reader.OnCharacters = [&](auto&, auto& text) {
        if (isTitle && text.WideView().size() > longest.size()) {
            longest = text.WideView();
        }
    };
    reader.OnEndElement = [&](auto&&...) { isTitle = false; };
    reader.ParseFile("library.xml");
    std::cout << books << " books, the longest title is " << NuToUtf8(longest) << '\n';
}
