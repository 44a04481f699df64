#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

#include "nuXmlParser/scan.h"

namespace nu {

/// What a TextRewriter writes in place of a character: the first `length` characters of `text`.
template <class Unit> struct Replacement {
    std::array<Unit, 8> text{};
    std::size_t length = 0;
};

/// Copies a text in pieces, with other characters between them. Gathers the pieces on the stack and
/// hands on whole blocks, so that a piece costs no call into the target and a short result needs
/// one allocation of its own size.
///
/// `Target` offers add(std::basic_string_view<Unit>), and expect(count) for the characters that are
/// likely to come. Call finish() at the end.
template <class Unit, class Target> class TextRewriter {
public:
    /// \param source   the whole text, from which all pieces come
    /// \param expected the likely length of the result
    TextRewriter(std::basic_string_view<Unit> source, Target& target, std::size_t expected) noexcept
        : sourceEnd_(source.data() + source.size()), target_(target), expected_(expected) {}

    /// Copies the source from `from` to its end, with a replacement for each of the characters
    /// `sought`; `replacementOf` gives the Replacement of such a character.
    template <char... sought, class ReplacementOf>
    void replaceAll(const Unit* from, ReplacementOf replacementOf) {
        for (; rest(from) >= 2 * scanBlock; from += scanBlock) {
            replaceInBlock<sought...>(from, scanBlock, replacementOf);
        }
        // The last characters move to where more than they can be read.
        std::array<Unit, 3 * scanBlock> last;
        std::fill(std::copy(from, sourceEnd_, last.begin()), last.end(), Unit{});
        const std::size_t count = rest(from);
        for (std::size_t done = 0; done < count; done += scanBlock) {
            replaceInBlock<sought...>(last.data() + done, std::min(count - done, scanBlock),
                                      replacementOf);
        }
    }

    /// Copies from `from` up to the first of the characters `sought` and gives its place, or the
    /// end of the source.
    template <char... sought> const Unit* copyUntil(const Unit* from) {
        unsigned found = 0;
        while (rest(from) >= scanBlock) {
            // The whole block is copied before anything is known about it: what comes next
            // overwrites what was too much.
            std::memcpy(room(scanBlock), from, scanBlock * sizeof(Unit));
            found = findInBlock<sought...>(from);
            if (found != 0) {
                return accept(from, static_cast<std::size_t>(std::countr_zero(found)));
            }
            from = accept(from, scanBlock);
        }
        const std::size_t count = rest(from);
        Unit* const block = room(scanBlock);
        std::fill_n(block, scanBlock, Unit{});
        std::copy_n(from, count, block);
        found = findInBlock<sought...>(block) | 1U << count;
        return accept(from, static_cast<std::size_t>(std::countr_zero(found)));
    }

    /// Adds the source's characters from `from` to `to`.
    void addPiece(const Unit* from, const Unit* to) {
        const auto count = static_cast<std::size_t>(to - from);
        if (count > capacity / 4) {
            handOn();
            target_.add({from, count});
        } else {
            std::copy_n(from, count, room(count));
            fill_ += count;
        }
    }

    void addUnit(Unit unit) {
        *room(1) = unit;
        ++fill_;
    }

    /// Hands on what was gathered.
    void finish() {
        if (fill_ > 0) {
            target_.add({gathered_.data(), fill_});
        }
        fill_ = 0;
    }

private:
    static constexpr std::size_t capacity = 2048;

    [[nodiscard]] std::size_t rest(const Unit* from) const noexcept {
        return static_cast<std::size_t>(sourceEnd_ - from);
    }

    /// Adds the first `count` characters of a block, replacing. Reads two blocks.
    template <char... sought, class ReplacementOf>
    void replaceInBlock(const Unit* block, std::size_t count, ReplacementOf replacementOf) {
        Unit* place = room(scanBlock * (std::size(Replacement<Unit>{}.text) + 1));
        unsigned found = findInBlock<sought...>(block) & ((1U << count) - 1);
        std::size_t done = 0;
        std::memcpy(place, block, scanBlock * sizeof(Unit));
        while (found != 0) {
            const auto index = static_cast<std::size_t>(std::countr_zero(found));
            const Replacement<Unit>& replacement = replacementOf(block[index]);
            place += index - done;
            std::memcpy(place, replacement.text.data(), sizeof replacement.text);
            place += replacement.length;
            done = index + 1;
            std::memcpy(place, block + done, scanBlock * sizeof(Unit));
            found &= found - 1;
        }
        fill_ = static_cast<std::size_t>(place - gathered_.data()) + count - done;
    }

    /// A place for `count` more characters.
    Unit* room(std::size_t count) {
        if (count > capacity - fill_) {
            handOn();
        }
        return gathered_.data() + fill_;
    }

    const Unit* accept(const Unit* from, std::size_t count) noexcept {
        fill_ += count;
        return from + count;
    }

    void handOn() {
        target_.expect(expected_);
        finish();
    }

    const Unit* sourceEnd_;
    Target& target_;
    std::size_t expected_;
    std::size_t fill_ = 0;
    std::array<Unit, capacity> gathered_;
};

/// A string as the target of a TextRewriter.
template <class Unit> struct StringTarget {
    std::basic_string<Unit> string;

    void add(std::basic_string_view<Unit> text) { string.append(text); }
    void expect(std::size_t count) {
        if (string.capacity() < count) {
            string.reserve(count);
        }
    }
};

} // namespace nu
