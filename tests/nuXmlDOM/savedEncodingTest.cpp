// What a document is saved in, with the C library as the judge of the bytes and libxml2 as a reader
// that knows nothing of this library.

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <iconv.h>

#ifdef NUXML_HAS_LIBXML2
#include <libxml/parser.h>
#include <libxml/tree.h>
#endif

#include "common/codePage.h"
#include "common/memoryStream.h"
#include "common/utf8.h"
#include "host/runtime/exception.h"
#include "nuXmlDOM.h"

namespace {

/// A system whose code page is set for a while.
class SystemCodePage {
public:
    explicit SystemCodePage(std::uint32_t codePage) { NuSetSystemCodePage(codePage); }
    SystemCodePage(const SystemCodePage&) = delete;
    SystemCodePage& operator=(const SystemCodePage&) = delete;
    ~SystemCodePage() { NuSetSystemCodePage(0); }
};

std::string saved(TNuDOMDocument& document) {
    TNuMemoryStream stream;
    document.SaveToStream(stream);
    return {reinterpret_cast<const char*>(stream.Memory()),
            static_cast<std::size_t>(stream.GetSize())};
}

/// A document of that declaration around an element.
NuRef<TNuDOMDocument> documentOf(std::u16string_view declaration, std::u16string_view element) {
    auto document = NuCreateDOMDocument(element);
    document->SetProcessingInstruction(u"xml", declaration);
    return document;
}

/// Without its declaration, in UTF-8, as the C library reads bytes of an encoding; "" where it does
/// not know what they are.
std::string decoded(const std::string& document, const std::string& encoding) {
    const iconv_t converter = ::iconv_open("UTF-8", encoding.c_str());
    std::string bytes = document.substr(document.find("?>") + 2);
    std::string text(bytes.size() * 4, '\0');
    char* from = bytes.data();
    char* to = text.data();
    std::size_t fromLeft = bytes.size();
    std::size_t toLeft = text.size();
    const bool isDone =
        ::iconv(converter, &from, &fromLeft, &to, &toLeft) != static_cast<std::size_t>(-1) &&
        ::iconv(converter, nullptr, nullptr, &to, &toLeft) != static_cast<std::size_t>(-1);
    ::iconv_close(converter);
    text.resize(isDone ? text.size() - toLeft : 0);
    return text;
}

const std::vector<std::string> singleByteNames = {
    "IBM437",       "CP737",        "CP775",        "IBM850",       "IBM852",       "IBM855",
    "IBM857",       "CP858",        "IBM860",       "IBM861",       "IBM862",       "IBM863",
    "IBM865",       "IBM866",       "IBM869",       "windows-874",  "windows-1250", "windows-1251",
    "windows-1252", "windows-1253", "windows-1254", "windows-1255", "windows-1256", "windows-1257",
    "windows-1258", "US-ASCII",     "KOI8-R",       "KOI8-U",       "ISO-8859-1",   "ISO-8859-2",
    "iso-8859-3",   "ISO-8859-4",   "ISO-8859-5",   "ISO-8859-6",   "ISO-8859-7",   "ISO-8859-8",
    "ISO-8859-9",   "ISO-8859-10",  "ISO-8859-11",  "ISO-8859-13",  "ISO-8859-14",  "ISO-8859-15",
    "ISO-8859-16",  "latin1",       "TIS-620",      "EUC-JP",       "GB18030",      "UTF8"};

TEST(SavedEncoding, IsWhatTheDeclarationSaysForEveryCharacterOfEveryPage) {
    const SystemCodePage system(cNuCodePageUtf8);
    for (const std::string& name : singleByteNames) {
        SCOPED_TRACE(name);
        // 1. Every character of the page, and some that no page has. Apart, because some libraries
        // join letters with what stands above them.
        const std::uint32_t page = NuFindCodePage(name);
        std::u16string text = u"\u20AC,\U0001F600,\u3042,\u0416";
        for (int byte = 0x80; byte < 0x100 && page != cNuCodePageUtf8; ++byte) {
            const std::string single(1, static_cast<char>(byte));
            const std::u16string unit = NuAnsiStringToWideString(single, page != 0 ? page : 1252);
            text += unit == u"\uFFFD" ? u"" : u"," + unit;
        }
        const auto document =
            documentOf(u"version='1.0' encoding='" + NuFromUtf8(name) + u"'",
                       u"<a b=\"" + text + u"\">" + text + u"<![CDATA[" + text + u"]]></a>");
        const std::string bytes = saved(*document);

        // 2. The bytes are of that encoding, and nothing is a reference that it has.
        const std::string inUtf8 = decoded(bytes, name);
        ASSERT_FALSE(inUtf8.empty());
        const auto again = NuCreateDOMDocument(NuFromUtf8(inUtf8));
        for (const std::size_t missing : {std::size_t{0}, text.find(u'\u0416')}) {
            std::size_t lost = 0;
            const std::u16string_view unit = std::u16string_view(text).substr(missing, 1);
            NuWideStringToAnsiString(unit, page != 0 ? page : 20127, lost);
            EXPECT_EQ(inUtf8.find(NuToUtf8(unit)) == inUtf8.npos, lost > 0 || name == "TIS-620");
        }
#ifdef NUXML_HAS_LIBXML2
        // 3. Another reader finds the same content.
        xmlDoc* const read = xmlReadMemory(bytes.data(), static_cast<int>(bytes.size()), nullptr,
                                           nullptr, XML_PARSE_NONET);
        ASSERT_NE(read, nullptr);
        xmlNode* const root = xmlDocGetRootElement(read);
        xmlChar* const content = xmlNodeGetContent(root);
        xmlChar* const value = xmlGetProp(root, BAD_CAST "b");
        EXPECT_EQ(reinterpret_cast<const char*>(content), NuToUtf8(text + text));
        EXPECT_EQ(reinterpret_cast<const char*>(value), NuToUtf8(text));
        xmlFree(content);
        xmlFree(value);
        xmlFreeDoc(read);
#endif
    }
}

TEST(SavedEncoding, WritesWhatAPageLacksWhereThereIsAWay) {
    struct Row {
        std::uint32_t system;
        std::u16string_view declaration;
        std::u16string_view element;
        std::string_view bytes; ///< behind the declaration; "" where it throws
    };
    const std::u16string_view latin = u"encoding=\"ISO-8859-1\"";
    const Row rows[] = {
        {65001, latin, u"<a b=\"\u0416\u00E9\">\u00E9\u0416</a>",
         "<a b=\"&#1046;\xE9\">\xE9&#1046;</a>"},
        {65001, latin, u"<a><![CDATA[\u00E9\u0416\u0416<]]></a>",
         "<a><![CDATA[\xE9]]>&#1046;<![CDATA[]]>&#1046;<![CDATA[<]]></a>"},
        {65001, latin, u"<a><!--\u00E9\u0416\U0001F600--></a>", "<a><!--\xE9?\?--></a>"},
        {65001, latin, u"<\u00E9 \u00E8=\"1\"><?\u00EB \u00E9?></\u00E9>",
         "<\xE9 \xE8=\"1\"><?\xEB \xE9?></\xE9>"},
        {65001, latin, u"<\u0416/>", ""},
        {65001, latin, u"<a \u0416=\"1\"/>", ""},
        {65001, latin, u"<a><?\u0416 x?></a>", ""},
        {65001, latin, u"<a><?x \u0416?></a>", ""},
        // A control code is no byte of a Windows page, half of a character is none at all.
        {65001, u"encoding=\"windows-1252\"", u"<a>\u0081\u20AC</a>", "<a>&#129;\x80</a>"},
        {65001, latin, u"<a>\u0081\xD83D-</a>", "<a>\x81&#65533;-</a>"},
        // Words that only look like the name.
        {65001, u"x=\"encoding\" encoding = \"latin1\"", u"<a>\u00E9</a>", "<a>\xE9</a>"},
        {65001, u"encoding", u"<a>\u00E9</a>", "<a>\xC3\xA9</a>"},
        {65001, u"encoding=\"x-none\"", u"<a>\u00E9</a>", "<a>&#233;</a>"},
        {65001, u"encoding=\"UTF-16LE\"", u"<a>\u00E9</a>", "<a>\xC3\xA9</a>"},
        // A system with a page of its own has that, whatever stands there.
        {1252, u"encoding='utf-8'", u"<a>\u00E9\u0416</a>", "<a>\xE9&#1046;</a>"},
        {1251, latin, u"<a>\u00E9\u0416</a>", "<a>&#233;\xC6</a>"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(NuToUtf8(row.declaration) + NuToUtf8(row.element));
        const SystemCodePage system(row.system);
        const auto document = documentOf(row.declaration, row.element);
        if (row.bytes.empty()) {
            EXPECT_THROW(static_cast<void>(saved(*document)), host::EConvertError);
            document->SetEncoding(u"UTF-8");
            EXPECT_EQ(document->GetEncoding(), u"utf-8");
            EXPECT_NO_THROW(static_cast<void>(saved(*document)));
            continue;
        }
        const std::string bytes = saved(*document);
        EXPECT_EQ(bytes.substr(bytes.find("?>") + 2), row.bytes);
    }
}

TEST(SavedEncoding, IsPutIntoTheDeclaration) {
    const std::u16string_view rows[][2] = {
        {u"version='1.0' encoding = 'x' standalone='yes'",
         u"version='1.0' encoding = \"koi8-r\" standalone='yes'"},
        {u"version=\"1.0\" standalone=\"no\"",
         u"version=\"1.0\" encoding=\"koi8-r\" standalone=\"no\""},
        {u"broken", u"version=\"1.0\" encoding=\"koi8-r\""},
        {u"", u"version=\"1.0\" encoding=\"koi8-r\""},
    };
    for (const auto& [before, after] : rows) {
        const auto document = NuCreateDOMDocument(u"<a/>");
        if (!before.empty()) {
            document->SetProcessingInstruction(u"xml", before);
        }
        document->SetEncoding(u"koi8-r");
        EXPECT_EQ(document->GetProcessingInstruction(u"xml"), after);
        EXPECT_EQ(document->GetEncoding(), u"koi8-r");
    }
}

} // namespace
