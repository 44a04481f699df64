#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "nuXmlDOM/core/asciiText.h"
#include "nuXmlDOM/core/documentMemory.h"
#include "nuXmlParser/chars.h"

namespace nu {

/// The text of a node, 16 bytes beside the text itself, whose memory is the document's.
///
/// Text that is ASCII throughout (almost all is) takes one byte a character, and up to 8 characters
/// of it stand in the object; other text is UTF-16. The object is plain memory: it is released by
/// its owner, and forgotten when the document's memory goes.
class StoredText {
public:
    [[nodiscard]] std::size_t length() const noexcept { return bits_ >> flagBits; }
    [[nodiscard]] bool empty() const noexcept { return length() == 0; }
    /// Whether narrow() gives the text; else wide() does.
    [[nodiscard]] bool isNarrow() const noexcept { return (bits_ & wideFlag) == 0; }
    [[nodiscard]] std::string_view narrow() const noexcept {
        return {length() <= inlineLength ? inline_ : narrow_, length()};
    }
    [[nodiscard]] std::u16string_view wide() const noexcept { return {wide_, length()}; }

    [[nodiscard]] NuXmlString toString() const;
    void appendTo(NuXmlString& target) const;
    /// Up to `count` characters from `offset` on, as many as there are.
    [[nodiscard]] NuXmlString part(std::size_t offset, std::size_t count) const;
    [[nodiscard]] bool equals(std::u16string_view text) const noexcept;
    [[nodiscard]] bool contains(NuXmlChar unit) const noexcept;

    /// Puts `text` in place of the old one. Strong guarantee; `text` must not be a view into this.
    void assign(DocumentMemory& memory, std::u16string_view text) {
        if (text.size() <= inlineLength && !isOutside()) {
            char bytes[inlineLength] = {};
            if (narrowTail(text.data(), text.size(), bytes)) [[likely]] {
                std::memcpy(inline_, bytes, inlineLength);
                bits_ = static_cast<std::uint64_t>(text.size()) << flagBits;
                return;
            }
        }
        assignElsewhere(memory, text);
    }
    /// Appends, so that many appends together stay linear.
    void append(DocumentMemory& memory, std::u16string_view text);
    /// Gives the memory back; the text is empty afterwards.
    void clear(DocumentMemory& memory) noexcept;
    /// Whether the memory grew by appending; then it is a power of two.
    [[nodiscard]] bool isGrown() const noexcept { return (bits_ & grownFlag) != 0; }

private:
    static constexpr std::size_t inlineLength = 8;
    static constexpr unsigned flagBits = 2;
    static constexpr std::uint64_t wideFlag = 1;
    static constexpr std::uint64_t grownFlag = 2;

    [[nodiscard]] std::size_t unitSize() const noexcept { return isNarrow() ? 1 : 2; }
    /// Whether the text stands in memory outside of the object.
    [[nodiscard]] bool isOutside() const noexcept { return !isNarrow() || length() > inlineLength; }
    [[nodiscard]] std::size_t capacity() const noexcept;
    void assignElsewhere(DocumentMemory& memory, std::u16string_view text);
    void adopt(void* outside, std::size_t length, std::uint64_t flags) noexcept;

    union {
        char inline_[inlineLength] = {};
        char* narrow_;
        NuXmlChar* wide_;
    };
    std::uint64_t bits_ = 0;
};

} // namespace nu
