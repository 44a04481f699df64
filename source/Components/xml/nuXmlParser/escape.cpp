#include "nuXmlParser/escape.h"

#include <algorithm>
#include <array>
#include <utility>

#include "host/runtime/exception.h"
#include "nuXmlParser/chars.h"
#include "nuXmlParser/scan.h"
#include "nuXmlParser/textRewriter.h"

namespace {

/// The replacements by character. All replaced characters lie in the first 64 codes.
template <class Unit>
constexpr auto replacements = [] {
    std::array<nu::Replacement<Unit>, 64> table{};
    auto set = [&](char character, std::string_view text) {
        auto& entry = table[static_cast<std::size_t>(character)];
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

/// Hands the escaped text to `target`. The characters to look for are `escaped`; one without a
/// replacement is dropped.
template <char... escaped, class Unit, class Target>
void escapeTo(Target& target, std::basic_string_view<Unit> text) {
    const Unit* const end = text.data() + text.size();
    const Unit* place = nu::findOneOf<escaped...>(text.data(), end);
    if (place == end) {
        target.add(text);
        return;
    }
    nu::TextRewriter<Unit, Target> rewriter(text, target, text.size() + text.size() / 4);
    rewriter.addPiece(text.data(), place);
    rewriter.template replaceAll<escaped...>(place, [](Unit unit) -> const nu::Replacement<Unit>& {
        return replacements<Unit>[static_cast<std::size_t>(unit)];
    });
    rewriter.finish();
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
        host::failAssertion(u"Assertion failure", u"source\\Components\\xml\\uNuXMLParser", 458);
    }
    if (length == 0) {
        return;
    }
    StreamTarget streamTarget{target};
    escapeTo<cNuAposA, cNuQuoteA, cNuAmpA, cNuLtA, cNuGtA>(streamTarget,
                                                           std::u16string_view(text, length));
}

std::u16string NuStrToXML(std::u16string_view text) {
    nu::StringTarget<char16_t> target;
    escapeTo<cNuAposA, cNuQuoteA, cNuAmpA, cNuLtA, cNuGtA, '\0'>(target, text);
    return std::move(target.string);
}

std::string NuStrToXML(std::string_view text) {
    nu::StringTarget<char> target;
    escapeTo<cNuAposA, cNuQuoteA, cNuAmpA, cNuLtA, cNuGtA>(target, text);
    return std::move(target.string);
}
