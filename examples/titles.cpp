// Prints the titles of books since 1900.

#include <iostream>

#include "nuXmlDOM.h"

int main() try {
    const auto document = NuLoadDocument("library.xml");
    for (const TNuDOMElement& book : document->Select("library/shelf/book[@year>1900]")) {
        std::cout << book.Get("title", "?") << '\n';
    }
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
