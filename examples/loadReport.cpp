// Loads a document that is not what it should be, three times, and shows what comes of it.

#include <iostream>

#include "common/utf8.h"
#include "nuXmlDOM.h"

int main() {
    // 1. As XML means it: the first fault ends the loading and says where it is.
    try {
        static_cast<void>(NuLoadDocument("faults.xml"));
    } catch (const ENuXmlFault& fault) {
        std::cout << fault.what() << '\n';
        std::cout << "line " << fault.Line() << " of " << NuToUtf8(fault.File()) << '\n';
    }

    // 2. The same with a report, which has the fault as data.
    TNuLoadReport report;
    const auto document = TNuDOMDocument::Create();
    try {
        document->LoadFromFile("faults.xml", TNuConformingOptions{}, &report);
    } catch (const ENuXmlFault&) {
        std::cout << report.Count() << " fault in column " << report.Fatal()->column << '\n';
    }

    // 3. By the rules of the reader alone, which go on as long as they can.
    document->Clear();
    try {
        document->LoadFromFile("faults.xml", report);
    } catch (const ENuSaxFatalError&) {
        std::cout << NuToUtf8(report.Text());
    }
}
