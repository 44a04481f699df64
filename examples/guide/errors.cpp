// The guide: what goes wrong, and how programs hear of it.

#include <iostream>

#include "nuXmlDOM.h"

int main() {
    // Not well-formed: the place is there as data, too.
    try {
        static_cast<void>(NuLoadDocument("faults.xml"));
    } catch (const ENuXmlFault& fault) {
        std::cout << "line " << fault.Line() << ": " << fault.what() << '\n';
    }

    // No such file.
    try {
        static_cast<void>(NuLoadDocument("missing.xml"));
    } catch (const host::EStreamError& error) {
        std::cout << error.what() << '\n';
    }

    // Nothing at a path is a fault only for who says so.
    const auto document = NuLoadDocument("library.xml");
    std::cout << std::boolalpha << (document->Find("library/cellar") == nullptr) << '\n';
    try {
        static_cast<void>(document->At("library/cellar"));
    } catch (const ENuDomException& error) {
        std::cout << error.what() << '\n';
    }

    // A value that is none of its type.
    try {
        static_cast<void>(document->Get("library/@name", 0));
    } catch (const host::EConvertError& error) {
        std::cout << error.what() << '\n';
    }
}
