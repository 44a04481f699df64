#include "nuXmlParser/unescape.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "common/codePage.h"
#include "common/utf8.h"
#include "host/runtime/utf8Sequence.h"
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

/// Unescapes the text from `start` on, where it stands. Gives its new end.
char16_t* unescapeInPlace(char16_t* start, const char16_t* end) {
    const char16_t* const first = start;
    const char16_t* const place = nu::findOneOf<cNuAmpA>(first, end);
    if (place == end) {
        return start + (end - first);
    }
    InPlaceRewriter<char16_t> rewriter(start + (place - first), end);
    unescape<WideDecoder>(place, end, rewriter);
    return rewriter.target();
}

/// A text of UTF-8 on its way to UTF-16, see unescapeUtf8.
class Utf8Unescaper {
public:
    Utf8Unescaper(std::string_view bytes, char16_t* units) noexcept
        : place_(bytes.data()), end_(place_ + bytes.size()), units_(units) {}

    char16_t* run() {
        for (;;) {
            widenPlain();
            if (place_ == end_) {
                return units_;
            }
            if (*place_ != cNuAmpA) {
                decodeBeyondAscii();
            } else if (!replaceUsual()) {
                replaceOther();
            }
        }
    }

private:
    /// Up to the next reference, or character beyond ASCII. What a block writes behind them is
    /// written over.
    void widenPlain() noexcept {
        static_assert(nu::unescapeReach == nu::scanBlock);
        for (;;) {
            const auto block = nu::simd::Block::load(place_);
            const unsigned stops = nu::simd::isAnyOf<cNuAmpA>(block).mask() | block.mask();
            block.widen(units_);
            const auto left = static_cast<std::size_t>(end_ - place_);
            const std::size_t plain =
                std::min({std::size_t(std::countr_zero(stops)), nu::scanBlock, left});
            place_ += plain;
            units_ += plain;
            if (plain != nu::scanBlock) {
                return;
            }
        }
    }
    /// One character, or all up to the next reference where that is worth it.
    void decodeBeyondAscii() noexcept {
        constexpr std::ptrdiff_t worth = 64;
        if (end_ - place_ >= worth &&
            nu::findOneOf<cNuAmpA>(place_, place_ + worth) == place_ + worth) {
            const char* const stop = nu::findOneOf<cNuAmpA>(place_ + worth, end_);
            units_ += NuDecodeUtf8Prefix({place_, stop}, units_).Units;
            place_ = stop;
            return;
        }
        const auto bytesAt = [](const char* at) {
            return reinterpret_cast<const unsigned char*>(at);
        };
        const auto sequence = host::readUtf8Sequence(bytesAt(place_), bytesAt(end_));
        units_ = host::appendCodePoint(units_, sequence.codePoint);
        place_ += sequence.length;
    }
    /// A reference that texts are written with.
    bool replaceUsual() noexcept {
        const auto is = [rest = std::string_view(place_, end_), this](std::string_view reference,
                                                                      char unit) {
            if (!rest.starts_with(reference)) {
                return false;
            }
            *units_++ = static_cast<unsigned char>(unit);
            place_ += reference.size();
            return true;
        };
        return is("&lt;", cNuLtA) || is("&gt;", cNuGtA) || is("&amp;", cNuAmpA) ||
               is("&quot;", cNuQuoteA) || is("&apos;", cNuAposA);
    }
    /// Up to what ends any other reference, or keeps it from being one.
    void replaceOther() {
        const char* const stop = nu::findOneOf<cNuSemiColonA, cNuSpaceA>(place_, end_);
        const char* const behind = stop != end_ && *stop == cNuSemiColonA ? stop + 1 : stop;
        const std::size_t size = NuDecodeUtf8Prefix({place_, behind}, units_).Units;
        units_ = unescapeInPlace(units_, units_ + size);
        place_ = behind;
    }

    const char* place_;
    const char* end_;
    char16_t* units_;
};

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
    const char16_t* const end = unescapeInPlace(text.data() + start, text.data() + text.size());
    text.resize(static_cast<std::size_t>(end - text.data()));
}

char16_t* nu::unescapeUtf8(std::string_view bytes, char16_t* units) {
    return Utf8Unescaper(bytes, units).run();
}
