#include <algorithm>
#include <array>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "common/simd/block.h"
#include "common/simd/tally.h"

using nu::simd::Block;
using nu::simd::PortableBlock;

namespace {

/// What the operations make of some characters, for either form of a block.
template <class Any, class Unit>
std::array<unsigned, 9> outcomes(const Unit* text, unsigned char c) {
    const auto load = [](const auto* from) {
        if constexpr (sizeof *from == 1) {
            return Any::load(from);
        } else {
            return Any::loadUnits(from);
        }
    };
    const Any first = load(text);
    const Any second = load(text + 1);
    const Any controls = first.isAtMost(0x1F);
    return {nu::simd::isAnyOf<'<', '>', '&', '\0'>(first).mask(),
            (first.isAtMost(c) | second.equals(Any::all('='))).mask(),
            controls.butNot(nu::simd::isAnyOf<'\n'>(second)).mask(),
            (nu::simd::isAnyOf<'"'>(first) & second.isAtMost(c)).mask(),
            static_cast<unsigned>(Any::all(1).less(controls).sum()),
            nu::simd::isAnyOf<'<', '='>(Any::template loadPieces<8>(text, text + 3)).mask(),
            nu::simd::isAnyOf<'<', '='>(Any::template loadPieces<4>(text, text + 3)).mask(),
            sizeof(Unit) == 1 ? first.isAtLeast(c).mask() : 0,
            sizeof(Unit) == 1 ? first.beginsSequence().mask() : 0};
}

template <class Any> std::array<char16_t, 16> widened(const char* bytes) {
    std::array<char16_t, 16> units{};
    Any::load(bytes).widen(units.data());
    return units;
}

template <class Any> std::string narrowed(const char16_t* units) {
    std::array<char, 17> whole{};
    std::array<char, 9> half{};
    const bool isWhole = Any::template narrowAscii<16>(units, whole.data());
    const bool isHalf = Any::template narrowAscii<8>(units, half.data());
    return std::string(whole.data()) + (isWhole ? "|" : "-") + half.data() + (isHalf ? "|" : "-");
}

TEST(Simd, BothFormsOfABlockDoTheSame) {
    std::mt19937 random(11);
    std::discrete_distribution<int> kind({60, 20, 10, 10});
    const auto draw = [&]() -> char16_t {
        constexpr char16_t markup[] = u"<>&\"'=\n\t/:";
        switch (kind(random)) {
        case 0:
            return static_cast<char16_t>('a' + random() % 26);
        case 1:
            return markup[random() % (std::size(markup) - 1)];
        case 2:
            return static_cast<char16_t>(random() % 0x7F);
        default: // U+007F is the one that may be taken for another
            return static_cast<char16_t>(0x80 + random() % 0xFF80);
        }
    };
    for (int round = 0; round < 20000; ++round) {
        std::array<char16_t, 20> units;
        std::array<char, 20> bytes;
        for (std::size_t index = 0; index < units.size(); ++index) {
            units[index] = draw();
            bytes[index] = static_cast<char>(units[index]);
        }
        const auto limit = static_cast<unsigned char>(random());
        const auto low = static_cast<unsigned char>(limit % 0x7F);
        ASSERT_EQ(outcomes<Block>(bytes.data(), limit),
                  outcomes<PortableBlock>(bytes.data(), limit));
        ASSERT_EQ(outcomes<Block>(units.data(), low), outcomes<PortableBlock>(units.data(), low));
        ASSERT_EQ(widened<Block>(bytes.data()), widened<PortableBlock>(bytes.data()));
        ASSERT_EQ(narrowed<Block>(units.data()), narrowed<PortableBlock>(units.data()));
    }
}

/// Machines differ in which form they take, so each is held against a plain count.
template <class Unit> void tallyInBothForms(std::mt19937& random) {
    using Form = nu::simd::Tally (*)(const Unit*&, const Unit*) noexcept;
    const Form wide = nu::simd::hasWideBlocks() ? &nu::simd::detail::tallyWide<Unit>
                                                : &nu::simd::detail::tallyNarrow<Unit>;
    for (int round = 0; round < 100; ++round) {
        // Up to more than one sum can hold, of nothing but matches at times.
        std::vector<Unit> units(random() % 20000);
        const auto kinds = static_cast<unsigned>(1 + random() % 0x180);
        for (Unit& unit : units) {
            unit = static_cast<Unit>('\n' + random() % kinds);
        }
        for (const Form form : {wide, Form(&nu::simd::detail::tallyNarrow<Unit>)}) {
            const Unit* place = units.data();
            const nu::simd::Tally tally = form(place, units.data() + units.size());
            const auto count = [&](auto&& isWanted) {
                return std::count_if(const_cast<const Unit*>(units.data()), place, isWanted);
            };
            ASSERT_LT(units.data() + units.size() - place, 32);
            ASSERT_EQ(tally.lineFeeds, count([](Unit unit) { return unit == Unit('\n'); }));
            ASSERT_EQ(tally.controls, count([](Unit unit) {
                          return (sizeof unit == 1 ? unit & 0xFF : unit) < 0x20;
                      }));
        }
    }
}

TEST(Simd, BothFormsOfATallyCountTheSame) {
    std::mt19937 random(5);
    tallyInBothForms<char>(random);
    tallyInBothForms<char16_t>(random);
}

} // namespace
