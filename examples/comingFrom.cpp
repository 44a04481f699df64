// The five jobs of the page for those who come from another library.

#include <filesystem>
#include <iostream>

#include "nuXmlDOM.h"

namespace {

void showTitles() {
    const auto document = NuLoadDocument("library.xml");
    for (const TNuDOMElement& title : document->Select("library/shelf/book/title")) {
        std::cout << title.Text() << '\n';
    }
}

void showValues(const TNuDOMDocument& document) {
    const int port = document.Get("config/server/@port", 8080);
    const bool isVerbose = document.Get("config/log/verbose", false);
    std::cout << port << ' ' << isVerbose << '\n';
}

void addBook(TNuDOMDocument& document, const std::filesystem::path& file) {
    TNuDOMElement& book = document.At("library").AddElement("book");
    book.setAttribute("id", "b9");
    book.Set("title", "Tools & Toys");
    document.SaveToFile(file, true);
}

void removeOld(TNuDOMDocument& document) {
    for (TNuDOMElement& book : document.Select("library/book[@year<1950]")) {
        document.At("library").RemoveElement(book);
    }
}

void showFault() {
    try {
        static_cast<void>(NuLoadDocument("faults.xml"));
    } catch (const ENuXmlFault& fault) {
        std::cout << fault.what() << '\n'; // file:line:column: message
    }
}

} // namespace

int main() {
    showTitles();
    showValues(*NuParseDocument("<config><server port='80'/></config>"));
    const auto document =
        NuParseDocument("<library><book year='1900'/><book year='2000'/></library>");
    const auto file = std::filesystem::temp_directory_path() / "nuxml-coming-from.xml";
    addBook(*document, file);
    removeOld(*document);
    std::cout << *document << '\n';
    std::filesystem::remove(file);
    showFault();
}
