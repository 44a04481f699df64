#include "nuXmlParser/largeStreamParser.h"

#include <gtest/gtest.h>

#include "common/codePage.h"
#include "common/stringStream.h"
#include "host/runtime/memoryStream.h"
#include "host/runtime/unicode.h"
#include "host/sax/SaxHelpers.h"
#include "support/oddStream.h"
#include "support/parserSteps.h"
#include "support/plainLargeSource.h"

namespace {

using namespace std::string_literals;
using support::OddStream;
using Parser = TNuXmlLargeStreamParser;

const auto handler = host::makeRef<host::TBufferedDefaultHandler>();

/// Any encoding, often malformed, with the block boundaries anywhere and a stream that gives less
/// than it is asked for.
TEST(LargeStreamParser, readsBlocksAsUnitByUnit) {
    const std::uint64_t inputs = support::randomInputs(20'000);
    for (std::uint64_t seed = 0; seed < inputs && !HasFatalFailure(); ++seed) {
        SCOPED_TRACE(seed);
        support::Random random(seed);
        const std::u16string text = support::randomMarkup(random);
        const std::string bytes = support::randomEncoding(random, text);
        auto* const odd = new OddStream(bytes);
        odd->readsAtMost = random(2) == 0 ? 1 + random(40) : bytes.size() + 1;
        Parser parser(odd, true, handler,
                      random(3) == 0 ? Parser::standardBlockLength : random(90));
        host::TMemoryViewStream stream(bytes);
        support::PlainLargeSource plain(&stream, false, handler, 2048);
        support::compareSteps(random, parser, plain, text);
    }
}

/// Reads everything and tells the characters, the end flag's as "!", and the failure.
std::string readAll(const std::string& bytes) {
    std::u16string text;
    OddStream stream(bytes);
    std::string failure;
    bool hasEnded = false;
    failure = support::exceptionOf([&] {
        Parser parser(&stream, false, handler);
        while (!hasEnded) {
            text += *parser.ReadRawChar();
            hasEnded = parser.Eof();
        }
        parser.ReadRawChar();
    });
    return support::readable(text) + (hasEnded ? "!" : "") + failure;
}

TEST(LargeStreamParser, decodesEveryForm) {
    const std::string filler(1023, 'x');
    NuSetSystemCodePage(1252);
    struct Case {
        std::string bytes;
        std::string text;
    };
    for (const Case& item : {
             Case{"\xFF\xFE" + support::utf16Bytes(u"ab"), "ab\\x00!fatal eof"},
             Case{"\xFF\xFE"s, "\\x00!fatal eof"},
             Case{"\xFF\xFE"s + "a\0b"s, "ab\\x00!fatal eof"}, // half a unit
             Case{"\xEF\xBB\xBF", "\\x00!fatal eof"},
             Case{"\xEF\xBB\xBF\xC3\xA9\x80\xE2\x82", "é\uFFFD\uFFFD\\x00!fatal eof"},
             // 8-bit text knows no code page, and declared UTF-8 is believed.
             Case{">\xE9\x80", ">é\u0080\\x00!fatal eof"},
             Case{"utF-8>\xC3\xA9\xE9", "utF-8>é\uFFFD\\x00!fatal eof"},
             Case{">utf-8\xC3", ">utf-8Ã\\x00!fatal eof"},
             Case{"a\0>"s, "a\\x00>\\x00!fatal eof"},
             // The first tag must end among the first 1024 bytes.
             Case{filler + ">", filler + ">\\x00!fatal eof"},
             Case{filler + "x>", "abort Abort"},
             Case{std::string(2000, 'x'), "abort Abort"},
             Case{"abc", "abort Abort"},
             Case{"", "abort Abort"},
             Case{"\xFE\xFF<", "Exception Invalid encoding"},
         }) {
        EXPECT_EQ(readAll(item.bytes), item.text);
    }
    NuSetSystemCodePage(0);
}

TEST(LargeStreamParser, countsWhatItLooksAtTwice) {
    TNuStringStream stream(u"\nx]\n>");
    Parser parser(&stream, false, handler);
    const auto place = [&] {
        return std::to_string(parser.LineNumber()) + ':' + std::to_string(parser.ColumnNumber()) +
               ';' + std::to_string(parser.CharCount());
    };
    EXPECT_EQ(parser.PeekPtr(), nullptr);
    EXPECT_EQ(*parser.PeekXmlChar(), u'x');
    EXPECT_EQ(place(), "2:2;2");
    EXPECT_EQ(*parser.ReadXmlChar(), u'x');
    EXPECT_EQ(place(), "3:2;4");
    EXPECT_EQ(parser.GetStreamPos(), 4);
    EXPECT_TRUE(parser.peeksAt(u']', u'>')); // the control character between them does not count
    EXPECT_EQ(parser.GetStreamPos(), 4);
    EXPECT_EQ(*parser.ReadRawChar(), u']');
    EXPECT_EQ(*parser.ReadXmlChar(), u'>');
    EXPECT_FALSE(parser.Eof());
    EXPECT_EQ(*parser.PeekWord(), 0); // the end, which stays found
    EXPECT_TRUE(parser.Eof());
    EXPECT_EQ(support::exceptionOf([&] { parser.ReadXmlChar(); }), "fatal eof");
    EXPECT_EQ(*parser.CurrChar(), u'>');
}

TEST(LargeStreamParser, fillsItsBuffer) {
    struct Trace final : host::TBufferedDefaultHandler {
        std::u16string message;
        std::int64_t column = 0;
        void fatalError(host::ISAXParseError& error) override {
            message = error.getMessage();
            column = error.getColumnNumber();
        }
    };
    constexpr std::int64_t room = 16'777'215;
    const std::string bytes = "\xEF\xBB\xBF" + std::string(room + 10, 'x');
    for (const bool byRun : {false, true}) {
        const auto trace = host::makeRef<Trace>();
        host::TMemoryViewStream stream(bytes);
        Parser parser(&stream, false, trace);
        const std::string failure = support::exceptionOf([&] {
            if (byRun) {
                parser.readUntil<nu::StopSet::Less>();
            }
            for (;;) {
                parser.ReadXmlChar();
            }
        });
        EXPECT_EQ(failure, "abort Abort");
        EXPECT_EQ(trace->message, u"The buffersize is not large enought to hold all the data!");
        EXPECT_EQ(trace->column, room);
        EXPECT_EQ(parser.CharCount(), room);
        // What is given back can be used again; the character itself still takes its place.
        parser.ResetBuffer();
        EXPECT_EQ(*parser.ReadRawChar(), u'x');
        EXPECT_EQ(parser.GetStreamPos(), 3 + room + 1);
    }
}

TEST(LargeStreamParser, deliversWhatComesBeforeAFailure) {
    OddStream stream("<utf-8>abc");
    stream.failsAt = 9;
    stream.readsAtMost = 4;
    {
        Parser parser(&stream, false, handler);
        std::u16string text;
        const auto read = [&] {
            for (;;) {
                text += *parser.ReadXmlChar();
            }
        };
        EXPECT_EQ(support::exceptionOf(read), "EStreamError broken");
        EXPECT_EQ(support::exceptionOf(read), "EStreamError broken");
        EXPECT_EQ(text, u"<utf-8>ab");
    }
    stream.failsAt = 0;
    EXPECT_EQ(support::exceptionOf([&] { Parser(&stream, false, handler); }),
              "EStreamError broken");
    EXPECT_EQ(support::exceptionOf([&] { Parser(nullptr, false, handler); }),
              "ESAXException You must assign a SourceStream to the SAX Parser!");
    EXPECT_EQ(support::exceptionOf([&] { Parser(new OddStream("x"), true, handler); }),
              "abort Abort");
    EXPECT_EQ(OddStream::alive, 1);
}

/// In the end the stream stands where reading stopped, however far it was read ahead.
TEST(LargeStreamParser, leavesTheStreamBehindWhatWasRead) {
    OddStream stream("\xEF\xBB\xBF\xC3\xA9\x80\xF0\x9F\x98\x80" + std::string(100, 'x'));
    for (const std::int64_t position : {5, 6, 9, 10, 11}) {
        stream.SetPosition(0);
        {
            Parser parser(&stream, false, handler);
            while (parser.GetStreamPos() < position) {
                parser.ReadRawChar();
            }
        }
        EXPECT_EQ(stream.GetPosition(), position);
    }
}

} // namespace
