// Brings the catalogue of a library up to date.

#include <filesystem>
#include <iostream>

#include "nuXmlDOM.h"

int main(int argumentCount, char** arguments) try {
    TNuConformingOptions options;
    options.whiteSpace = cwInline; // indentation is no text here

    // The handle keeps the document, and the document all its nodes.
    const auto document = NuLoadDocument(argumentCount > 1 ? arguments[1] : "library.xml", options);
    TNuDOMElement& library = document->At("library");

    // Select with filters.
    for (const TNuDOMElement& book : library.Select("shelf[@id='lit']/book[@year>1900]")) {
        std::cout << book.Get("title", "?") << '\n';
    }

    // Or walk.
    int opened = 0;
    for (TNuDOMElement& day : library.At("opening").ChildElements("day")) {
        day.setAttribute("checked", "by \"Ада\" & Li");
        ++opened;
    }

    // Give values to elements and attributes; what leads there is made where it is missing.
    library.Set("statistics/opening/days", opened);
    library.Set("statistics/opening/share", opened / 7.0);

    library.RemoveElement("poem");
    std::cout << library.At("statistics").FormattedXml() << '\n';

    // Whoever looks there finds the old file or the new one, never a part.
    document->SaveToFile(std::filesystem::temp_directory_path() / "library.xml", true);
} catch (const ENuXmlFault& fault) {
    // Not well-formed: "library.xml:7:15: the element "book" is not closed".
    std::cerr << fault.what() << '\n';
    return 1;
}
