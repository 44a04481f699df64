#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <type_traits>
#include <utility>

#include "nuXmlDOM/write/outputTarget.h"
#include "nuXmlDOM/write/pieces.h"

namespace nu {

/// A block of written text in front of its target: UTF-16 (char16_t) or UTF-8 (char). Room is made
/// once for all pieces of a tag, and pieces longer than the block go on in parts.
template <class Unit> class Output {
public:
    static constexpr std::size_t defaultCapacity = std::size_t{64} * 1024 / sizeof(Unit);

    /// \param limit bytes that are handed on; more throw ENuDomException
    /// \param capacity the length of the block; longer than any piece of fixed length
    Output(OutputTarget<Unit>& target, std::uint64_t limit, std::size_t capacity = defaultCapacity)
        : target_(target), limit_(limit), left_(limit), capacity_(capacity),
          block_(std::make_unique_for_overwrite<Unit[]>(capacity)), next_(block_.get()),
          end_(next_ + capacity) {}
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    /// Writes pieces one behind the other.
    template <class... Piece> void put(const Piece&... pieces) {
        if ((Form::room(pieces) + ...) > free()) [[unlikely]] {
            putInParts(pieces...);
            return;
        }
        Unit* next = next_;
        ((next = Form::copy(pieces, next)), ...);
        next_ = next;
    }

    /// Writes text that other text may follow directly: two that hold the halves of one character
    /// are that character.
    void putText(const StoredText& text) {
        if (text.isNarrow()) [[likely]] {
            put(text.bytes());
        } else if (isUtf8 && text.isWide()) {
            putWideText(text.wide());
        } else {
            put(text);
        }
    }

    /// The same for text that is written as it is.
    void putText(std::basic_string_view<Unit> text) { put(text); }

    /// Writes a byte-order mark, before anything else. It counts as something written in UTF-16
    /// only.
    void putMark() {
        if constexpr (isUtf8) {
            put("\xEF\xBB\xBF");
            start_ = next_;
        } else {
            put(std::u16string_view(&byteOrderMark, 1));
        }
    }

    /// Hands everything on. Without it what is in the block is lost.
    void finish() { flush(); }

    /// Whether an element that is written on a line of its own has to end a line: there is
    /// something else than a byte-order mark before it.
    [[nodiscard]] bool breaksBeforeElement() {
        return isBeyondStart() || (isUtf8 ? written() > 0 : isBrokenAtStart());
    }
    /// The same for an instruction, which looks at what is there: 5 bytes or more.
    [[nodiscard]] bool breaksBeforeInstruction() {
        constexpr std::int64_t enough = 5;
        return isBeyondStart() || target_.size() >= enough ||
               (written() > 0 && target_.position() + writtenBytes() >= enough);
    }

private:
    using Form = Pieces<Unit>;
    static constexpr bool isUtf8 = std::is_same_v<Unit, char>;
    static constexpr NuXmlChar byteOrderMark = 0xFEFF;

    [[nodiscard]] std::size_t free() const noexcept {
        return static_cast<std::size_t>(end_ - next_);
    }
    [[nodiscard]] std::size_t fill() const noexcept {
        return static_cast<std::size_t>(next_ - block_.get());
    }
    /// How much is written as long as nothing is handed on.
    [[nodiscard]] std::size_t written() const noexcept {
        return static_cast<std::size_t>(next_ - start_);
    }
    [[nodiscard]] std::int64_t writtenBytes() const noexcept {
        return static_cast<std::int64_t>(written() * sizeof(NuXmlChar));
    }

    /// Whether so much is written that it does not matter any more where it began. No node writes
    /// less than three characters before an element or an instruction, unless it writes none or an
    /// element has lost its name.
    [[nodiscard]] bool isBeyondStart() const noexcept { return isHandedOn_ || written() >= 3; }
    [[nodiscard]] bool isBrokenAtStart();

    template <class... Piece> [[gnu::noinline]] void putInParts(const Piece&... pieces) {
        (putPart(pieces), ...);
    }
    template <class Piece> void putPart(const Piece& piece) {
        if (Form::room(piece) > free()) {
            flush();
        }
        if constexpr (!std::is_array_v<Piece>) {
            if (Form::room(piece) > capacity_) {
                putLong(piece);
                return;
            }
        }
        next_ = Form::copy(piece, next_);
    }
    // What the whole block has no room for; the block is empty.
    void putLong(const NodeName& name) { handOn(Form::view(name)); }
    void putLong(const StoredText& text);
    void putLong(std::string_view text);
    void putLong(std::u16string_view text);
    void putLong(Indentation indentation);

    void putWideText(std::u16string_view text);
    void endHalf(NuXmlChar second);
    void flush();
    void drain();
    void handOn(std::basic_string_view<Unit> text);

    OutputTarget<Unit>& target_;
    std::uint64_t limit_;
    std::uint64_t left_; ///< of the limit
    std::size_t capacity_;
    std::unique_ptr<Unit[]> block_;
    Unit* next_;
    /// Where what is written begins: behind the mark of UTF-8.
    Unit* start_ = next_;
    /// Where the block ends; where it is filled to while a half waits, so that nothing is written
    /// without a look at the half.
    Unit* end_;
    bool isHandedOn_ = false; ///< whether the target has anything
    /// UTF-8: the first half of a character that the last text ended with, 0 for none.
    NuXmlChar half_ = 0;
};

extern template class Output<char>;
extern template class Output<char16_t>;

} // namespace nu
