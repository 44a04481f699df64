// The guide: other values, new nodes, other places.

#include <iostream>

#include "nuXmlDOM.h"

int main() {
    const auto document =
        NuParseDocument("<config><server><port>80</port></server><old/><log/></config>");
    TNuDOMElement& config = document->At("config");

    // Values. What means something in XML is escaped where it is written, and what is missing on
    // the way is made.
    config.Set("server/port", 8080);
    config.Set("server/@name", "\"a\" & b");
    config.Set("server/limits/users", 10);

    // New elements: at the end, or at a place.
    config.AddElement("note").set_text("all < nothing");
    config.InsertElement("first", rdpFirst, nullptr);

    // Away with one, another name for one, a new place for one, a copy of one.
    config.RemoveElement("old");
    config.At("note").Rename("remark");
    config.At("server").appendChild(config.At("log"));
    config.AddCopy(config.At("server/limits"));

    std::cout << config.FormattedXml() << '\n';
}
