#include "common/utf8StreamAdapter.h"

#include <gtest/gtest.h>

#include "common/utf8.h"
#include "host/runtime/exception.h"
#include "host/runtime/memoryStream.h"
#include "support/oddStream.h"
#include "support/randomText.h"

namespace {

using namespace std::string_literals;
using support::OddStream;
using support::utf16Bytes;

/// Bytes that are UTF-8 for the most part.
std::string randomBytes(support::Random& random) {
    static const std::string pieces[] = {
        "a",        "<b c=\"d\">",  "\xC3\xA9",           "\xE2\x82\xAC", "\xF0\x9F\x98\x80",
        "\x80",     "\xF0\x9F\x98", "\xED\xA0\x80",       "\xEF\xBB\xBF", "\xFF",
        "\xE2\x82", "\xF4\x90",     std::string(70, 'x'), "\0"s};
    std::string bytes;
    const std::size_t length = random(300);
    while (bytes.size() < length) {
        bytes += pieces[random(std::size(pieces))];
    }
    return bytes;
}

/// However the reads are cut, and wherever the stream beneath is put back to in between.
TEST(UTF8StreamAdapter, readsWhatDecodingAtOnceGives) {
    const std::uint64_t inputs = support::randomInputs(20'000);
    for (std::uint64_t seed = 0; seed < inputs; ++seed) {
        support::Random random(seed);
        const std::string bytes = randomBytes(random);
        OddStream stream(bytes);
        stream.readsAtMost = random(2) == 0 ? 1 + random(9) : bytes.size() + 1;
        TNuUTF8StreamAdapter adapter(&stream);
        const std::size_t most = 1 + random(random(2) == 0 ? 6 : 400);
        std::string text;
        for (;;) {
            const std::int64_t before = stream.GetPosition();
            char buffer[400];
            const std::size_t count = 1 + random(most);
            const std::size_t got = adapter.Read(buffer, count);
            ASSERT_LE(got, count);
            const bool isBetweenUnits = text.size() % 2 == 0 && got % 2 == 0;
            if (got > 0 && isBetweenUnits && random(3) == 0) {
                stream.SetPosition(before); // whatever was delivered comes again
                continue;
            }
            text.append(buffer, got);
            if (got == 0) {
                break;
            }
        }
        ASSERT_EQ(text, utf16Bytes(NuFromUtf8(bytes))) << "seed " << seed;
    }
}

TEST(UTF8StreamAdapter, writesWhatEncodingAtOnceGives) {
    const std::uint64_t inputs = support::randomInputs(20'000);
    for (std::uint64_t seed = 0; seed < inputs; ++seed) {
        support::Random random(seed);
        std::u16string text;
        for (std::size_t left = random(random(50) == 0 ? 60'000 : 200); left > 0; --left) {
            text += u"ab\u00E9\u20AC\xD83D\xD83D\xDE00\xDE00"[random(8)];
        }
        const std::string bytes = utf16Bytes(text);
        host::TMemoryStream target;
        {
            TNuUTF8StreamAdapter adapter(&target, seed % 2 == 0);
            for (std::size_t done = 0; done < bytes.size();) {
                const std::size_t piece =
                    std::min(1 + random(random(2) == 0 ? 5 : 90'000), bytes.size() - done);
                ASSERT_EQ(adapter.Write(bytes.data() + done, piece), piece);
                done += piece;
            }
            EXPECT_EQ(adapter.GetPosition(), static_cast<std::int64_t>(bytes.size()));
        }
        const std::string_view written(reinterpret_cast<const char*>(target.Memory()),
                                       static_cast<std::size_t>(target.GetSize()));
        ASSERT_EQ(written, (seed % 2 == 0 ? "\xEF\xBB\xBF" : "") + NuToUtf8(text)) << seed;
    }
}

TEST(UTF8StreamAdapter, copiesTextOfAnySize) {
    std::u16string text;
    while (text.size() < 200'000) {
        text += u"0123456\u00E9\u20AC\xD83D\xDE00";
    }
    host::TMemoryStream target;
    {
        host::TMemoryStream source(utf16Bytes(text));
        TNuUTF8StreamAdapter adapter(&target);
        adapter.CopyFrom(source, 0);
    }
    target.SetPosition(0);
    TNuUTF8StreamAdapter adapter(&target);
    std::u16string back(text.size(), u'?');
    adapter.ReadBuffer(back.data(), 2 * back.size());
    EXPECT_EQ(back, text);
    EXPECT_EQ(adapter.Read(back.data(), 2), 0U);
}

TEST(UTF8StreamAdapter, reportsWhatTheStreamBeneathCannot) {
    EXPECT_THROW(TNuUTF8StreamAdapter(nullptr), host::Exception);
    {
        TNuUTF8StreamAdapter adapter(new OddStream("abc"), false, true);
        EXPECT_EQ(OddStream::alive, 1);
        EXPECT_THROW(adapter.Write("a", 2), host::EWriteError);
        EXPECT_THROW(adapter.GetSize(), host::EStreamError);
    }
    EXPECT_EQ(OddStream::alive, 0);
    OddStream stream("abcdef");
    EXPECT_THROW(TNuUTF8StreamAdapter(&stream, true), host::EWriteError);
    stream.failsAt = 3;
    TNuUTF8StreamAdapter adapter(&stream);
    char16_t units[8];
    EXPECT_EQ(adapter.Read(units, sizeof units), 6U);
    EXPECT_THROW(adapter.Read(units, sizeof units), host::EReadError);
}

/// The text can be ended where failures can still be told.
TEST(UTF8StreamAdapter, finishesWhatWaits) {
    host::TMemoryStream target;
    TNuUTF8StreamAdapter adapter(&target);
    const auto size = [&] { return target.GetSize(); };
    adapter.Write(u"a\xD83D", 4);
    adapter.Flush();
    EXPECT_EQ(size(), 1);
    adapter.Write("?", 1); // half a unit
    adapter.Finish();
    EXPECT_EQ(size(), 4);
    adapter.Finish();
    adapter.Write(u"b", 2);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(target.Memory()),
                          static_cast<std::size_t>(size())),
              "a\xEF\xBF\xBD"
              "b");
}

} // namespace
