// The guide: documents into files, streams and texts.

#include <filesystem>
#include <iostream>

#include "host/runtime/memoryStream.h"
#include "nuXmlDOM.h"

int main() {
    // A document from nothing.
    const auto document = TNuDOMDocument::Create();
    document->SetEncoding("UTF-8");
    TNuDOMElement& list = document->CreateRootNode("list");
    for (const char* name : {"Ada", "Émilie", "<Grace>"}) {
        list.AddElement("name").set_text(name);
    }

    // Into a file, with line breaks. Whoever looks finds the old file or the new one.
    const auto file = std::filesystem::temp_directory_path() / "nuxml-guide-write.xml";
    document->SaveToFile(file, true);
    std::cout << NuLoadDocument(file)->At("list") << '\n';
    std::filesystem::remove(file);

    // Into a stream, as the options say.
    host::TMemoryStream stream;
    TNuSaveOptions options;
    options.formatted = true;
    options.indentation = 4;
    document->SaveToStream(stream, options);
    std::cout.write(reinterpret_cast<const char*>(stream.Memory()), stream.GetSize()) << '\n';
}
