#include <bit>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "nuXmlParser/markupBlockNarrow.h"

namespace {

using nu::MarkupBlock;
using nu::StopSet;

constexpr StopSet sets[] = {StopSet::Less, StopSet::Quote, StopSet::Name, StopSet::Solid,
                            StopSet::Escaped};

bool isStop(StopSet set, char16_t unit) {
    constexpr std::u16string_view stops[] = {u"<", u"\"", u" >/:=", u"", u"&<>'"};
    return unit == 0 || (set == StopSet::Solid ? unit > 0x20
                                               : stops[static_cast<std::size_t>(set)].find(unit) !=
                                                     std::u16string_view::npos);
}

template <StopSet set>
void checkFind(MarkupBlock& block, const std::u16string& text, std::size_t from) {
    const PNuXmlChar last = text.data() + text.size() - 1;
    PNuXmlChar expected = text.data() + from;
    while (expected != last && !isStop(set, *expected)) {
        ++expected;
    }
    ASSERT_EQ(block.find<set>(text.data() + from, last) - text.data(), expected - text.data());
}

// Machines differ in which form they take, so each is held against the definition of the sets.
TEST(MarkupBlock, FindsStopsInBothForms) {
    std::mt19937 random(64);
    for (int round = 0; round < 5000; ++round) {
        // Few stops, so that searches go beyond a block; what packing to bytes might take for one.
        std::u16string text(MarkupBlock::length + random() % 150, u'\0');
        const auto spread = 1 + random() % 40;
        for (char16_t& unit : text) {
            constexpr std::u16string_view wanted = u"<\"&>'/:= \t\n\x1F!\x7F\x80\u013C\uFF3C\uE000";
            unit = random() % spread == 0 ? wanted[random() % wanted.size()]
                                          : static_cast<char16_t>(u'a' + random() % 26);
            unit = random() % 400 == 0 ? u'\0' : unit;
        }
        MarkupBlock::Masks masks;
        const std::uint64_t end = round % 3 == 0 ? std::uint64_t{1} << random() % 64 : 0;
        nu::detail::classifyNarrow(text.data(), end, masks);
        for (const StopSet set : sets) {
            for (std::size_t index = 0; index < MarkupBlock::length; ++index) {
                ASSERT_EQ(masks[static_cast<std::size_t>(set)] >> index & 1,
                          isStop(set, text[index]) || (end >> index & 1) != 0);
            }
        }
        MarkupBlock block;
        block.classify(text.data(), text.data() + text.size() - 1);
        for (int search = 0; search < 5; ++search) {
            const std::size_t from = random() % text.size();
            ASSERT_NO_FATAL_FAILURE(checkFind<StopSet::Less>(block, text, from));
            ASSERT_NO_FATAL_FAILURE(checkFind<StopSet::Quote>(block, text, from));
            ASSERT_NO_FATAL_FAILURE(checkFind<StopSet::Name>(block, text, from));
            ASSERT_NO_FATAL_FAILURE(checkFind<StopSet::Solid>(block, text, from));
            ASSERT_NO_FATAL_FAILURE(checkFind<StopSet::Escaped>(block, text, from));
        }
    }
}

} // namespace
