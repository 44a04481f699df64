#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "nuXmlDOM/core/asciiText.h"
#include "nuXmlDOM/core/documentMemory.h"
#include "nuXmlParser/chars.h"

namespace nu {

/// The text of a node, 8 bytes beside what text does not fit into them, which is memory of the
/// document.
///
/// Text that is ASCII throughout (almost all is) takes one byte a character, and up to 7 characters
/// of it stand in the object; other text is UTF-16. The object is plain memory: it is released by
/// its owner, and forgotten when the document's memory goes.
class StoredText {
public:
    [[nodiscard]] std::size_t length() const noexcept {
        return isInside() ? insideLength() : outsideLength();
    }
    [[nodiscard]] bool empty() const noexcept { return word_ == insideFlag; }
    /// Whether narrow() gives the text; else wide() does.
    [[nodiscard]] bool isNarrow() const noexcept { return (word_ & wideFlag) == 0; }
    [[nodiscard]] std::string_view narrow() const noexcept {
        // Inside, the characters follow the lowest byte.
        return isInside()
                   ? std::string_view(reinterpret_cast<const char*>(&word_) + 1, insideLength())
                   : std::string_view(outside(), outsideLength());
    }
    [[nodiscard]] std::u16string_view wide() const noexcept {
        return {reinterpret_cast<const NuXmlChar*>(outside()), outsideLength()};
    }

    [[nodiscard]] NuXmlString toString() const;
    void appendTo(NuXmlString& target) const;
    /// Up to `count` characters from `offset` on, as many as there are.
    [[nodiscard]] NuXmlString part(std::size_t offset, std::size_t count) const;
    [[nodiscard]] bool equals(std::u16string_view text) const noexcept;
    [[nodiscard]] bool contains(NuXmlChar unit) const noexcept;

    /// Puts `text` in place of the old one. Strong guarantee; `text` must not be a view into this.
    void assign(DocumentMemory& memory, std::u16string_view text) {
        std::uint64_t packed = 0;
        if (isInside() && text.size() <= insideLimit && packAscii(text, packed)) [[likely]] {
            setInside(packed, text.size());
            return;
        }
        assignElsewhere(memory, text);
    }
    /// Appends, so that many appends together stay linear.
    void append(DocumentMemory& memory, std::u16string_view text);
    /// Gives the memory back; the text is empty afterwards.
    void clear(DocumentMemory& memory) noexcept {
        if (!isInside()) [[unlikely]] {
            release(memory);
        }
        word_ = insideFlag;
    }

private:
    static constexpr std::size_t insideLimit = 7;
    /// What the lowest bits say: the text is in the word itself, the bits above give its length;
    /// or the word is an address, to which the memory is aligned.
    static constexpr std::uint64_t insideFlag = 1;
    static constexpr std::uint64_t wideFlag = 2;
    /// The memory grew by appending; its size is a power of two.
    static constexpr std::uint64_t grownFlag = 4;
    static constexpr std::uint64_t allFlags = 7;
    static constexpr unsigned flagBits = 3;

    /// Outside, the length stands before the text in this form, and a longer one before that.
    using ShortLength = std::uint32_t;
    static constexpr ShortLength longMark = 0xFFFFFFFF;

    [[nodiscard]] bool isInside() const noexcept { return (word_ & insideFlag) != 0; }
    [[nodiscard]] std::size_t insideLength() const noexcept { return word_ >> flagBits & 7; }
    void setInside(std::uint64_t packed, std::size_t length) noexcept {
        word_ = packed << 8 | length << flagBits | insideFlag;
    }

    [[nodiscard]] char* outside() const noexcept {
        return reinterpret_cast<char*>(word_ & ~allFlags) + sizeof(ShortLength);
    }
    [[nodiscard]] std::size_t outsideLength() const noexcept {
        ShortLength length = 0;
        std::memcpy(&length, outside() - sizeof length, sizeof length);
        return length != longMark ? length : longLength();
    }
    [[nodiscard]] std::size_t longLength() const noexcept;
    void setOutsideLength(std::size_t length) noexcept;
    [[nodiscard]] std::size_t unitSize() const noexcept { return isNarrow() ? 1 : 2; }
    [[nodiscard]] static std::size_t headerSize(std::size_t length) noexcept;
    [[nodiscard]] std::size_t capacity() const noexcept;
    void adopt(void* piece, std::size_t length, std::uint64_t flags) noexcept;
    void release(DocumentMemory& memory) noexcept;
    void assignElsewhere(DocumentMemory& memory, std::u16string_view text);
    void grow(DocumentMemory& memory, std::size_t length);

    std::uint64_t word_ = insideFlag;
};

} // namespace nu
