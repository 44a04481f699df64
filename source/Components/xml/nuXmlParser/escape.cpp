#include "nuXmlParser/escape.h"

#include <algorithm>
#include <array>
#include <type_traits>
#include <utility>

#include "host/runtime/exception.h"
#include "nuXmlParser/chars.h"
#include "nuXmlParser/conversionErrors.h"
#include "nuXmlParser/scan.h"
#include "nuXmlParser/textRewriter.h"

namespace {

/// The replacements by character. All replaced characters lie in the first 64 codes.
template <class Unit>
constexpr auto replacements = [] {
    std::array<nu::Replacement<Unit>, 64> table{};
    auto set = [&](char character, std::string_view text) {
        auto& entry = table[static_cast<unsigned char>(character)];
        std::copy(text.begin(), text.end(), entry.text.begin());
        entry.length = text.size();
    };
    set(cNuAposA, "&apos;");
    set(cNuQuoteA, "&quot;");
    set(cNuAmpA, "&amp;");
    set(cNuLtA, "&lt;");
    set(cNuGtA, "&gt;");
    return table;
}();

/// Hands the escaped text to `target`. `place` is that of the first of the characters `escaped`;
/// one without a replacement is dropped.
template <char... escaped, class Unit, class Target>
void escapeFrom(const Unit* place, std::basic_string_view<Unit> text, Target& target) {
    nu::TextRewriter<Unit, Target> rewriter(text, target, text.size() + text.size() / 4);
    rewriter.addPiece(text.data(), place);
    rewriter.template replaceAll<escaped...>(place, [](Unit unit) -> const nu::Replacement<Unit>& {
        return replacements<Unit>[static_cast<std::make_unsigned_t<Unit>>(unit)];
    });
    rewriter.finish();
}

template <char... escaped, class Unit>
std::basic_string<Unit> escapeString(std::basic_string_view<Unit> text) {
    const Unit* const end = text.data() + text.size();
    const Unit* const place = nu::findOneOf<escaped...>(text.data(), end);
    if (place == end) {
        return std::basic_string<Unit>(text);
    }
    nu::StringTarget<Unit> target;
    escapeFrom<escaped...>(place, text, target);
    return std::move(target.string);
}

struct StreamTarget {
    TNuStringStream& stream;

    void add(std::u16string_view text) { stream.AddString(text); }
    /// The stream keeps its own growth: an exact reservation for each of many texts would copy the
    /// content again and again.
    void expect(std::size_t /*count*/) noexcept {}
};

} // namespace

void NuStrToXML(const char16_t* text, std::size_t length, TNuStringStream& target) {
    if (target.StringType() != cNuXmlStringType) {
        host::failAssertion(nu::messages::assertionFailure,
                            u"source\\Components\\xml\\uNuXMLParser", 458);
    }
    if (length == 0) {
        return;
    }
    StreamTarget streamTarget{target};
    escapeFrom<cNuAposA, cNuQuoteA, cNuAmpA, cNuLtA, cNuGtA>(
        text, std::u16string_view(text, length), streamTarget);
}

std::u16string NuStrToXML(std::u16string_view text) {
    return escapeString<cNuAposA, cNuQuoteA, cNuAmpA, cNuLtA, cNuGtA, '\0'>(text);
}

std::string NuStrToXML(std::string_view text) {
    return escapeString<cNuAposA, cNuQuoteA, cNuAmpA, cNuLtA, cNuGtA>(text);
}
