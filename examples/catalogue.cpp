// Brings the catalogue of a library up to date.

#include <filesystem>
#include <iostream>

#include "common/utf8.h"
#include "nuXmlDOM.h"

int main(int argumentCount, char** arguments) try {
    TNuConformingOptions options;
    options.whiteSpace = cwInline; // indentation is no text here

    // The handle keeps the document, and the document all its nodes.
    const auto document = NuLoadDocument(argumentCount > 1 ? arguments[1] : "library.xml", options);
    TNuDOMElement& library = *document->get_documentElement();

    // Select with filters; the list is a snapshot.
    const auto books = library.CreateElementList(u"shelf[@id='lit']/book[@year>1900]");
    for (TNuDOMNode* book : *books) {
        std::cout << NuToUtf8(book->SelectSingleNode(u"title")->get_text()) << '\n';
    }

    // Or walk.
    std::int32_t opened = 0;
    for (TNuDOMElement& day : library.GetChildElement(u"opening")->ChildElements()) {
        day.setAttribute(u"checked", u"by \"Ада\" & Li");
        ++opened;
    }

    // Create a missing branch in one call, and give it a value with a type.
    library.SelectSingleElement(u"statistics/opening/days", soCreate)->SetAsInteger(opened);
    library.SelectSingleElement(u"statistics/opening/share", soCreate)->SetAsDouble(opened / 7.0);

    library.RemoveElement(u"poem");
    std::cout << NuToUtf8(library.get_lastChild()->get_formattedXml()) << '\n';

    // Whoever looks there finds the old file or the new one, never a part.
    document->SaveToFile(std::filesystem::temp_directory_path() / "library.xml", true);
} catch (const ENuXmlFault& fault) {
    // Not well-formed: "library.xml:7:15: the element "book" is not closed".
    std::cerr << fault.what() << '\n';
    return 1;
}
