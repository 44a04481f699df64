#include "nuXmlParser/smallStreamParser.h"

#include <gtest/gtest.h>

#include <cstring>
#include <optional>

#include "common/codePage.h"
#include "common/stringStream.h"
#include "host/runtime/memoryStream.h"
#include "nuXmlParser/parserErrors.h"
#include "nuXmlParser/stringBuffer.h"
#include "support/eventTrace.h"
#include "support/oddStream.h"

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
using support::EventTrace;
using support::OddStream;

static_assert(cNuLine == u'-' && cNuEOF == 0 && cNuCDATAEnd == 0x003E005D);
static_assert(ctANSI == 0 && ctWIDE == 1 && ctUTF8 == 2);

TEST(StringBuffer, collectsCharacters) {
    TNuXmlStringBuffer buffer(2);
    buffer.RemoveNuXmlChar(); // nothing to remove, nothing happens
    buffer.AddXmlString(u"aé", 7);
    buffer.AddXmlChar(u"中x");
    EXPECT_EQ(buffer.GetAsSaxString(), u"aé中");
    EXPECT_EQ(buffer.Copy(1, 2), u"é中");
    buffer.RemoveNuXmlChar();
    EXPECT_EQ(buffer.GetAsXmlString(), u"aé");
    const TNuXmlStringBuffer narrow(1);
    EXPECT_EQ(support::exceptionOf([&] { static_cast<void>(narrow.Copy(0, 0)); }),
              "Exception Copy not allowed");
}

/// Does one operation for each letter: r ReadRawChar, x ReadXmlChar, p the peeks. Reads tell
/// character, line, column and number of reads, and "!" at the end.
std::string perform(TNuXmlBaseParser& parser, std::string_view operations) {
    std::string log;
    for (const char operation : operations) {
        log += log.empty() ? "" : " ";
        const std::string failure = support::exceptionOf([&] {
            if (operation == 'p') {
                const PNuXmlChar peeked = parser.PeekXmlChar();
                EXPECT_TRUE(parser.PeekWord() == peeked && parser.PeekCardinal() == peeked);
                log += '~' + support::readable({peeked, 1});
                return;
            }
            const PNuXmlChar read = operation == 'r' ? parser.ReadRawChar() : parser.ReadXmlChar();
            EXPECT_EQ(read, parser.CurrChar());
            log += support::readable({read, 1}) + std::to_string(parser.getLineNumber()) + ':' +
                   std::to_string(parser.getColumnNumber()) + ';' +
                   std::to_string(parser.CharCount()) + (parser.Eof() ? "!" : "");
        });
        log += failure;
    }
    return log;
}

TEST(SmallStreamParser, countsWhatItDelivers) {
    struct Case {
        std::u16string_view text;
        std::string_view operations;
        std::string_view expected;
    };
    for (const Case& item : {
             Case{u"ab", "rrrr", "a1:1;1 b1:2;2! fatal eof fatal eof"},
             Case{u"a\nb", "rrr", "a1:1;1 \\n2:1;2 b2:2;3!"},
             Case{u"a\t\r\nb", "xxx", "a1:1;1 b2:1;2! fatal eof"},
             Case{u"a\tb", "xx", "a1:1;1 b1:2;2!"},
             Case{u"a\x01\r\nb", "rrrrr", "a1:1;1 \\x011:2;2 \\r1:3;3 \\n2:1;4 b2:2;5!"},
             Case{u"\n\n\nab", "rxr", "\\n2:1;1 a4:1;2 b4:2;3!"},
             // A NUL ends what is read as XML, and nothing else.
             Case{u"a\0b"sv, "xxx", "a1:1;1 \\x001:2;2! fatal eof"},
             Case{u"a\0b"sv, "rprr", "a1:1;1 ~b \\x001:2;2 b1:3;3!"},
             // A line feed that is the last character opens no line.
             Case{u"a\n", "rr", "a1:1;1 \\n1:2;2!"},
             Case{u"a\n\n", "xx", "a1:1;1 \\n2:1;2!"},
             // Peeks see through control characters up to the last character, whatever that is.
             Case{u"\t\nb", "pxp", "~b b2:1;1! ~b"},
             Case{u"a\t\n", "prp", "~a a1:1;1 ~\\n"},
             Case{u"", "xrp", "fatal eof fatal eof ~\\x00"},
         }) {
        TNuStringStream stream(item.text);
        const auto trace = host::makeRef<EventTrace>();
        TNuXmlSmallStreamParser parser(&stream, false, trace);
        EXPECT_EQ(perform(parser, item.operations), item.expected) << support::readable(item.text);
        EXPECT_EQ(trace->text(), ""); // the end of the input is nobody's fault
    }
}

TEST(SmallStreamParser, peeksAtTwoCharacters) {
    TNuStringStream stream(u"x]\n]>"sv);
    TNuXmlSmallStreamParser parser(&stream, false, host::makeRef<EventTrace>());
    EXPECT_EQ(perform(parser, "xx"), "x1:1;1 ]1:2;2");
    EXPECT_EQ(parser.GetStreamPos(), 4);
    std::uint32_t two = 0;
    std::memcpy(&two, parser.PeekCardinal(), sizeof two);
    EXPECT_EQ(two, cNuCDATAEnd);
    EXPECT_EQ(perform(parser, "xx"), "]2:1;3 >2:2;4!");
    EXPECT_EQ(parser.GetStreamPos(), 8); // the read position stays on the last character
}

/// All characters of a stream, or why there are none.
std::string textOf(host::TStream& stream) {
    const auto trace = host::makeRef<EventTrace>();
    std::u16string text;
    trace->record([&] {
        TNuXmlSmallStreamParser parser(&stream, false, trace);
        do {
            text += *parser.ReadRawChar();
        } while (!parser.Eof());
    });
    return support::readable(text) + trace->text();
}

TEST(SmallStreamParser, decodesEveryForm) {
    struct Case {
        std::string bytes;
        std::uint32_t codePage;
        std::string_view expected;
    };
    for (const Case& item : {
             // 8-bit text
             Case{"<a>\xE9\x80", 28591, "<a>é\u0080"},
             Case{"<a>\xE9\x80", 1252, "<a>é€"},
             Case{"<a>\xC3\xA9", 1252, "<a>Ã©"},
             Case{"<a>\xC3\xA9", 65001, "<a>é"},
             Case{"<a>\xC3\xA9\xE9", 65001, "<a>Ã©é"},
             Case{"ab>", 1252, "ab>"},
             Case{"abc", 1252, "F1:0 noxml|X abort Abort"},
             Case{"", 1252, "F1:0 noxml|X abort Abort"},
             // UTF-8 by what stands up to the first ">"
             Case{"<?xml encoding=\"UTF-8\"?>\xC3\xA9", 1252, "<?xml encoding=\"UTF-8\"?>é"},
             Case{"<?xml encoding='uTf-8'?>\xC3\xA9", 1252, "<?xml encoding='uTf-8'?>é"},
             Case{"<!-- utf-8 -->\xC3\xA9", 1252, "<!-- utf-8 -->é"},
             Case{"<?xml encoding=\"utf-8\"?>\xC3\xA9\xE9", 1252, "<?xml encoding=\"utf-8\"?>Ã©é"},
             Case{"<?xml encoding=\"utf8\"?>\xC3\xA9", 1252, "<?xml encoding=\"utf8\"?>Ã©"},
             Case{"<?xml a=\">\" encoding=\"utf-8\"?>\xC3\xA9", 1252,
                  "<?xml a=\">\" encoding=\"utf-8\"?>Ã©"},
             // UTF-8 by its mark
             Case{"\xEF\xBB\xBF\xF0\x9F\x98\x80", 1252, "😀"},
             Case{"\xEF\xBB\xBF<a>\xC3\xA9\xE9</a>", 1252, "X EConvertError utf8"},
             Case{"\xEF\xBB\xBF", 1252, "X EConvertError utf8"},
             // UTF-16
             Case{"\xFF\xFE<\0\xE9\0"s, 1252, "<é"},
             Case{"\xFF\xFE<\0\xE9"s, 1252, "<"},
             Case{"\xFF\xFE", 1252, "X fatal eof"},
             Case{"\xFF\xFE<", 1252, "X fatal eof"},
             Case{"\xFE\xFF\0<"s, 1252, "X Exception Invalid encoding"},
             Case{"\xFF\xFE\0\0<\0\0\0"s, 1252, "X Exception Invalid encoding"},
             Case{"\0\0\xFE\xFF\0\0\0<"s, 1252, "X Exception Invalid encoding"},
         }) {
        NuSetSystemCodePage(item.codePage);
        host::TMemoryStream memory("skipped" + item.bytes);
        memory.SetPosition(7);
        EXPECT_EQ(textOf(memory), item.expected) << item.bytes;
        OddStream pieces("skipped" + item.bytes);
        pieces.SetPosition(7);
        pieces.readsAtMost = 3;
        EXPECT_EQ(textOf(pieces), item.expected) << item.bytes;
    }
    NuSetSystemCodePage(0);
}

TEST(SmallStreamParser, readsUtf16InPlace) {
    const std::string bytes = "12\xFF\xFE" + support::utf16Bytes(u"<a/>");
    host::TMemoryStream stream(bytes);
    stream.SetPosition(2);
    {
        TNuXmlSmallStreamParser parser(&stream, false, host::makeRef<EventTrace>());
        EXPECT_EQ(static_cast<const void*>(parser.Buffer()), stream.Memory() + 4);
        EXPECT_EQ(parser.LastPtr() - parser.Buffer(), 3);
        EXPECT_FALSE(parser.OwnsBuffer());
        EXPECT_EQ(stream.GetPosition(), 4);
    }
    EXPECT_EQ(std::memcmp(stream.Memory(), bytes.data(), bytes.size()), 0);
    // What is not aligned, or not UTF-16, or not in memory, is copied.
    host::TMemoryStream shifted("1" + bytes);
    shifted.SetPosition(3);
    OddStream elsewhere(bytes.substr(2));
    host::TMemoryStream narrow("<a/>");
    for (host::TStream* copied :
         std::initializer_list<host::TStream*>{&shifted, &elsewhere, &narrow}) {
        TNuXmlSmallStreamParser parser(copied, false, host::makeRef<EventTrace>());
        EXPECT_TRUE(parser.OwnsBuffer());
        EXPECT_EQ(perform(parser, "xxxx"), "<1:1;1 a1:2;2 /1:3;3 >1:4;4!");
    }
}

TEST(SmallStreamParser, failsClearlyOnBadStreams) {
    struct Case {
        std::int64_t failsAt;
        std::optional<std::int64_t> claimedSize;
        std::string_view expected;
    };
    constexpr std::int64_t never = std::numeric_limits<std::int64_t>::max();
    for (const Case& item :
         {Case{never, 7, "<a>x"}, Case{never, 2000, "X EStreamError Stream read error"},
          Case{never, never, "X EStreamError Stream read error"},
          Case{5, {}, "X EStreamError broken"}, Case{0, {}, "X EStreamError broken"}}) {
        OddStream utf8("\xEF\xBB\xBF<a>xy");
        OddStream utf16("\xFF\xFE" + support::utf16Bytes(u"<a>xy"));
        for (OddStream* stream : {&utf8, &utf16}) {
            stream->readsAtMost = 2;
            stream->failsAt = item.failsAt;
            stream->claimedSize = item.claimedSize == 7 && stream == &utf16 ? 10 : item.claimedSize;
            EXPECT_EQ(textOf(*stream), item.expected);
        }
    }
    // Less than nothing is nothing.
    for (const std::int64_t claimed :
         {std::numeric_limits<std::int64_t>::min(), std::int64_t{-1}}) {
        OddStream stream("\xFF\xFE" + support::utf16Bytes(u"<a>"));
        stream.claimedSize = claimed;
        EXPECT_EQ(textOf(stream), "X fatal eof");
    }
}

TEST(SmallStreamParser, freesTheStreamItOwns) {
    const auto trace = host::makeRef<EventTrace>();
    const auto make = [&](OddStream* stream, bool withHandler = true) {
        return new TNuXmlSmallStreamParser(stream, true, withHandler ? trace.get() : nullptr);
    };
    const auto failureOf = [&](OddStream* stream, bool withHandler = true) {
        return support::exceptionOf([&] { make(stream, withHandler); });
    };
    // 1. A missing argument is found before the stream changes hands.
    auto kept = std::make_unique<OddStream>("<a/>");
    EXPECT_EQ(failureOf(kept.get(), false),
              "ESAXException You must assign an Errorhandler to the SAX Parser!");
    EXPECT_EQ(failureOf(nullptr, false),
              "ESAXException You must assign an Errorhandler to the SAX Parser!");
    EXPECT_EQ(failureOf(nullptr),
              "ESAXException You must assign a SourceStream to the SAX Parser!");
    EXPECT_EQ(OddStream::alive, 1);
    kept.reset();

    // 2. A failing decode frees it; what the handler throws goes out as it is.
    EXPECT_EQ(failureOf(new OddStream("\xFE\xFF")), "Exception Invalid encoding");
    trace->onEvent = [](const std::string&) { throw host::Exception(u"mine"); };
    EXPECT_EQ(failureOf(new OddStream("abc")), "Exception mine");
    EXPECT_EQ(OddStream::alive, 0);

    // 3. A locator that outlives the parser knows the last place; stream and text are gone.
    TNuXmlSmallStreamParser* parser = make(new OddStream("<a>\n\n</a>"));
    const host::Ref<host::ILocator> locator(parser);
    EXPECT_EQ(perform(*parser, "xxxx"), "<1:1;1 a1:2;2 >1:3;3 <3:1;4");
    parser->Free();
    EXPECT_EQ(OddStream::alive, 0);
    EXPECT_EQ(locator->getLineNumber() * 100 + locator->getColumnNumber(), 301);
    EXPECT_EQ(locator->getPublicId() + locator->getSystemId(), u"");
    EXPECT_EQ(perform(*parser, "xrp"), "fatal eof fatal eof ~\\x00");
}

} // namespace
