#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

#include "nuXmlParser/chars.h"
#include "nuXmlParser/markup/byteBlock.h"
#include "nuXmlParser/markup/byteName.h"
#include "nuXmlParser/textCounter.h"

/// \file
/// Content as nearly all documents have it, scanned in the bytes of UTF-8 as they came.

namespace nu::markup {

/// Reads start tags, end tags, comments and text between them, and hands each on as a whole; stops,
/// with nothing done, before the first thing that is not plain or comes near the end of the bytes.
///
/// Names are guessed by those that came behind the same name last time. What is taken means the
/// same, event by event, to the scanners that go step by step.
///
/// Plain is what the reader takes as it stands. Where `Sink::isXml` says so, plain is less: what
/// the standard demands of content by its bytes is true of it, and the reader takes it likewise. No
/// name is looked at, but end tags fit; the text is well-formed and of allowed characters.
///
/// `Sink` has `isXml`, a type `Name` (see ByteNames) and the operations
/// - `Name* nextElement()`: which name the next element has, by those before; null without a guess;
/// - `Name* element(bytes)`: the name that reads so, which becomes the next guess; null where it is
///   not plain; `Name* attribute(before, bytes)` in the same way, `before` being the name before;
/// - `bool startTag(name, less)` with the place of the tag, then for each attribute `bool
/// addAttribute(name, value, kinds)`, or
///   `bool addNothing()` where there is none behind a space, and at the end
///   `bool endStartTag(isEmptyElement, end)` with the place of what ends the tag;
///   `abandonStartTag()` where one of those between, or what stands in the tag, refuses it;
/// - `endEmptyElement()` behind the start tag of an empty element;
///   `bool endElement(isInnermost, end)` at an end tag, with whether its name is open();
/// - `Name* open()`: the name of the innermost element, null where it is not known; with `isXml`
///   also `std::string_view outerName()`, the name in that case;
/// - `bool addText(text, kinds)`, with `classifyText`, what is to be told of text, see
///   markup::classifyText; `bool addComment(text, isAscii)`;
/// - `keepsSpace()`: whether white space alone is text; `keepsInline()`: whether it is where it has
///   no line break.
///
/// Where `Name` is a LeafName, an element of nothing but a short text whose tags read as those of
/// the last one of its name is handed on in one, by
/// - `Name* nextLeaf()`: nextElement() where it has a tag that means the same again, else null;
/// - `bool takeLeaf(name, text, kinds)`.
///
/// False where that cannot be taken here, and nothing came of it: the scanners that go step by step
/// take it instead, or what is a leaf is read in its parts. Behind all texts at least 16 bytes more
/// can be read.
template <class Sink> class PlainContent {
public:
    using Name = typename Sink::Name;
    static constexpr bool takesLeaves = std::is_base_of_v<LeafName, Name>;

    explicit PlainContent(Sink& sink) noexcept : sink_(sink) {}

    /// Reads from a "<" or ">" on up to the "<" or ">" that is not plain. What is passed ends
    /// there, and at the last character of what is at hand whenever the sink is told of something.
    void read(std::string_view bytes, PassedBytes& passed) {
        if (setLimit(bytes)) {
            readFrom(bytes.data(), passed);
        }
    }
    /// The same from what stands right behind a ">".
    void readBehindTag(std::string_view bytes, PassedBytes& passed) {
        if (setLimit(bytes)) {
            if (const char* const next = readText(bytes.data(), passed)) {
                readFrom(next, passed);
            }
        }
    }
    /// Takes the start tag that bytes begin with and nothing behind it; false where it is not
    /// plain.
    bool readTag(std::string_view bytes, PassedBytes& passed) {
        if (!setLimit(bytes)) {
            return false;
        }
        const char* const end = readStartTag(bytes.data(), passed);
        passed.end = end != nullptr ? end : bytes.data();
        return end != nullptr;
    }

    /// Whether text began where that stopped, and not one of its bytes is the end of it, or keeps
    /// it from being plain.
    [[nodiscard]] bool endsInText() const noexcept { return endsInText_; }

private:
    /// False where that is not enough to read anything.
    bool setLimit(std::string_view bytes) noexcept {
        if (bytes.size() <= reach) {
            return false;
        }
        end_ = bytes.data() + bytes.size();
        limit_ = end_ - reach;
        return true;
    }
    [[gnu::always_inline]] void readFrom(const char* place, PassedBytes& passed) {
        for (;;) {
            const char* const next = *place == cNuGtA        ? readText(place + 1, passed)
                                     : place[1] == cNuSlashA ? readEndTag(place, passed)
                                     : place[1] == cNuExclA  ? readComment(place, passed)
                                                             : readStartTag(place, passed);
            if (next == nullptr) {
                passed.end = place;
                return;
            }
            place = next;
        }
    }

    static bool isControl(char byte) noexcept { return static_cast<unsigned char>(byte) < ' '; }
    static bool isSolid(char byte) noexcept { return static_cast<unsigned char>(byte) > ' '; }
    static std::string_view text(const char* start, const char* end) noexcept {
        return {start, static_cast<std::size_t>(end - start)};
    }

    /// From behind the ">" of a tag over text, white space or nothing to the "<" behind it.
    [[gnu::always_inline]] const char* readText(const char* start, PassedBytes& passed) {
        // 1. The character behind a tag is read raw.
        if (start > limit_) [[unlikely]] {
            return nullptr;
        }
        if (*start == cNuLtA) {
            return start;
        }
        const bool isLineFeed = *start == '\n';
        const bool isLineEnd = *start == '\r' && start[1] == '\n';
        if (isControl(*start) && !isLineFeed && !isLineEnd) {
            return nullptr;
        }

        // 2. The first solid one tells what follows.
        const char* solid = start;
        if (!isSolid(*start) && !sink_.keepsSpace()) {
            solid = findSolid(start, limit_);
            if (solid == nullptr) {
                return nullptr;
            }
        }
        const bool isText = *solid != cNuLtA || isInlineSpace(text(start, solid));
        const char* end = solid;
        PassedKinds kinds;
        if (isText || Sink::isXml) {
            // 3. Text. A ">" right behind a tag is none.
            end = findTextEnd(Sink::isXml ? start : solid, kinds);
            endsInText_ = end == nullptr;
            if (end == nullptr || *end != cNuLtA || *start == cNuGtA) {
                return nullptr;
            }
        }
        const char* const lineFeedBefore = passed.deliveredLineFeed;
        const int controls = isLineFeed || isLineEnd ? 1 : 0;
        passed.deliveredLineFeed = isLineFeed ? start : lineFeedBefore;
        passed.deliveredControls += controls;
        passed.end = end;
        if (isText && !sink_.addText(text(start, end), kinds)) [[unlikely]] {
            passed.deliveredLineFeed = lineFeedBefore;
            passed.deliveredControls -= controls;
            return nullptr;
        }
        return end;
    }

    /// The "<" behind text, or what keeps it from being plain.
    [[gnu::always_inline]] const char* findTextEnd(const char* place, PassedKinds& kinds) const {
        const char* const end = findText(place, limit_, kinds);
        // A long one often ends where its document does.
        return end != nullptr ? end
                              : findStopNearEnd(std::max(place, limit_), end_, kinds, findText);
    }
    [[gnu::always_inline]] static const char* findText(const char* place, const char* limit,
                                                       PassedKinds& kinds) noexcept {
        if constexpr (Sink::isXml) {
            return findStopBehindReferences<classifyXmlText>(place, limit, kinds);
        } else {
            return findStop<Sink::classifyText>(place, limit, kinds);
        }
    }

    bool isInlineSpace(std::string_view space) const noexcept {
        return sink_.keepsInline() && space.find('\n') == space.npos;
    }

    /// Takes the start tag at `less` and gives the place of its ">".
    [[gnu::always_inline]] const char* readStartTag(const char* less, PassedBytes& passed) {
        // 1. The name.
        if (less > limit_) [[unlikely]] {
            return nullptr;
        }
        if constexpr (takesLeaves) {
            if (const char* const end = readLeaf(less, passed)) {
                return end;
            }
        }
        const char* const start = less + 1;
        Name* name = sink_.nextElement();
        const char* place = nullptr;
        if (name != nullptr && name->standsAt(start) && endsElementName(start + name->text.size()))
            [[likely]] {
            place = start + name->text.size();
        } else {
            place = findElementNameEnd(start);
            if (place == nullptr || (name = sink_.element(text(start, place))) == nullptr) {
                return nullptr;
            }
        }

        // 2. The attributes, and what ends the tag.
        if (!sink_.startTag(*name, less)) [[unlikely]] {
            return nullptr;
        }
        if (*place == cNuSpaceA) {
            place = readAttributes(place, *name);
            if (place == nullptr) [[unlikely]] {
                sink_.abandonStartTag();
                return nullptr;
            }
        }
        const bool isEmptyElement = *place == cNuSlashA;
        passed.end = place;
        if (!sink_.endStartTag(isEmptyElement, place)) [[unlikely]] {
            return nullptr;
        }

        // 3. An empty element ends where it starts.
        if (isEmptyElement) {
            sink_.endEmptyElement();
            ++place;
        }
        return place;
    }

    /// Takes the element at `less` where it is a leaf as it often comes, and gives the place of the
    /// ">" of its end tag.
    [[gnu::always_inline]] const char* readLeaf(const char* less, PassedBytes& passed) {
        // 1. The start tag reads as the last one.
        Name* const name = sink_.nextLeaf();
        if (name == nullptr || !name->standsAt(less + 1)) {
            return nullptr;
        }
        const char* const tag = less + 1 + name->text.size();
        const char* const start = tag + name->tagSize;
        if (!name->tag.standsAt(tag) || start > limit_) {
            return nullptr;
        }
        // 2. Text begins right behind it. A long one is better looked at once only.
        constexpr std::ptrdiff_t longest = 256;
        if (!isSolid(*start) || *start == cNuGtA) {
            return nullptr;
        }
        PassedKinds kinds;
        const char* const end = findText(start, std::min(limit_, start + longest), kinds);
        // 3. So does the end tag behind that.
        if (end == nullptr || end > limit_ || *end != cNuLtA || end[1] != cNuSlashA ||
            !name->standsAt(end + 2) || end[2 + name->text.size()] != cNuGtA) {
            return nullptr;
        }
        passed.end = end + 2 + name->text.size();
        return sink_.takeLeaf(*name, text(start, end), kinds) ? passed.end : nullptr;
    }

    static bool endsElementName(const char* place) noexcept {
        return *place == cNuSpaceA || *place == cNuGtA ||
               (*place == cNuSlashA && place[1] == cNuGtA);
    }

    /// The name ends at a space or at the end of the tag. It cannot begin with a control character,
    /// which a read would skip, or with what begins other markup or draws a warning.
    [[gnu::noinline]] const char* findElementNameEnd(const char* start) const noexcept {
        if constexpr (Sink::isXml) {
            const char* const end = findTagNameEnd(start, limit_);
            return end != nullptr && end != start && endsElementName(end) ? end : nullptr;
        }
        if (static_cast<unsigned char>(*start) <= cNuQuestA) {
            return nullptr;
        }
        const char* place = start;
        do {
            place = findByte<cNuSpaceA, cNuGtA, cNuSlashA, cNuColonA, '\0'>(place + 1, limit_);
            if (place == nullptr || place > limit_ || *place == '\0' ||
                (*place == cNuColonA && (isControl(place[1]) || place[1] == cNuColonA)) ||
                (*place == cNuSlashA && place[1] != cNuGtA)) {
                return nullptr;
            }
        } while (*place == cNuColonA);
        return place;
    }

    /// From the space behind the name of an element to the end of its tag.
    [[gnu::always_inline]] const char* readAttributes(const char* space, Name& name) {
        const char* place = isSolid(space[1]) ? space + 1 : skipSpace(space);
        if (place == nullptr || (endsTag(*place) && !sink_.addNothing())) [[unlikely]] {
            return nullptr;
        }
        Name* before = &name;
        while (!endsTag(*place)) {
            place = readAttribute(place, before);
            if (place == nullptr) [[unlikely]] {
                return nullptr;
            }
        }
        return *place == cNuSlashA && place[1] != cNuGtA ? nullptr : place;
    }

    /// The first solid character behind white space in a tag.
    [[nodiscard]] const char* skipSpace(const char* place) const noexcept {
        if constexpr (Sink::isXml) {
            // The reader counts no CR as a line.
            while (*place == cNuSpaceA || *place == '\n' || *place == '\t') {
                if (++place > limit_) {
                    return nullptr;
                }
            }
            return isSolid(*place) ? place : nullptr;
        } else {
            return findSolid(place, limit_);
        }
    }

    static bool endsTag(char byte) noexcept { return byte == cNuGtA || byte == cNuSlashA; }

    /// Takes the attribute whose name begins at `start` and gives the first character behind the
    /// spaces after its value.
    [[gnu::always_inline]] const char* readAttribute(const char* start, Name*& before) {
        // 1. The name ends at "=", with a quote and the value right behind it.
        if (start > limit_) [[unlikely]] {
            return nullptr;
        }
        Name* name = before->followers[ByteName::Attribute];
        const char* nameEnd = nullptr;
        if (name != nullptr && name->standsAt(start) && opensValue(start + name->text.size()))
            [[likely]] {
            nameEnd = start + name->text.size();
        } else {
            nameEnd = findAttributeNameEnd(start);
            if (nameEnd == nullptr ||
                (name = sink_.attribute(*before, text(start, nameEnd))) == nullptr) {
                return nullptr;
            }
        }
        before = name;

        // 2. The value, and what comes after it.
        const char* const value = nameEnd + 2;
        PassedKinds kinds;
        const char* const valueEnd = findValueEnd(value, kinds);
        if (valueEnd == nullptr || *valueEnd != cNuQuoteA ||
            !sink_.addAttribute(*name, text(value, valueEnd), kinds)) [[unlikely]] {
            return nullptr;
        }
        const char* const next = valueEnd + 1;
        if (isSolid(*next)) {
            return Sink::isXml && !endsTag(*next) ? nullptr : next;
        }
        return *next == cNuSpaceA && isSolid(next[1]) ? next + 1 : skipSpace(next);
    }

    /// The closing quote of a value, or what keeps it from being plain.
    [[gnu::always_inline]] const char* findValueEnd(const char* value, PassedKinds& kinds) const {
        if constexpr (Sink::isXml) {
            return findStopBehindReferences<classifyXmlValue>(value, limit_, kinds);
        } else {
            return isControl(*value) ? nullptr : findStop<classifyValue>(value, limit_, kinds);
        }
    }

    static bool opensValue(const char* place) noexcept {
        return place[0] == cNuEqualA && place[1] == cNuQuoteA;
    }

    [[gnu::noinline]] const char* findAttributeNameEnd(const char* start) const noexcept {
        if constexpr (Sink::isXml) {
            const char* const end = findTagNameEnd(start, limit_);
            return end != nullptr && end != start && opensValue(end) ? end : nullptr;
        }
        const char* place = start;
        for (;; ++place) {
            place =
                findByte<cNuSpaceA, cNuGtA, cNuSlashA, cNuColonA, cNuEqualA, '\0'>(place, limit_);
            if (place == nullptr || place > limit_ || place == start) {
                return nullptr;
            }
            if (*place != cNuColonA) {
                return opensValue(place) ? place : nullptr;
            }
        }
    }

    /// Takes the end tag at `less` and gives the place of its ">".
    [[gnu::always_inline]] const char* readEndTag(const char* less, PassedBytes& passed) {
        if (less > limit_) [[unlikely]] {
            return nullptr;
        }
        const char* const start = less + 2;
        const Name* open = sink_.open();
        const char* end = nullptr;
        const bool isInnermost =
            open != nullptr && open->standsAt(start) && start[open->text.size()] == cNuGtA;
        if (isInnermost) [[likely]] {
            end = start + open->text.size();
        } else if constexpr (Sink::isXml) {
            return open == nullptr ? readOuterEndTag(start, passed) : nullptr;
        } else {
            // Whatever stands there: nobody compares it with the name of the element.
            end = isControl(*start) ? nullptr : findByte<cNuGtA, '\0'>(start + 1, limit_);
            if (end == nullptr || *end == '\0') {
                return nullptr;
            }
        }
        passed.end = end;
        return sink_.endElement(isInnermost, end) ? end : nullptr;
    }

    /// The same for the name behind "</" where that of the element was not read here.
    [[gnu::noinline]] const char* readOuterEndTag(const char* start, PassedBytes& passed) {
        const std::string_view name = sink_.outerName();
        if (name.size() > ByteName::longestGuess ||
            std::memcmp(start, name.data(), name.size()) != 0 || start[name.size()] != cNuGtA) {
            return nullptr;
        }
        passed.end = start + name.size();
        return sink_.endElement(true, passed.end) ? passed.end : nullptr;
    }

    /// Takes the comment at `less` and gives the place of its ">". Control characters would have to
    /// be dropped, and two dashes inside are better looked at.
    [[gnu::noinline]] const char* readComment(const char* less, PassedBytes& passed) {
        if (less > limit_ || less[2] != cNuLineA || less[3] != cNuLineA) {
            return nullptr;
        }
        const char* const start = less + 4;
        PassedKinds kinds;
        const char* place = start;
        for (bool isAscii = true;; ++place) {
            place = findStop<classifyComment>(place, limit_, kinds);
            if (place == nullptr || place > limit_ || *place != cNuLineA) {
                return nullptr;
            }
            isAscii = isAscii && kinds.isAscii;
            if (place[1] == cNuLineA) {
                kinds.isAscii = isAscii;
                break;
            }
        }
        if (place[2] != cNuGtA) {
            return nullptr;
        }
        passed.end = place + 2;
        return sink_.addComment(text(start, place), kinds.isAscii) ? passed.end : nullptr;
    }

    Sink& sink_;
    const char* limit_ = nullptr; ///< behind which nothing but the end of a text is looked for
    const char* end_ = nullptr;
    bool endsInText_ = false;
};

} // namespace nu::markup
