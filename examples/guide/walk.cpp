// The guide: from node to node.

#include <iostream>

#include "nuXmlDOM.h"

int main() {
    const auto document = NuLoadDocument("library.xml");
    const TNuDOMElement& library = document->At("library");

    // Down: child elements, and the attributes of each.
    for (const TNuDOMElement& part : library.ChildElements()) {
        std::cout << part.Name();
        for (const TNuDOMAttribute& attribute : part.Attributes()) {
            std::cout << ' ' << attribute.Name() << '=' << attribute.Text();
        }
        std::cout << '\n';
    }

    // Only those of one name.
    for (const TNuDOMElement& day : library.At("opening").ChildElements("day")) {
        std::cout << day.getAttribute("name") << ' ';
    }

    // Up again.
    std::cout << "in " << library.At("opening").get_parentNode()->Name() << '\n';
}
