// Counts the elements of a file.

#include <iostream>

#include "nuXmlSax.h"

int main(int argumentCount, char** arguments) {
    std::size_t count = 0;
    TNuSAXXMLReader reader;
    reader.OnStartElement = [&](auto&&...) { ++count; };
    reader.ParseFile(argumentCount > 1 ? arguments[1] : "library.xml");
    std::cout << count << " elements\n";
}
