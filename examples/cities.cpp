// Makes a document of what a program knows.

#include <iostream>

#include "nuXmlDOM.h"

struct City {
    std::string name;
    int people;
    double height;
};

int main() {
    const City cities[] = {{"Zürich", 447082, 408.5}, {"東京", 14187176, 40}, {"A & B", 2, -1.25}};
    const auto document = TNuDOMDocument::Create();
    TNuDOMElement& list = document->CreateRootNode("cities");
    for (const City& city : cities) {
        TNuDOMElement& element = list.AddElement("city");
        element.setAttribute("people", city.people);
        element.setAttribute("height", city.height);
        element.set_text(city.name);
    }
    std::cout << *document << '\n';
}
