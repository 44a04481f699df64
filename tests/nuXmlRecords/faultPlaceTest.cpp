// Where every way to read a document says that a fault stands.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <string_view>

#include "common/utf8.h"
#include "host/runtime/fileStream.h"
#include "host/runtime/memoryStream.h"
#include "nuObj2Xml.h"
#include "nuXmlDOM.h"
#include "nuXmlRecords.h"
#include "nuXmlSax.h"

namespace {

class TNote : public host::Published<TNote> {
public:
    std::u16string Text;

    static constexpr auto published = host::publish<TNote>(u"TNote", host::prop<&TNote::Text>());
};

struct Way {
    const char* name;
    bool isOfFile;
    std::function<void(const std::filesystem::path& file, std::string_view bytes)> read;
};

/// Reads by a function that takes a stream.
template <class Read> auto ofStream(Read&& read) {
    return [read](const std::filesystem::path&, std::string_view bytes) {
        host::TMemoryViewStream stream(bytes);
        read(stream);
    };
}

const Way ways[] = {
    {"reader", false, ofStream([](host::TStream& stream) {
         TNuSAXXMLReader reader;
         reader.SetConforming({});
         reader.Parse(stream);
     })},
    {"tree of a stream", false, ofStream([](host::TStream& stream) {
         TNuDOMDocument::Create()->LoadFromStream(stream, TNuConformingOptions{});
     })},
    {"new tree of a stream", false, ofStream([](host::TStream& stream) {
         static_cast<void>(NuGetDOMDocument(&stream, false, TNuConformingOptions{}));
     })},
    {"tree of a file", true,
     [](const std::filesystem::path& file, std::string_view) {
         TNuDOMDocument::Create()->LoadFromFile(file, TNuConformingOptions{});
     }},
    {"new tree of a file", true,
     [](const std::filesystem::path& file, std::string_view) {
         static_cast<void>(NuLoadDocument(file));
     }},
    {"new tree of an opened file", true,
     [](const std::filesystem::path& file, std::string_view) {
         static_cast<void>(NuGetDOMDocument(file, host::fmOpenRead, TNuConformingOptions{}));
     }},
    {"tree of UTF-8", false,
     [](const std::filesystem::path&, std::string_view bytes) {
         static_cast<void>(NuParseDocument(bytes));
     }},
    {"tree of UTF-16", false,
     [](const std::filesystem::path&, std::string_view bytes) {
         static_cast<void>(NuCreateDOMDocument(NuFromUtf8(bytes), TNuConformingOptions{}));
     }},
    {"object of a text", false,
     [](const std::filesystem::path&, std::string_view bytes) {
         TNote note;
         NuDeSerializeObject(note, NuFromUtf8(bytes), dsStrict);
     }},
    {"object of a file", true,
     [](const std::filesystem::path& file, std::string_view) {
         TNote note;
         NuLoadObject(file, note, dsStrict);
     }},
    {"objects of a stream", false, ofStream([](host::TStream& stream) {
         nu::ReadObjects<TNote>(
             stream, u"Note", [](std::unique_ptr<TNote>) {}, dsStrict);
     })},
    {"records", false, ofStream([](host::TStream& stream) {
         nu::RecordReader records(stream, u"Text");
         while (records.Next()) {
         }
     })},
};

TEST(FaultPlace, IsTheSameHoweverADocumentIsRead) {
    std::string name = (std::filesystem::temp_directory_path() / "nuxmlPlaceXXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    const std::filesystem::path file = std::filesystem::path(name) / "f.xml";
    const struct {
        std::string_view bytes;
        std::int64_t line, column;
    } rows[] = {
        {"<Note>\n  <Text>a</Txet></Note>", 2, 10},
        {"<Note>\n<Text>\xC3\xA4 &e;</Text></Note>", 2, 9},
        {"<Note>\r\n\r\n <Text x='1'\r\n x='2'>a</Text></Note>", 4, 2},
        {"<Note><Text>a</Text>\n", 2, 1},
    };
    for (const auto& row : rows) {
        std::ofstream(file, std::ios::binary) << row.bytes;
        for (const Way& way : ways) {
            SCOPED_TRACE(std::string(way.name) + ": " + std::string(row.bytes));
            try {
                way.read(file, row.bytes);
                ADD_FAILURE() << "no fault";
            } catch (const ENuXmlFault& fault) {
                EXPECT_EQ(fault.Line(), row.line);
                EXPECT_EQ(fault.Column(), row.column);
                EXPECT_EQ(NuToUtf8(fault.File()), way.isOfFile ? file.string() : "");
                EXPECT_EQ(fault.what(), fault.Text());
                const std::string place =
                    std::to_string(row.line) + ':' + std::to_string(row.column) + ": ";
                EXPECT_EQ(fault.Text(), (way.isOfFile ? file.string() + ':' : "") + place +
                                            NuToUtf8(fault.Message()));
            }
        }
    }
    std::filesystem::remove_all(name);
}

} // namespace
