// Counts the elements of a file.

#include <iostream>

#include "nuXmlSax.h"

int main(int argumentCount, char** arguments) try {
    std::size_t count = 0;
    TNuSAXXMLReader reader;
    reader.SetConforming({}); // documents as XML means them, and a place for each fault
    reader.OnStartElement = [&](auto&&...) { ++count; };
    reader.ParseFile(argumentCount > 1 ? arguments[1] : "library.xml");
    std::cout << count << " elements\n";
} catch (const ENuXmlFault& fault) {
    std::cerr << fault.what() << '\n';
    return 1;
}
