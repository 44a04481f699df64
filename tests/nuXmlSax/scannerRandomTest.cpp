#include <gtest/gtest.h>

#include <memory>

#include "common/stringStream.h"
#include "common/utf8.h"
#include "host/runtime/memoryStream.h"
#include "host/runtime/unicode.h"
#include "nuXmlParser/largeStreamParser.h"
#include "nuXmlParser/smallStreamParser.h"
#include "nuXmlSax.h"
#include "nuXmlSax/scanAttributes.h"
#include "nuXmlSax/scanDocument.h"
#include "nuXmlSax/scanElement.h"
#include "nuXmlSax/scanMarkup.h"
#include "nuXmlSax/scanPlain.h"
#include "support/eventTrace.h"
#include "support/oddStream.h"
#include "support/plainLargeSource.h"
#include "support/plainSource.h"
#include "support/randomDocument.h"

namespace {

using support::EventTrace;
using support::Positions;

/// Events, exception and final counters of what the scanner reads from a new source, which `make`
/// makes for the error handler it is given.
template <class Make> std::string outcome(Positions positions, Make&& make) {
    TNuSAXXMLReader reader;
    const auto trace = host::makeRef<EventTrace>(positions);
    trace->attachTo(reader);
    auto* const source = make(trace);
    const std::unique_ptr<TNuXmlBaseParser, void (*)(TNuXmlBaseParser*)> end(
        source, [](TNuXmlBaseParser* parser) { parser->Free(); });
    trace->record([&] {
        nu::SaxScanner<std::remove_pointer_t<decltype(make(trace))>>(reader, *source)
            .scanDocument();
    });
    return trace->text() + '|' + trace->state();
}

/// The runs of units, the look ahead over whole tags, the counting on demand and the text that
/// moves while it is decoded change nothing: the same scanner over a source that knows none of them
/// tells the same.
TEST(Scanner, tellsTheSameUnitByUnit) {
    const std::uint64_t inputs = support::randomInputs(75'000);
    for (std::uint64_t seed = 0; seed < inputs; ++seed) {
        support::Random random(seed);
        std::string bytes = random(4) == 0 ? support::randomDocument(random)
                                           : '<' + host::utf16ToUtf8(support::randomMarkup(random));
        bytes.insert(0, bytes.starts_with("\xEF\xBB\xBF") ? "" : "\xEF\xBB\xBF");
        // Often long enough for what is read in its bytes to go to the end of the markup.
        bytes.append(random(2) * 100, ' ');
        if (!NuIsUtf8(bytes)) {
            continue;
        }
        const std::u16string text = host::utf8ToUtf16(bytes.substr(3));
        // Looking at the counters also moves them, so half of the inputs are read without.
        const Positions positions = seed % 2 == 0 ? Positions::State : Positions::None;
        const std::string expected = outcome(positions, [&](auto& errorHandler) {
            return new support::PlainSource(text, errorHandler);
        });
        for (const std::size_t windowLength :
             {TNuXmlSmallStreamParser::wholeText, random(100), random(1000)}) {
            const std::string actual = outcome(positions, [&](auto& errorHandler) {
                return new TNuXmlSmallStreamParser(new host::TMemoryViewStream(bytes), true,
                                                   errorHandler, windowLength);
            });
            ASSERT_EQ(actual, expected) << "seed " << seed << ", window " << windowLength << ": "
                                        << support::readable(text);
        }
    }
}

TEST(Scanner, tellsTheSameOfALargeStreamUnitByUnit) {
    const std::uint64_t inputs = support::randomInputs(20'000);
    for (std::uint64_t seed = 0; seed < inputs; ++seed) {
        support::Random random(seed);
        const std::string bytes = support::randomEncoding(random, support::randomMarkup(random));
        const Positions positions = seed % 2 == 0 ? Positions::State : Positions::None;
        const std::string expected = outcome(positions, [&](auto& errorHandler) {
            return new support::PlainLargeSource(new host::TMemoryViewStream(bytes), true,
                                                 errorHandler, 4096);
        });
        for (const std::size_t blockLength :
             {TNuXmlLargeStreamParser::standardBlockLength, random(100)}) {
            const std::string actual = outcome(positions, [&](auto& errorHandler) {
                auto* const stream = new support::OddStream(bytes);
                stream->readsAtMost = random(2) == 0 ? 1 + random(40) : bytes.size() + 1;
                return new TNuXmlLargeStreamParser(stream, true, errorHandler, blockLength);
            });
            ASSERT_EQ(actual, expected) << "seed " << seed << ", block " << blockLength;
        }
    }
}

/// Without the columns of places, "line:column ".
std::string withoutColumns(std::string text) {
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    for (std::size_t colon = text.find(':'); colon != text.npos;
         colon = text.find(':', colon + 1)) {
        const std::size_t end = text.find_first_not_of("0123456789", colon + 1);
        if (colon > 0 && isDigit(text[colon - 1]) && end != text.npos && text[end] == ' ') {
            text.erase(colon, end - colon);
        }
    }
    return text;
}

/// What the stage makes of UTF-16 is read when all of it was made; UTF-8 is checked and read at
/// once. The events and their places are the same, and so are faults; what comes before a fault was
/// read otherwise, so that places of it do not count, and in one pass columns are those of the
/// source where an attribute was added.
TEST(Scanner, tellsInOnePassWhatItTellsInTwo) {
    const auto parse = [](const std::string& bytes, const TNuConformingOptions& options,
                          bool isOnePass, Positions positions, const TNuSaxLimits& limits) {
        TNuSAXXMLReader reader;
        const auto trace = host::makeRef<EventTrace>(positions);
        trace->attachTo(reader);
        reader.SetConforming(options);
        reader.SetLimits(limits);
        host::TMemoryViewStream stream{std::string_view(bytes)};
        TNuStringStream text(isOnePass ? u"" : host::utf8ToUtf16(bytes));
        trace->record(
            [&] { reader.Parse(isOnePass ? static_cast<host::TStream&>(stream) : text); });
        return trace->text();
    };
    const auto someLimits = [](support::Random& random) {
        return TNuSaxLimits{static_cast<std::int32_t>(1 + random(9)), 1 + random(4),
                            1 + random(50)};
    };
    const std::uint64_t inputs = support::randomInputs(10'000);
    std::size_t wellFormed = 0;
    for (std::uint64_t seed = 0; seed < inputs; ++seed) {
        support::Random random(seed);
        std::string bytes = support::randomWellFormed(random);
        if (random(2) == 0) {
            static constexpr std::string_view marks[] = {"<", ">",     "/",    "\"",    " ",
                                                         "&", "&amp;", "]]>",  "&#65;", "&e;",
                                                         "a", ":",     "\x01", "é"};
            // Nobody reads the name of the encoding of UTF-16.
            const std::size_t start = bytes.starts_with("<?") ? bytes.find('>') : 3;
            bytes.insert(start + random(bytes.size() - start), marks[random(std::size(marks))]);
        }
        if (!NuIsUtf8(bytes)) {
            continue;
        }
        TNuConformingOptions options;
        options.whiteSpace = static_cast<TNuConformingWhiteSpace>(random(3));
        options.namespaces = random(4) != 0;
        options.limits = random(4) == 0 ? someLimits(random) : TNuSaxLimits();
        TNuSaxLimits limits = random(4) == 0 ? someLimits(random) : TNuSaxLimits();
        const bool isFaulty =
            parse(bytes, options, false, Positions::None, {}).find("X fatal") != std::string::npos;
        limits = isFaulty ? TNuSaxLimits() : limits;
        wellFormed += isFaulty ? 0 : 1;
        const bool hasDefaults = bytes.find("<!ATTLIST") != bytes.npos;
        const Positions positions = isFaulty      ? Positions::None
                                    : hasDefaults ? static_cast<Positions>(random(2))
                                                  : static_cast<Positions>(random(4));
        // Text right before a fault may be told or not.
        const auto told = [&](bool isOnePass) {
            std::string text = parse(bytes, options, isOnePass, positions, limits);
            const std::size_t fault = isFaulty ? text.find("|F") : 0;
            const std::size_t last = text.rfind('|', fault == 0 ? 0 : fault - 1);
            if (fault != 0 && last != text.npos && text.compare(last, 3, "|T\"") == 0) {
                text.erase(last, fault - last);
            }
            const bool hasWarnings = isFaulty && !options.namespaces;
            return hasDefaults || hasWarnings ? withoutColumns(text) : text;
        };
        ASSERT_EQ(told(true), told(false)) << "seed " << seed << ": " << bytes;
    }
    EXPECT_GT(wellFormed, inputs / 20);
}

} // namespace
