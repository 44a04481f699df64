#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

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
/// `Sink` has a type `Name` (see ByteNames) and the operations
/// - `Name* nextElement()`: which name the next element has, by those before; null without a guess;
/// - `Name* element(bytes)`: the name that reads so, which becomes the next guess; null where it is
///   not plain; `Name* attribute(before, bytes)` in the same way, `before` being the name before;
/// - `startTag(name)`, then for each attribute `bool addAttribute(name, value, kinds)`, and at the
///   end `bool endStartTag(isEmptyElement)`, or `abandonStartTag()` also where an attribute was
///   refused;
/// - `endEmptyElement()` behind the start tag of an empty element; `bool endElement()` at an end
///   tag;
/// - `Name* open()`: the name of the innermost element, null where it is not known;
/// - `addComment(text, isAscii)`, `bool addText(text, kinds)`, and `keepsSpace()`: whether white
///   space alone is text; `classifyText`, what is to be told of text: see markup::classifyText.
///
/// False where that cannot be taken here, and nothing came of it: the scanners that go step by step
/// take it instead.
/// Behind all of what it gets at least 16 bytes more can be read.
template <class Sink> class PlainContent {
public:
    using Name = typename Sink::Name;

    explicit PlainContent(Sink& sink) noexcept : sink_(sink) {}

    /// Reads from a "<" or ">" on; gives what was passed up to the "<" or ">" that is not plain.
    PassedBytes read(std::string_view bytes) {
        PassedBytes passed{bytes.data(), bytes.data()};
        if (bytes.size() <= reach) {
            return passed;
        }
        limit_ = bytes.data() + (bytes.size() - reach);
        const char* place = bytes.data();
        while (place != nullptr) {
            passed.end = place;
            if (*place == cNuGtA) {
                place = readText(place, passed);
            } else if (place[1] == cNuSlashA) {
                place = readEndTag(place);
            } else if (place[1] == cNuExclA) {
                place = readComment(place);
            } else {
                place = readStartTag(place);
            }
        }
        return passed;
    }

private:
    static bool isControl(char byte) noexcept { return static_cast<unsigned char>(byte) < ' '; }
    static bool isSolid(char byte) noexcept { return static_cast<unsigned char>(byte) > ' '; }
    static std::string_view text(const char* start, const char* end) noexcept {
        return {start, static_cast<std::size_t>(end - start)};
    }

    /// From the ">" of a tag over text, white space or nothing to the "<" behind it.
    [[gnu::always_inline]] const char* readText(const char* tagEnd, PassedBytes& passed) {
        // 1. The character behind a tag is read raw.
        if (tagEnd > limit_) [[unlikely]] {
            return nullptr;
        }
        const char* const start = tagEnd + 1;
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
        const char* end = solid;
        if (*solid != cNuLtA) {
            // 3. Text. A ">" right behind a tag is none.
            PassedKinds kinds;
            end = findStop<Sink::classifyText>(solid, limit_, kinds);
            if (end == nullptr || *end != cNuLtA || *start == cNuGtA ||
                !sink_.addText(text(start, end), kinds)) [[unlikely]] {
                return nullptr;
            }
        }
        passed.deliveredLineFeed = isLineFeed ? start : passed.deliveredLineFeed;
        passed.deliveredControls += isLineFeed || isLineEnd ? 1 : 0;
        return end;
    }

    /// Takes the start tag at `less` and gives the place of its ">".
    [[gnu::always_inline]] const char* readStartTag(const char* less) {
        // 1. The name.
        if (less > limit_) [[unlikely]] {
            return nullptr;
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
        sink_.startTag(*name);
        if (*place == cNuSpaceA) {
            place = isSolid(place[1]) ? place + 1 : findSolid(place, limit_);
            Name* before = name;
            while (place != nullptr && *place != cNuGtA && *place != cNuSlashA) {
                place = readAttribute(place, before);
            }
            if (place == nullptr || (*place == cNuSlashA && place[1] != cNuGtA)) [[unlikely]] {
                sink_.abandonStartTag();
                return nullptr;
            }
        }

        // 3. An empty element ends where it starts.
        const bool isEmptyElement = *place == cNuSlashA;
        if (!sink_.endStartTag(isEmptyElement)) [[unlikely]] {
            return nullptr;
        }
        if (isEmptyElement) {
            sink_.endEmptyElement();
            ++place;
        }
        return place;
    }

    static bool endsElementName(const char* place) noexcept {
        return *place == cNuSpaceA || *place == cNuGtA ||
               (*place == cNuSlashA && place[1] == cNuGtA);
    }

    /// The name ends at a space or at the end of the tag. It cannot begin with a control character,
    /// which a read would skip, or with what begins other markup or draws a warning.
    [[gnu::noinline]] const char* findElementNameEnd(const char* start) const noexcept {
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
        const char* const valueEnd = findStop<classifyValue>(value, limit_, kinds);
        if (valueEnd == nullptr || *valueEnd != cNuQuoteA || isControl(*value) ||
            !sink_.addAttribute(*name, text(value, valueEnd), kinds)) [[unlikely]] {
            return nullptr;
        }
        const char* const next = valueEnd + 1;
        if (isSolid(*next)) {
            return next;
        }
        return *next == cNuSpaceA && isSolid(next[1]) ? next + 1 : findSolid(next, limit_);
    }

    static bool opensValue(const char* place) noexcept {
        return place[0] == cNuEqualA && place[1] == cNuQuoteA;
    }

    [[gnu::noinline]] const char* findAttributeNameEnd(const char* start) const noexcept {
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
    [[gnu::always_inline]] const char* readEndTag(const char* less) {
        if (less > limit_) [[unlikely]] {
            return nullptr;
        }
        const char* const start = less + 2;
        const Name* open = sink_.open();
        const char* end = nullptr;
        if (open != nullptr && open->standsAt(start) && start[open->text.size()] == cNuGtA)
            [[likely]] {
            end = start + open->text.size();
        } else {
            // Whatever stands there: nobody compares it with the name of the element.
            end = isControl(*start) ? nullptr : findByte<cNuGtA, '\0'>(start + 1, limit_);
            if (end == nullptr || *end == '\0') {
                return nullptr;
            }
        }
        return sink_.endElement() ? end : nullptr;
    }

    /// Takes the comment at `less` and gives the place of its ">". Control characters would have to
    /// be dropped, and two dashes inside are better looked at.
    [[gnu::noinline]] const char* readComment(const char* less) {
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
        sink_.addComment(text(start, place), kinds.isAscii);
        return place + 2;
    }

    Sink& sink_;
    const char* limit_ = nullptr;
};

} // namespace nu::markup
