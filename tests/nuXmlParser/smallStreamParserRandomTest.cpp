#include <gtest/gtest.h>

#include "common/stringStream.h"
#include "host/runtime/memoryStream.h"
#include "host/runtime/unicode.h"
#include "host/sax/SaxHelpers.h"
#include "nuXmlParser/smallStreamParser.h"
#include "support/parserSteps.h"
#include "support/plainSource.h"
#include "support/randomText.h"

namespace {

using support::PlainSource;

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
            support::compareSteps(random, parser, plain, text);
        }
        // 2. The text in a window that moves on as it is decoded.
        const std::string bytes = "\xEF\xBB\xBF<" + host::utf16ToUtf8(text);
        text = host::utf8ToUtf16(bytes.substr(3));
        host::TMemoryViewStream stream(bytes);
        TNuXmlSmallStreamParser parser(&stream, false, handler, random(100));
        PlainSource plain(text, handler);
        support::compareSteps(random, parser, plain, text);
    }
}

} // namespace
