#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "host/runtime/unicode.h"

namespace support {

/// Random numbers that are the same everywhere: each seed names one sequence.
class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed * 0x9E3779B97F4A7C15) {}

    /// Below `limit`.
    std::size_t operator()(std::size_t limit) {
        std::uint64_t mixed = state_ += 0x9E3779B97F4A7C15;
        mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9;
        mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EB;
        return static_cast<std::size_t>((mixed ^ (mixed >> 31U)) % limit);
    }

private:
    std::uint64_t state_;
};

/// The number of inputs a random test tries: `standard`, or times NUXML_RANDOM where that is set.
inline std::uint64_t randomInputs(std::uint64_t standard) {
    const char* factor = std::getenv("NUXML_RANDOM");
    return standard * (factor == nullptr ? 1 : std::strtoull(factor, nullptr, 10));
}

/// Text of 0 to 200 units that looks more or less like XML: single units, pieces of markup, or long
/// runs with few of both. Its length is often near a multiple of 64.
inline std::u16string randomMarkup(Random& random) {
    using namespace std::string_view_literals;
    // Behind the markup: units whose low byte, or whose saturated value, looks like markup.
    static constexpr std::u16string_view units =
        u"\0\x01\x1F \n\r\t<>/!?-[]\"'=:&;xXa\u00E9\u013C\u0120\u7F22\uFF00\uFF3C\uFF20"
        u"\u8022\uFF3A\xD83D"sv;
    static constexpr std::u16string_view pieces[] = {u"<a",
                                                     u"<p:b",
                                                     u"</a>",
                                                     u"</p:b>",
                                                     u"/>",
                                                     u">",
                                                     u" b=\"1\"",
                                                     u" p:c=\"",
                                                     u"\"",
                                                     u" xmlns:p=\"u\"",
                                                     u" xmlns=\"v\"",
                                                     u"<!--",
                                                     u"-->",
                                                     u"--",
                                                     u"<![CDATA[",
                                                     u"]]>",
                                                     u"<?pi ",
                                                     u"?>",
                                                     u"<!DOCTYPE d ",
                                                     u"\n",
                                                     u"  ",
                                                     u"text",
                                                     u" xml:space=\"preserve\"",
                                                     u"<a b=\"\n1\" ",
                                                     u"< ",
                                                     u" XMLNS:q=\"w\"",
                                                     u"\0"sv,
                                                     u" \0q=\"1\""sv};
    const std::size_t length =
        random(4) == 0 ? std::min<std::size_t>(64 * (1 + random(3)) + random(7) - 3, 200)
                       : random(201);
    const std::size_t style = random(3);
    std::u16string text;
    while (text.size() < length) {
        if (style == 0 || random(8) == 0) {
            text += units[random(units.size())];
        } else if (style == 1 || random(4) == 0) {
            text += pieces[random(std::size(pieces))];
        } else {
            text.append(random(90), static_cast<char16_t>(u'a' + random(26)));
        }
    }
    text.resize(length);
    return text;
}

/// The text in one of the encodings that a stream can have, often with bytes that are none of it:
/// marked, declared (in a tag before the text) or 8-bit text (behind a tag).
inline std::string randomEncoding(Random& random, std::u16string_view text) {
    const auto utf8 = [&] {
        std::string bytes = host::utf16ToUtf8(text);
        for (std::size_t faults = random(3) == 0 ? random(8) : 0; faults > 0; --faults) {
            static constexpr std::string_view parts[] = {"\x80", "\xF0\x9F\x98\x80", "\xE2\x82",
                                                         "\xF0\x9F", "\xFF"};
            bytes.insert(random(bytes.size() + 1), parts[random(std::size(parts))]);
        }
        return bytes;
    };
    switch (random(4)) {
    case 0:
        return "\xEF\xBB\xBF" + utf8();
    case 1:
        return "<?UTF-8?>" + utf8();
    case 2: {
        std::string bytes = "\xFF\xFE<";
        bytes += '\0';
        bytes.append(reinterpret_cast<const char*>(text.data()), 2 * text.size());
        return bytes.substr(0, bytes.size() - random(2));
    }
    default:
        return "<?x?>" + utf8();
    }
}

} // namespace support
