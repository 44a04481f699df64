// The records of a document of any size, one at a time: as a tree, as XML that stands alone, as a
// line of JSON, as a row; and by two workers, of which each reads its share.

#include <filesystem>
#include <iostream>
#include <string>

#include "host/runtime/exception.h"
#include "host/runtime/fileStream.h"
#include "nuXmlDOM.h"
#include "nuXmlRecords.h"

namespace {

void showBooks(host::TStream& stream) {
    nu::RecordReader records(stream, u"library/shelf/book");
    const nu::RecordColumns columns(u"@id,title");
    while (records.Next()) {
        std::string text = "line " + std::to_string(records.Line()) + ": ";
        records.AppendRow(text, columns, nu::RowForm::Csv);
        records.AppendJson(text);
        const auto count = records.Document().GetRootNode()->get_childElements().Count();
        text += '\n' + std::to_string(count) + " elements, " +
                std::to_string(records.Xml().size()) + " bytes alone\n";
        std::cout << text;
    }
}

/// Each worker may be another process, on another machine.
void countByParts(host::TStream& file) {
    const nu::RecordIndex index = nu::RecordIndex::Build(file, 0, 200);
    for (const int number : {0, 1}) {
        nu::RecordReader part(file, u"//book", index, index.Share(number, 2));
        while (part.Next()) {
        }
        std::cout << "part " << number + 1 << ": " << part.Number() << " books\n";
    }
}

} // namespace

int main() {
    try {
        host::TFileStream file(std::filesystem::path("library.xml"), host::fmOpenRead);
        showBooks(file);
        countByParts(file);
    } catch (const host::Exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
