#include <gtest/gtest.h>

#include "common/stringStream.h"
#include "host/runtime/memoryStream.h"
#include "host/runtime/unicode.h"
#include "host/sax/SaxHelpers.h"
#include "nuXmlParser/smallStreamParser.h"
#include "support/eventTrace.h"
#include "support/plainSource.h"
#include "support/randomText.h"

namespace {

using nu::StopSet;
using support::PlainSource;

/// Does the operation number `operation` and tells what it gave.
template <class Source> std::string perform(Source& source, std::size_t operation, char16_t unit) {
    std::u16string result;
    const std::string failure = support::exceptionOf([&] {
        switch (operation) {
        case 0:
            result = *source.ReadRawChar();
            break;
        case 1:
            result = *source.ReadXmlChar();
            break;
        case 2:
            result = {*source.PeekXmlChar(), *source.PeekWord(), *source.PeekCardinal()};
            break;
        case 3:
            result = source.peeksAt(u']', unit) ? u"yes" : u"no";
            break;
        case 4:
            source.template readUntil<StopSet::Less>();
            break;
        case 5:
            source.template readUntil<StopSet::Quote>();
            break;
        case 6:
            source.template readUntil<StopSet::Name>();
            break;
        case 7:
            source.template readUntil<StopSet::Solid>();
            break;
        case 8:
            source.ResetBuffer();
            break;
        default:
            source.copyUntil(
                unit, [&](PNuXmlChar run, std::size_t length) { result.append(run, length); });
        }
    });
    return support::readable(result) + failure;
}

template <class Source> std::string stateOf(Source& source, bool withCounters) {
    std::string state = support::readable({source.CurrChar(), 1}) + '@' +
                        std::to_string(source.GetStreamPos()) + (source.Eof() ? "!" : "");
    if (withCounters) {
        state += ' ' + std::to_string(source.LineNumber()) + ':' +
                 std::to_string(source.ColumnNumber()) + ';' + std::to_string(source.CharCount());
    }
    return state;
}

void compare(support::Random& random, const std::u16string& text, TNuXmlSmallStreamParser& parser,
             PlainSource& plain) {
    // Before the first read there is no current character, and in an empty text there never is.
    std::string log;
    std::size_t operation = random(2);
    const std::size_t looks = random(4);
    int left = text.empty() ? 1 : 400;
    while (left > 0) {
        const char16_t unit = u"-]?< >"[random(6)];
        log += std::to_string(operation);
        ASSERT_EQ(perform(parser, operation, unit), perform(plain, operation, unit))
            << log << ' ' << support::readable(text);
        const bool withCounters = random(4) < looks || left == 1;
        ASSERT_EQ(stateOf(parser, withCounters), stateOf(plain, withCounters))
            << log << ' ' << support::readable(text);
        operation = random(10);
        left = parser.Eof() ? std::min(left - 1, 4) : left - 1;
    }
}

TEST(SmallStreamParser, readsRunsAsUnitByUnit) {
    const std::uint64_t inputs = support::randomInputs(25'000);
    const auto handler = host::makeRef<host::TBufferedDefaultHandler>();
    for (std::uint64_t seed = 0; seed < inputs && !HasFatalFailure(); ++seed) {
        SCOPED_TRACE(seed);
        support::Random random(seed);
        // 1. The whole text in memory.
        std::u16string text = support::randomMarkup(random);
        {
            TNuStringStream stream(text);
            TNuXmlSmallStreamParser parser(&stream, false, handler);
            PlainSource plain(text, handler);
            compare(random, text, parser, plain);
        }
        // 2. The text in a window that moves on as it is decoded.
        const std::string bytes = "\xEF\xBB\xBF<" + host::utf16ToUtf8(text);
        text = host::utf8ToUtf16(bytes.substr(3));
        host::TMemoryViewStream stream(bytes);
        TNuXmlSmallStreamParser parser(&stream, false, handler, random(100));
        PlainSource plain(text, handler);
        compare(random, text, parser, plain);
    }
}

} // namespace
