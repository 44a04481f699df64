#include "nuXmlDOM.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "common/codePage.h"
#include "common/memoryStream.h"
#include "common/utf8.h"
#include "host/com/streamAdapter.h"
#include "host/runtime/fileStream.h"
#include "nuXmlDOM/core/nodeKinds.h"
#include "nuXmlDOM/core/nodeLinks.h"
#include "nuXmlDOM/load/loading.h"
#include "nuXmlDOM/write/formatting.h"
#include "support/oddStream.h"

namespace {

namespace fs = std::filesystem;

const std::string mark8 = "\xEF\xBB\xBF";
const std::string mark16 = "\xFF\xFE";

std::string bytesOf(const host::TMemoryStream& stream, std::int64_t size) {
    return {reinterpret_cast<const char*>(stream.Memory()), static_cast<std::size_t>(size)};
}

/// What `save` makes of a stream that holds `former` and stands at its end.
template <class Save> std::string savedBehind(std::string_view former, Save&& save) {
    TNuMemoryStream stream{former};
    stream.Seek(0, host::SeekOrigin::End);
    save(stream);
    return bytesOf(stream, stream.GetSize());
}

std::string saved(TNuDOMDocument& document, bool formatted, bool marked) {
    return savedBehind("", [&](auto& stream) { document.SaveToStream(stream, formatted, marked); });
}

struct Case {
    std::u16string_view xml;
    std::u16string_view plain;
    std::u16string_view formatted;
};

const Case cases[] = {
    {u"<a></a>", u"<a/>", u"<a/>"},
    {u"<a>text</a>", u"<a>text</a>", u"<a>text</a>"},
    {u"<a> <b> <c/> </b> <d/> </a>", u"<a><b><c/></b><d/></a>",
     u"<a>\r\n  <b>\r\n    <c/>\r\n  </b>\r\n  <d/>\r\n</a>"},
    {u"<p:a x=\"1\" xmlns:p=\"u\" y=\"&lt;&#38;'\">&lt;&#233;</p:a>",
     u"<p:a x=\"1\" xmlns:p=\"u\" y=\"&lt;&amp;&apos;\">&lt;&#233;</p:a>",
     u"<p:a x=\"1\" xmlns:p=\"u\" y=\"&lt;&amp;&apos;\">&lt;&#233;</p:a>"},
    // Text is neither broken nor indented.
    {u"<a>t<b/>u</a>", u"<a>t<b/>u</a>", u"<a>t\r\n  <b/>u\r\n</a>"},
    // Only elements bring the end tag onto a line of its own.
    {u"<a><!--d--><?e f?></a>", u"<a><!--d--><?e f?></a>", u"<a>\r\n  <!--d-->\r\n  <?e f?></a>"},
    {u"<a><b/><!--d--></a>", u"<a><b/><!--d--></a>", u"<a>\r\n  <b/>\r\n  <!--d-->\r\n</a>"},
    {u"<a><![CDATA[<]]></a>", u"<a><![CDATA[<]]></a>", u"<a>\r\n  <![CDATA[<]]>\r\n</a>"},
    {u"<a><b><![CDATA[x]]><c/></b></a>", u"<a><b><![CDATA[x]]><c/></b></a>",
     u"<a>\r\n  <b>\r\n    <![CDATA[x]]>\r\n  \r\n    <c/>\r\n  </b>\r\n</a>"},
    // The prolog is not indented, and a comment begins a line even first of all.
    {u"<?xml version=\"1.0\"?><!--c--><?p ?><a/>", u"<?xml version=\"1.0\"?><!--c--><?p ?><a/>",
     u"<?xml version=\"1.0\"?>\r\n<!--c-->\r\n<?p ?>\r\n<a/>"},
    {u"<!--c--><a/>", u"<!--c--><a/>", u"\r\n<!--c-->\r\n<a/>"},
    // Preserved space: an element is put on a line by what it says itself, a CDATA section by what
    // its parent says, a comment always.
    {u"<a><b xml:space=\"preserve\"><c/><![CDATA[x]]></b><d/></a>",
     u"<a><b xml:space=\"preserve\"><c/><![CDATA[x]]></b><d/></a>",
     u"<a><b xml:space=\"preserve\"><c/><![CDATA[x]]></b>\r\n  <d/>\r\n</a>"},
    {u"<a xml:space=\"preserve\"><!--c--><?p q?><b xml:space=\"default\"><c/></b><d/></a>",
     u"<a xml:space=\"preserve\"><!--c--><?p q?><b xml:space=\"default\"><c/></b><d/></a>",
     u"<a xml:space=\"preserve\">\r\n<!--c-->\r\n<?p q?>\r\n  <b xml:space=\"default\">\r\n    "
     u"<c/>\r\n  </b><d/></a>"},
    {u"<a xml:space=\"pReserve\"><b/></a>", u"<a xml:space=\"pReserve\"><b/></a>",
     u"<a xml:space=\"pReserve\"><b/></a>"},
};

TEST(Writer, WritesDocumentsPlainAndFormatted) {
    for (const Case& expected : cases) {
        SCOPED_TRACE(NuToUtf8(expected.xml));
        const auto document = NuCreateDOMDocument(expected.xml);
        EXPECT_EQ(document->get_xml(), expected.plain);
        EXPECT_EQ(document->get_formattedXml(), expected.formatted);
        EXPECT_EQ(document->get_innerxml(), expected.plain);
        EXPECT_EQ(NuGetFormattedXML(expected.xml), expected.formatted);
        EXPECT_EQ(NuGetFormattedXML(document.as<host::IDOMDocument>().get()), expected.formatted);
        // The form in UTF-8 has a writer of its own.
        document->SetProcessingInstruction(u"xml", u"encoding=\"utf-8\"");
        EXPECT_EQ(saved(*document, false, false), NuToUtf8(document->get_xml()));
        EXPECT_EQ(saved(*document, true, false), NuToUtf8(document->get_formattedXml()));
        EXPECT_EQ(saved(*document, true, true), mark8 + NuToUtf8(document->get_formattedXml()));
    }
    EXPECT_THROW((void)NuGetFormattedXML(nullptr), host::EInvalidPointer);
}

TEST(Writer, WritesNodesByThemselves) {
    const auto document =
        NuCreateDOMDocument(u"<a><b k=\"v\"><!--x--><?p q?>t<![CDATA[y]]><c><d/></c><e/></b></a>");
    TNuDOMElement& b = *document->GetRootNode()->FirstChildElement();
    const auto formattedChild = [&](int index) {
        TNuDOMNode* node = b.get_firstChild();
        for (; index > 0; --index) {
            node = nu::NodeLinks::next(*node);
        }
        return node->get_formattedXml();
    };
    EXPECT_EQ(b.get_firstChild()->get_xml(), u"<!--x-->");
    EXPECT_EQ(b.getAttributeNode(u"k")->get_formattedXml(), u" k=\"v\"");
    // What is no element is indented as if all around it was there.
    EXPECT_EQ(formattedChild(0), u"\r\n    <!--x-->");
    EXPECT_EQ(formattedChild(1), u"<?p q?>");
    EXPECT_EQ(formattedChild(2), u"t");
    EXPECT_EQ(formattedChild(3), u"\r\n    <![CDATA[y]]>\r\n  ");
    EXPECT_EQ(formattedChild(4), u"<c>\r\n  <d/>\r\n</c>");
    EXPECT_EQ(b.get_innerxml(), u"<c><d/></c><e/>");
    EXPECT_EQ(b.get_formattedInnerXml(), u"<c>\r\n  <d/>\r\n</c>\r\n<e/>");

    // The level that is not indented can be chosen.
    const auto withLevel = [](TNuDOMNode& node, std::int32_t level) {
        const std::string bytes =
            savedBehind("", [&](auto& stream) { node._SaveToStream(stream, true, level); });
        return std::u16string(reinterpret_cast<const char16_t*>(bytes.data()), bytes.size() / 2);
    };
    EXPECT_EQ(withLevel(*b.FirstChildElement(), 1), u"  <c>\r\n    <d/>\r\n  </c>");
    EXPECT_EQ(withLevel(*b.FirstChildElement(), 3), u"<c>\r\n<d/>\r\n</c>");
    EXPECT_EQ(withLevel(*b.get_firstChild(), 1), u"\r\n  <!--x-->");
    EXPECT_EQ(withLevel(*document, -1), u"  <a>\r\n    <b k=\"v\">\r\n      <!--x-->\r\n      "
                                        u"<?p q?>t\r\n      <![CDATA[y]]>\r\n    \r\n      <c>"
                                        u"\r\n        <d/>\r\n      </c>\r\n      <e/>\r\n    "
                                        u"</b>\r\n  </a>");

    const auto section = document->createCDATASection(u"z");
    EXPECT_EQ(section->get_xml(), u"<![CDATA[z]]>");
    TNuMemoryStream untouched;
    EXPECT_THROW(section->_SaveToStream(untouched, true), host::EInvalidCast);
    EXPECT_EQ(untouched.GetSize(), 0);
    const auto element = document->createElement(u"n");
    element->set_text(u"x");
    static_cast<TNuDOMText&>(*element->get_firstChild()).set_data(u"");
    EXPECT_EQ(element->get_xml(), u"<n></n>");
}

struct Start {
    std::u16string_view xml;
    std::string former;
    std::string_view between; ///< what is written before the document, in ASCII
};

TEST(Writer, BeginsALineBehindWhatIsThere) {
    const Start starts[] = {
        {u"<a/>", "", ""},         {u"<a/>", mark16, ""},
        {u"<a/>", "ab", "\r\n"},   {u"<a/>", "a", "\r\n"},
        {u"<a/>", "abc", "\r\n"},  {u"<?p q?>", "abcd", ""},
        {u"<?p q?>", mark16, ""},  {u"<?p q?>", "abcde", "\r\n"},
        {u"<!--c-->", "", "\r\n"}, {u"<a xml:space=\"preserve\"/>", "abc", ""},
    };
    for (const Start& start : starts) {
        SCOPED_TRACE(NuToUtf8(start.xml) + " behind " + start.former);
        const auto document = NuCreateDOMDocument(start.xml);
        const std::u16string text = NuFromUtf8(start.between) + std::u16string(start.xml);
        EXPECT_EQ(
            savedBehind(start.former, [&](auto& stream) { document->_SaveToStream(stream, true); }),
            start.former + support::utf16Bytes(text));
        // Other encodings are written as if nothing was there.
        EXPECT_EQ(savedBehind(start.former,
                              [&](auto& stream) { document->SaveToStream(stream, true, true); }),
                  start.former + NuToUtf8(document->get_formattedXml()));
    }
    // Instructions look at the size, elements at the position.
    for (const std::u16string_view xml : {u"<?p q?>", u"<a/>"}) {
        TNuMemoryStream stream{"abcdefgh"};
        NuCreateDOMDocument(xml)->_SaveToStream(stream, true);
        EXPECT_EQ(bytesOf(stream, 2),
                  xml == u"<a/>" ? std::string("<\0", 2) : std::string("\r\0", 2));
    }
}

TEST(Writer, TakesTheEncodingFromTheDeclaration) {
    const std::pair<std::u16string_view, std::u16string_view> declarations[] = {
        {u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>", u"utf-8"},
        {u"<?XML ENCODING = \"Ucs-2\"?>", u"ucs-2"},
        {u"<!--c--><?p encoding=\"a\"?><?xml encoding=\"b\"?>", u"b"},
        {u"<?xml version=\"1.0\"?>", u""},
        {u"", u""},
        {u"<?xml encoding='UTF-8'?>", u""},
        {u"<?xml encoding='UTF-8' standalone=\"yes\"?>", u"yes"},
        {u"<?xml x=\"encoding\" encoding=\"utf-8\"?>", u" encoding="},
        {u"<?xml encoding=\"utf-8?>", u""},
    };
    for (const auto& [prolog, encoding] : declarations) {
        SCOPED_TRACE(NuToUtf8(prolog));
        const auto document = TNuDOMDocument::Create();
        document->CreateRootNode(u"a");
        for (std::size_t at = prolog.find(u"<?"); at != prolog.npos;
             at = prolog.find(u"<?", at + 1)) {
            const std::size_t blank = prolog.find(u' ', at);
            document->AddProcessingInstruction(
                prolog.substr(at + 2, blank - at - 2),
                prolog.substr(blank + 1, prolog.find(u"?>", at) - blank - 1));
        }
        EXPECT_EQ(document->GetEncoding(), encoding);
    }
}

class SystemCodePage {
public:
    explicit SystemCodePage(std::uint32_t codePage) { NuSetSystemCodePage(codePage); }
    ~SystemCodePage() { NuSetSystemCodePage(0); }
};

TEST(Writer, SavesInTheEncodingOfTheDeclaration) {
    const SystemCodePage latin(1252);
    const auto save = [](std::u16string_view encoding, bool marked) {
        const auto document = NuCreateDOMDocument(u"<a>\u00E9\u20AC\U0001F600</a>");
        document->SetProcessingInstruction(u"xml", encoding);
        std::string bytes = saved(*document, false, marked);
        const std::string head = "<?xml " + NuToUtf8(encoding) + "?>";
        const std::string head16 = support::utf16Bytes(NuFromUtf8(head));
        for (const std::string& start : {head, head16}) {
            const std::size_t place = bytes.find(start);
            if (place != bytes.npos) {
                bytes.erase(place, start.size());
            }
        }
        return bytes;
    };
    const std::string inUtf8 = "<a>\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80</a>";
    const std::string inUtf16 = support::utf16Bytes(u"<a>\u00E9\u20AC\U0001F600</a>");
    const std::string in1252 = "<a>\xE9\x80&#128512;</a>";
    EXPECT_EQ(save(u"encoding=\"utf-8\"", false), inUtf8);
    EXPECT_EQ(save(u"encoding=\"UTF-8\"", true), mark8 + inUtf8);
    EXPECT_EQ(save(u"encoding=\"UTF-16\"", false), inUtf16);
    EXPECT_EQ(save(u"encoding=\"utf-16\"", true), mark16 + inUtf16);
    EXPECT_EQ(save(u"encoding=\"ISO-10646-UCS-2\"", true), mark16 + inUtf16);
    for (const auto* other : {u"encoding=\"UTF-16LE\"", u"encoding=\"utf8\"", u"version=\"1.0\"",
                              u"encoding=\"ISO-8859-1\""}) {
        EXPECT_EQ(save(other, true), in1252);
    }
    NuSetSystemCodePage(cNuCodePageUtf8);
    EXPECT_EQ(save(u"version=\"1.0\"", true), inUtf8);
    // However little stands before an element.
    const auto nameless = NuCreateDOMDocument(u"<p:><b/></p:>");
    nameless->GetRootNode()->set_prefix(u"");
    EXPECT_EQ(saved(*nameless, true, false), "<>\r\n  <b/>\r\n</>");
}

TEST(Writer, JoinsHalvesOfCharactersInUtf8) {
    const auto document = NuCreateDOMDocument(u"<?xml encoding=\"utf-8\"?><a/>");
    TNuDOMElement& root = *document->GetRootNode();
    const auto textsAre = [&](std::initializer_list<std::u16string_view> texts) {
        root.set_text(u"");
        for (const std::u16string_view text : texts) {
            root.appendChild(*document->createTextNode(text));
        }
        const std::string bytes = saved(*document, false, false);
        const std::size_t start = bytes.find("<a>") + 3;
        return bytes.substr(start, bytes.find("</a>") - start);
    };
    const std::u16string_view pair = u"\U0001F600";
    const std::u16string_view first = pair.substr(0, 1);
    const std::u16string_view second = pair.substr(1);
    EXPECT_EQ(textsAre({first, second}), "\xF0\x9F\x98\x80");
    EXPECT_EQ(textsAre({first, u"", second, second}), "\xF0\x9F\x98\x80\xEF\xBF\xBD");
    EXPECT_EQ(textsAre({first, u"x", second}), "\xEF\xBF\xBDx\xEF\xBF\xBD");
    EXPECT_EQ(textsAre({first, first}), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(Writer, PutsTextsOfAnyLengthThroughItsBlocks) {
    // Lengths around the blocks of both forms, with names, attributes and texts across their ends.
    for (const std::size_t length : {21843U, 21846U, 32767U, 65500U, 65536U, 200001U}) {
        for (const std::u16string_view unit : {u"x", u"\u20AC", u"\U0001F600"}) {
            std::u16string text = u"-";
            while (text.size() < length) {
                text += unit;
            }
            const auto document = NuCreateDOMDocument(u"<?xml encoding=\"utf-8\"?><a/>");
            TNuDOMElement& root = *document->GetRootNode();
            root.AddElement(u"n" + text).setAttribute(u"b", text);
            root.AddComment(u"c").appendData(text);
            root.FirstChildElement()->set_text(text);
            const std::u16string name = u"n" + text;
            const std::u16string expected = u"<?xml encoding=\"utf-8\"?><a><" + name + u" b=\"" +
                                            text + u"\">" + text + u"</" + name + u"><!--c" + text +
                                            u"--></a>";
            EXPECT_TRUE(document->get_xml() == expected) << length;
            EXPECT_TRUE(saved(*document, false, false) == NuToUtf8(expected)) << length;
        }
    }
}

TEST(Writer, WritesADeepDocumentInASmallStack) {
    const std::size_t depth = 1'000'000;
    const auto document = NuCreateDOMDocument(u"<a xml:space=\"preserve\"/>");
    TNuDOMElement* element = document->GetRootNode();
    for (std::size_t level = 1; level < depth; ++level) {
        element = &element->AddElement(u"b");
    }
    const NuXmlString plain = document->get_xml();
    EXPECT_EQ(plain.size(), depth * 7 + 18);
    EXPECT_TRUE(document->get_formattedXml() == plain);
}

/// A stream that takes `room` bytes and then less than it is given.
class NarrowStream final : public host::TStream {
public:
    explicit NarrowStream(std::size_t room) : room_(room) {}
    std::size_t Read(void*, std::size_t) override { return 0; }
    std::size_t Write(const void*, std::size_t count) override {
        const std::size_t taken = std::min(count, room_);
        room_ -= taken;
        return taken;
    }
    std::int64_t Seek(std::int64_t, host::SeekOrigin) override { return 0; }

private:
    std::size_t room_;
};

TEST(Writer, TellsWhenAStreamTakesLess) {
    const auto document = NuCreateDOMDocument(u"<?xml version=\"1.0\"?><a/>");
    for (const std::uint32_t codePage : {1252U, cNuCodePageUtf8}) {
        const SystemCodePage system(codePage);
        NarrowStream enough(25);
        EXPECT_NO_THROW(document->SaveToStream(enough));
        NarrowStream narrow(24);
        try {
            document->SaveToStream(narrow);
            ADD_FAILURE() << "nothing is thrown";
        } catch (const host::Exception& error) {
            EXPECT_TRUE(typeid(error) == typeid(host::Exception));
            EXPECT_EQ(error.Message(), u"Failed to write all the data!");
        }
    }
    for (const auto* encoding : {u"encoding=\"utf-8\"", u"encoding=\"utf-16\""}) {
        document->SetProcessingInstruction(u"xml", encoding);
        NarrowStream narrow(24);
        EXPECT_THROW(document->SaveToStream(narrow), host::EWriteError);
    }
    TNuMemoryStream stream;
    document->SaveToStream(host::makeStreamInterface(stream).get());
    EXPECT_EQ(bytesOf(stream, stream.GetSize()), saved(*document, false, false));
}

class WriterFiles : public testing::Test {
protected:
    void SetUp() override {
        std::string name = (fs::temp_directory_path() / "nuxmlWriterXXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder = name;
    }
    void TearDown() override { fs::remove_all(folder); }

    [[nodiscard]] static std::string contentOf(const fs::path& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    static void makeFile(const fs::path& path, std::string_view content) {
        std::ofstream(path, std::ios::binary) << content;
    }
    [[nodiscard]] std::size_t fileCount() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
    }

    fs::path folder;
};

TEST_F(WriterFiles, BeginWithOneMark) {
    const auto document = NuCreateDOMDocument(u"<?xml encoding=\"utf-8\"?><a/>");
    const std::string text = "<?xml encoding=\"utf-8\"?><a/>";
    document->save((folder / "plain").u16string());
    EXPECT_EQ(contentOf(folder / "plain"), mark8 + text);
    document->SetProcessingInstruction(u"xml", u"encoding=\"ucs-2\"");
    const std::string plain = support::utf16Bytes(u"<?xml encoding=\"ucs-2\"?><a/>");
    const std::string formatted = support::utf16Bytes(u"<?xml encoding=\"ucs-2\"?>\r\n<a/>");
    document->SaveToFile(folder / "plain", false);
    EXPECT_EQ(contentOf(folder / "plain"), mark16 + plain);
    document->SaveToFile(folder / "formatted", true);
    EXPECT_EQ(contentOf(folder / "formatted"), mark16 + formatted);
    // Also by itself, but only at the start.
    {
        host::TFileStream file(folder / "twice", host::fmCreate);
        document->SaveToStream(file, true, false);
        document->SaveToStream(file, false, false);
    }
    EXPECT_EQ(contentOf(folder / "twice"), mark16 + formatted + plain);
    EXPECT_EQ(fileCount(), 3U);
}

TEST_F(WriterFiles, StayAsTheyWereWhenSavingFails) {
    const auto document = NuCreateDOMDocument(u"<?xml encoding=\"utf-8\"?><a/>");
    makeFile(folder / "old", "former");
    EXPECT_THROW(document->SaveToFile(folder / "old" / "new", false), host::EFileOpenError);
    EXPECT_THROW(document->SaveToFile(folder, false), host::EFileOpenError);
    EXPECT_THROW(document->save(std::u16string_view(u"old\0x", 5)), host::EFileOpenError);
    EXPECT_EQ(contentOf(folder / "old"), "former");
    EXPECT_EQ(fileCount(), 1U);
}

TEST(PreserveSpace, IsSaidByTheNearestElement) {
    const auto document = NuCreateDOMDocument(
        u"<a xml:space=\"Preserve\"><b><c xml:space=\"default\"><d/></c></b></a>");
    TNuDOMElement& a = *document->GetRootNode();
    TNuDOMElement& b = *a.FirstChildElement();
    TNuDOMElement& c = *b.FirstChildElement();
    EXPECT_TRUE(a.GetPreserveSpace() && b.GetPreserveSpace());
    EXPECT_FALSE(c.GetPreserveSpace() || c.FirstChildElement()->GetPreserveSpace());
    a.SetPreseveSpace(false);
    c.SetPreseveSpace(true);
    EXPECT_EQ(a.get_xml(),
              u"<a xml:space=\"default\"><b><c xml:space=\"preserve\"><d/></c></b></a>");
    EXPECT_FALSE(b.GetPreserveSpace());
    EXPECT_TRUE(c.FirstChildElement()->GetPreserveSpace());
    EXPECT_FALSE(document->createElement(u"n")->GetPreserveSpace());
}

} // namespace
