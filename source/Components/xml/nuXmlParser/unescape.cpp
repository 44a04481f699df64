#include "nuXmlParser/unescape.h"

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

template <class Decoder, class Unit> auto unescape(std::basic_string_view<Unit> text) {
    const Unit* const end = text.data() + text.size();
    const Unit* place = nu::findOneOf<cNuAmpA>(text.data(), end);
    if (place == end) {
        return std::basic_string<Unit>(text);
    }

    nu::StringTarget<Unit> target;
    nu::TextRewriter<Unit, nu::StringTarget<Unit>> rewriter(text, target, text.size());
    rewriter.addPiece(text.data(), place);
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
    rewriter.finish();
    return std::move(target.string);
}

} // namespace

std::u16string NuXMLToStr(std::u16string_view text) { return unescape<WideDecoder>(text); }

std::string NuXMLToStr(std::string_view text) { return unescape<NarrowDecoder>(text); }
