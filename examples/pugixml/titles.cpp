#include <iostream>

#include <pugixml.hpp>

int main() {
    pugi::xml_document document;
    const pugi::xml_parse_result result = document.load_file("library.xml");
    if (!result) {
        std::cerr << result.description() << '\n';
        return 1;
    }
    for (const auto& found : document.select_nodes("library/shelf/book[@year>1900]")) {
        std::cout << found.node().child("title").text().as_string("?") << '\n';
    }
}
