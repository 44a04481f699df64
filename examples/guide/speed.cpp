// The guide: what is fast and what is faster.

#include <iostream>

#include "nuXmlDOM.h"

int main() {
    const auto document = NuLoadDocument("library.xml");

    // Loops over children walk the tree itself and make nothing.
    std::size_t books = 0;
    for (const TNuDOMElement& shelf : document->At("library").ChildElements("shelf")) {
        for (const TNuDOMElement& book : shelf.ChildElements("book")) {
            books += book.HasAttribute("year") ? 1 : 0;
        }
    }

    // A path that is used in a loop is read once.
    const TNuDOMPath title(u"title");
    std::size_t units = 0;
    for (TNuDOMElement& book : document->Select("//book")) {
        units += title.SelectSingleNode(book)->get_text().size(); // UTF-16, as it is stored
    }
    std::cout << books << " books, " << units << " units of titles\n";
}
