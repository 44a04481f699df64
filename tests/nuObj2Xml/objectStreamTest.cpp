// Objects in files, streams and trees: the entry functions, and many objects one by one.

#include "nuObj2Xml/objectStream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "common/utf8.h"
#include "host/runtime/exception.h"
#include "host/runtime/fileStream.h"
#include "host/runtime/memoryStream.h"
#include "nuObj2Xml.h"
#include "nuXmlDOM.h"
#include "nuXmlParser/escape.h"

namespace {

class TPart : public host::Published<TPart> {
public:
    std::u16string Text;
    std::unique_ptr<TPart> Inner;
    static constexpr auto published =
        host::publish<TPart>(u"TPart", host::prop<&TPart::Text>(), host::prop<&TPart::Inner>());
};
class TBigPart : public host::Published<TBigPart, TPart> {
public:
    host::TDateTime Day;
    static constexpr auto published =
        host::publish<TBigPart>(u"TBigPart", host::prop<&TBigPart::Day>());
};
const bool isRegistered = host::RegisterClass(host::classOf<TBigPart>);

struct Point {
    std::int32_t x = 0;
};

} // namespace

template <>
inline constexpr auto host::describe<Point> = host::publish<Point>(u"TPoint",
                                                                   host::prop<&Point::x>());

namespace {

std::string bytesOf(host::TMemoryStream& stream) {
    return {reinterpret_cast<const char*>(stream.Memory()),
            static_cast<std::size_t>(stream.GetSize())};
}

TEST(EntryFunctions, WriteTheSameTextIntoEveryTarget) {
    TPart part;
    part.Text = u"\u00E9 <\r";
    part.Inner = std::make_unique<TPart>();
    const NuXmlString text = NuSerializeObject2Xml(part);
    EXPECT_EQ(text, u"<Part type=\"TPart\"><Text type=\"string\">\u00E9 &lt;&#13;</Text>"
                    u"<Inner type=\"TPart\"><Text type=\"string\"></Text></Inner></Part>");

    host::TMemoryStream stream;
    NuSerializeObject2Stream(&part, stream);
    EXPECT_EQ(NuXmlString(reinterpret_cast<const char16_t*>(stream.Memory()), text.size()), text);
    EXPECT_EQ(stream.GetSize(), static_cast<std::int64_t>(2 * text.size()));

    const NuRef<TNuDOMDocument> document = NuCreateDOMDocument(
        u"<r xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"><old/></r>");
    TNuDOMElement& root = *document->get_documentElement();
    TNuDOMElement* const element = NuSerializeObject2DOM(part, root);
    EXPECT_EQ(element->get_parentNode(), &root);
    TPart again;
    NuDeSerializeObject(again, *element);
    EXPECT_EQ(NuSerializeObject2Xml(again), text);

    // The properties alone, with the prefixes that are declared where they go.
    NuSerialize(part, *root.FirstChildElement());
    EXPECT_TRUE(root.FirstChildElement()->get_xml().starts_with(
        u"<old><Text xsi:type=\"string\">\u00E9 &lt;&#13;</Text><Inner type=\"TPart\">"));
    TPart properties;
    NuDeserialize(*root.FirstChildElement(), properties);
    EXPECT_EQ(NuSerializeObject2Xml(properties), text);

    Point point{7};
    EXPECT_EQ(NuSerializeObject2Xml(point, u"p", noUseXSIPrefix),
              u"<p xsi:type=\"TPoint\"><x xsi:type=\"int\">7</x></p>");
    NuDeSerializeObject(point, u"<p><x>8</x></p>");
    EXPECT_EQ(point.x, 8);

    const TPart* const nothing = nullptr;
    EXPECT_EQ(NuSerializeObject2Xml(nothing), u"");
    EXPECT_EQ(NuSerializeObject2DOM(nullptr, root), nullptr);
    EXPECT_THROW(static_cast<void>(NuSerializeObject2Xml(part, u"a b")), host::Exception);
}

TEST(EntryFunctions, FilesAreReplacedWhenTheyAreComplete) {
    const auto folder = std::filesystem::path(testing::TempDir()) / "nuxml-objects";
    std::filesystem::create_directories(folder);
    const auto file = folder / "part.xml";
    TBigPart part;
    part.Text = u"\u017Dofia";
    part.Day = host::TDateTime{45418};
    NuSaveObject(file, part);
    const auto content = [&] {
        std::ifstream stream(file, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(stream), {});
    };
    const std::string saved = content();
    EXPECT_EQ(saved, "<?xml version=\"1.0\" encoding=\"UTF-8\"?><BigPart type=\"TBigPart\">"
                     "<Text type=\"string\">\u017Dofia</Text>"
                     "<Day type=\"dateTime\">2024-05-06T00:00:00</Day></BigPart>");
    part.Day = host::TDateTime{1e9}; // no date that can be written
    EXPECT_THROW(NuSaveObject(file, part), host::EConvertError);
    EXPECT_EQ(content(), saved);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1);

    TBigPart loaded;
    NuLoadObject(file, loaded);
    EXPECT_EQ(loaded.Text, part.Text);
    std::ofstream(file) << "<BigPart>\n <Day>\n  never</Day></BigPart>";
    try {
        NuLoadObject(file, loaded);
        ADD_FAILURE();
    } catch (const host::EConvertError& error) {
        EXPECT_TRUE(error.Message().find(u"(at BigPart/Day, line 3, column ") != NuXmlString::npos)
            << error.what();
    }
    std::filesystem::remove_all(folder);
}

TEST(ObjectStream, ObjectsComeBackFromEveryEncodingAndInEveryPiece) {
    for (const auto encoding : {nu::TextEncoding::Utf8, nu::TextEncoding::Utf16}) {
        host::TMemoryStream stream;
        nu::ObjectWriter out(stream, u"parts", noUseXSIPrefix | noAddXSI, encoding);
        TBigPart big;
        big.Text = u"\u00E9&";
        out.Write(big);
        out.Write(TPart(), u"other");
        out.Write(nullptr);
        out.Close();
        EXPECT_THROW(out.Write(big), host::Exception);
        if (encoding == nu::TextEncoding::Utf8) {
            EXPECT_EQ(
                bytesOf(stream),
                "<?xml version=\"1.0\" encoding=\"UTF-8\"?><parts "
                "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\">"
                "<BigPart xsi:type=\"TBigPart\"><Text xsi:type=\"string\">\u00E9&amp;</Text>"
                "<Day xsi:type=\"dateTime\">1899-12-30T00:00:00</Day></BigPart>"
                "<other xsi:type=\"TPart\"><Text xsi:type=\"string\"></Text></other></parts>");
        }
        stream.SetPosition(0);
        std::vector<NuXmlString> texts;
        EXPECT_EQ(nu::ReadObjects<TPart>(stream, u"parts/BigPart",
                                         [&](std::unique_ptr<TPart> part) {
                                             EXPECT_EQ(part->ClassInfo().name, u"TBigPart");
                                             texts.push_back(part->Text);
                                         }),
                  1U);
        EXPECT_EQ(texts, std::vector<NuXmlString>{big.Text});
    }
}

TEST(ObjectStream, PathsSayWhichElementsAreObjects) {
    constexpr std::string_view xml =
        "<a><b><p><Text>1</Text><Inner><Text>2</Text></Inner></p></b><x><b><p><Text>3</Text></p></"
        "b>"
        "</x><b><q><p><Text>4</Text></p></q><p><Text>5</Text></p></b></a>";
    struct {
        std::u16string_view path;
        std::u16string_view read;
        std::size_t atMost;
    } const cases[] = {
        {u"p", u"1345", 9}, {u"a/b/p", u"15", 9}, {u"a/x/b/p", u"3", 9},
        {u"b/p", u"", 9},   {u"Inner", u"2", 9},  {u"p", u"13", 2},
    };
    for (const auto& expected : cases) {
        host::TMemoryViewStream stream(xml);
        NuXmlString read;
        nu::ReadObjects<TPart>(stream, expected.path, [&](std::unique_ptr<TPart> part) {
            read += part->Text;
            return read.size() < expected.atMost;
        });
        EXPECT_EQ(read, expected.read) << NuToUtf8(expected.path);
    }
    for (const std::u16string_view path : {u"", u"a//b", u"/a", u"a/", u"a b"}) {
        host::TMemoryViewStream stream(xml);
        EXPECT_THROW(nu::ReadObjects<TPart>(stream, path, [](std::unique_ptr<TPart>) {}),
                     host::Exception);
    }
}

TEST(ObjectStream, WhatFailsLeavesWhatCameBefore) {
    host::TMemoryViewStream stream(
        std::string_view("<r><p><Text>1</Text></p><p type=\"TShell\"/></r>"));
    std::size_t count = 0;
    EXPECT_THROW(nu::ReadObjects<TPart>(stream, u"p", [&](std::unique_ptr<TPart>) { ++count; }),
                 host::Exception);
    EXPECT_EQ(count, 1U);

    // An exception of the application comes through as it is.
    stream.SetPosition(0);
    struct Enough {};
    EXPECT_THROW(
        nu::ReadObjects<TPart>(stream, u"p", [](std::unique_ptr<TPart>) { throw Enough(); }),
        Enough);

    host::TMemoryStream target;
    nu::ObjectWriter out(target, u"r");
    TBigPart part;
    part.Day = host::TDateTime{1e9};
    EXPECT_THROW(out.Write(part), host::EConvertError);
    EXPECT_THROW(out.Write(TPart()), host::Exception);
    EXPECT_THROW(out.Close(), host::Exception);
}

/// Fails after some bytes, as a disk may.
class TFailingStream final : public host::TStream {
public:
    std::size_t Read(void* buffer, std::size_t count) override {
        if (isRead_) {
            throw host::EReadError(u"The disk is gone");
        }
        isRead_ = true;
        constexpr std::string_view text = "<r><p><Text>1</Text></p>";
        std::copy_n(text.data(), std::min(count, text.size()), static_cast<char*>(buffer));
        return std::min(count, text.size());
    }
    std::size_t Write(const void* /*buffer*/, std::size_t /*count*/) override { return 0; }
    std::int64_t Seek(std::int64_t /*offset*/, host::SeekOrigin origin) override {
        return origin == host::SeekOrigin::End ? 0x4000000 : 0;
    }

private:
    bool isRead_ = false;
};

TEST(ObjectStream, AStreamThatFailsIsToldAndNoEnd) {
    TFailingStream stream;
    try {
        nu::ReadObjects<TPart>(stream, u"p", [](std::unique_ptr<TPart>) {});
        ADD_FAILURE();
    } catch (const host::Exception& error) {
        EXPECT_EQ(error.Message(), u"The disk is gone");
    }
}

TEST(ObjectStream, TextsAreEscapedAlikeWhateverTheirLength) {
    const std::u16string_view ends[] = {u"",       u"&",          u"\"'<",
                                        u"\u00E9", u"\u20AC",     u"\U0001F600",
                                        u"\xD83D", {u"\0<\0", 3}, {u"\0", 1}};
    for (const std::u16string_view end : ends) {
        // Texts of up to 64 units are written in another way.
        for (const std::size_t length : {3U, 63U, 64U, 65U, 66U}) {
            TPart part;
            part.Text = NuXmlString(length - end.size(), length == 3 ? u' ' : u'a').append(end);
            NuXmlString content = NuStrToXML(part.Text);
            if (content.find_first_not_of(u' ') == content.npos) {
                content.replace(0, 1, u"&#32;");
            }
            const NuXmlString text =
                u"<Part type=\"TPart\"><Text type=\"string\">" + content + u"</Text></Part>";
            EXPECT_EQ(NuSerializeObject2Xml(part), text);
            host::TMemoryStream stream;
            nu::ObjectWriter out(stream, u"r");
            out.Write(part);
            out.Close();
            EXPECT_NE(bytesOf(stream).find(NuToUtf8(text)), std::string::npos) << NuToUtf8(text);
        }
    }
}

TEST(ObjectStream, LongTextsGoThroughInPieces) {
    TPart part;
    // Pieces end anywhere, and the file is one for the large-stream parser.
    for (int line = 0; part.Text.size() < 18'000'000; ++line) {
        part.Text.append(u"\u4E00 & \U0001F600")
            .append(static_cast<std::size_t>(line % 97), u'\u3042');
    }
    const auto file = std::filesystem::path(testing::TempDir()) / "nuxml-long-text.xml";
    NuSaveObject(file, part);
    ASSERT_GT(std::filesystem::file_size(file), 0x2000000U);
    TPart loaded;
    NuLoadObject(file, loaded);
    EXPECT_TRUE(loaded.Text == part.Text);

    host::TFileStream stream(file, host::fmOpenRead);
    EXPECT_THROW(nu::ReadObjects<TPart>(stream, u"Part", [](std::unique_ptr<TPart>) {}),
                 host::Exception);
    std::filesystem::remove(file);
}

} // namespace
