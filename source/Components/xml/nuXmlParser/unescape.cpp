#include "nuXmlParser/unescape.h"

#include <cstring>

#include "common/codePage.h"
#include "nuXmlParser/chars.h"
#include "nuXmlParser/htmlEntities.h"
#include "nuXmlParser/referenceNumber.h"
#include "nuXmlParser/scan.h"
#include "nuXmlParser/textRewriter.h"

namespace {

/// Decodes what stands between "&" and ";" of UTF-16 text.
struct WideDecoder {
    using Unit = char16_t;

    template <class Target> static bool decode(std::u16string_view reference, Target& target) {
        if (!reference.empty() && reference.front() == u'#') {
            target.addUnit(nu::referencedUnit(reference.substr(1)));
            return true;
        }
        const char16_t character = nu::findEntity(reference);
        if (character == 0) {
            return false;
        }
        target.addUnit(character);
        return true;
    }
};

/// The same for 8-bit text.
struct NarrowDecoder {
    using Unit = char;

    template <class Target> static bool decode(std::string_view reference, Target& target) {
        switch (reference.empty() ? '\0' : reference.front()) {
        case '#': {
            const char16_t unit = nu::referencedUnit(reference.substr(1));
            const std::string bytes = NuWideStringToAnsiString({&unit, 1});
            for (const char byte : bytes) {
                target.addUnit(byte);
            }
            return true;
        }
        case 'a':
        case 'A':
            target.addUnit(cNuAmpA);
            return true;
        case 'g':
        case 'G':
            target.addUnit(cNuGtA);
            return true;
        case 'l':
        case 'L':
            target.addUnit(cNuLtA);
            return true;
        case 'q':
        case 'Q':
            target.addUnit(cNuQuoteA);
            return true;
        default:
            return false;
        }
    }
};

/// Moves the pieces of a text towards its start, over what was replaced there.
template <class Unit> class InPlaceRewriter {
public:
    InPlaceRewriter(Unit* text, const Unit* end) noexcept : target_(text), end_(end) {}

    void addPiece(const Unit* from, const Unit* to) noexcept {
        const auto count = static_cast<std::size_t>(to - from);
        std::memmove(target_, from, count * sizeof(Unit));
        target_ += count;
    }
    template <char... sought> const Unit* copyUntil(const Unit* from) noexcept {
        const Unit* const to = nu::findOneOf<sought...>(from, end_);
        addPiece(from, to);
        return to;
    }
    void addUnit(Unit unit) noexcept { *target_++ = unit; }
    [[nodiscard]] Unit* target() const noexcept { return target_; }

private:
    Unit* target_;
    const Unit* end_;
};

/// Rewrites what stands from the "&" at `place` on.
template <class Decoder, class Rewriter, class Unit>
void unescape(const Unit* place, const Unit* end, Rewriter& rewriter) {
    while (place != end) {
        // 1. The reference reaches to the next ";". What the search runs over is not looked at
        //    again, so "&a&amp;" stays as it is.
        const Unit* const start = place;
        place = nu::findOneOf<cNuSemiColonA, cNuSpaceA>(start, end);
        // 2. Replace it, or keep its text.
        const bool isClosed = place != end && *place == static_cast<Unit>(cNuSemiColonA);
        if (isClosed && Decoder::decode(std::basic_string_view<Unit>(start + 1, place), rewriter)) {
            ++place;
        } else {
            rewriter.addPiece(start, place);
        }
        // 3. On to the next one.
        place = rewriter.template copyUntil<cNuAmpA>(place);
    }
}

template <class Decoder, class Unit> auto unescaped(std::basic_string_view<Unit> text) {
    const Unit* const end = text.data() + text.size();
    const Unit* const place = nu::findOneOf<cNuAmpA>(text.data(), end);
    if (place == end) {
        return std::basic_string<Unit>(text);
    }
    nu::StringTarget<Unit> target;
    nu::TextRewriter<Unit, nu::StringTarget<Unit>> rewriter(text, target, text.size());
    rewriter.addPiece(text.data(), place);
    unescape<Decoder>(place, end, rewriter);
    rewriter.finish();
    return std::move(target.string);
}

} // namespace

std::u16string NuXMLToStr(std::u16string_view text) { return unescaped<WideDecoder>(text); }

std::string NuXMLToStr(std::string_view text) { return unescaped<NarrowDecoder>(text); }

void nu::unescapeFrom(std::u16string& text, std::size_t start) {
    char16_t* const end = text.data() + text.size();
    const char16_t* const first = text.data() + start;
    const char16_t* const place = findOneOf<cNuAmpA>(first, static_cast<const char16_t*>(end));
    if (place != end) {
        InPlaceRewriter<char16_t> rewriter(text.data() + (place - text.data()), end);
        unescape<WideDecoder>(place, static_cast<const char16_t*>(end), rewriter);
        text.resize(static_cast<std::size_t>(rewriter.target() - text.data()));
    }
}
