// The guide: nodes by paths.

#include <iostream>

#include "nuXmlDOM.h"

int main() {
    const auto document = NuLoadDocument("library.xml");

    // All elements at a path: a snapshot, whatever changes meanwhile.
    for (const TNuDOMElement& title : document->Select("library/shelf/book[@lang='en']/title")) {
        std::cout << title.Text() << '\n';
    }

    // The first one; null without any.
    if (const TNuDOMElement* mail = document->Find("//contact/mail")) {
        std::cout << mail->Text() << '\n';
    }

    // A value at a path, as a type, with a default where there is nothing. Attributes have their
    // names without prefix there.
    int lent = 0;
    for (const TNuDOMElement& book : document->Select("//book")) {
        lent += book.Get("loan:state/@lent", 0);
    }
    std::cout << lent << " are lent\n";

    // Nodes of other kinds.
    for (const TNuDOMNode& label : document->SelectNodes("library/shelf/@label")) {
        std::cout << label.Text() << '\n';
    }
}
