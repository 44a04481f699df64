// The guide: documents from files, texts and streams.

#include <iostream>

#include "host/runtime/fileStream.h"
#include "nuXmlDOM.h"

int main() {
    // From a file. The handle keeps the document, and the document all its nodes.
    const NuRef<TNuDOMDocument> library = NuLoadDocument("library.xml");
    std::cout << library->get_documentElement()->Name() << '\n';

    // From a text in memory.
    const auto note = NuParseDocument("<note>tea &amp; cake</note>");
    std::cout << note->At("note").Text() << '\n';

    // From any stream, in whatever encoding it says it is.
    host::TFileStream stream("library.xml", host::fmOpenRead);
    const auto copy = TNuDOMDocument::Create();
    copy->LoadFromStream(stream, TNuConformingOptions());
    std::cout << copy->Get("library/@name", "") << '\n';

    // What is no XML throws, with its place.
    try {
        static_cast<void>(NuLoadDocument("faults.xml"));
    } catch (const ENuXmlFault& fault) {
        std::cout << fault.what() << '\n';
    }
}
