#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "common/utf8.h"
#include "nuXmlDOM/storage/asciiWord.h"
#include "nuXmlParser/chars.h"

namespace nu {

class DocumentMemory;

/// The text of a node, 8 bytes beside what text does not fit into them, which is memory of the
/// document.
///
/// Text that is ASCII throughout (almost all is) takes one byte a character, and up to 7 bytes of
/// text stand in the object. Other text is UTF-8 as it was loaded, where that takes no more memory,
/// until somebody changes it or asks for a place in it, else UTF-16. The object is trivial memory:
/// it is released by its owner, and forgotten when the document's memory goes.
class StoredText {
public:
    /// In UTF-16 units. Those of text in UTF-8 are counted at every call.
    [[nodiscard]] std::size_t length() const noexcept {
        return isUtf8() ? NuUtf16Length(bytes()) : storedLength();
    }
    [[nodiscard]] bool empty() const noexcept { return word_ == insideFlag; }
    /// Whether the text is ASCII that bytes() gives.
    [[nodiscard]] bool isNarrow() const noexcept { return (word_ & (wideFlag | utf8Flag)) == 0; }
    /// Whether the text is UTF-8 that bytes() gives, and not ASCII throughout.
    [[nodiscard]] bool isUtf8() const noexcept { return (word_ & utf8Flag) != 0; }
    /// Whether wide() gives the text; else bytes() does, which is UTF-8 in any case.
    [[nodiscard]] bool isWide() const noexcept { return (word_ & wideFlag) != 0; }
    [[nodiscard]] std::string_view bytes() const noexcept {
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
    /// Whether an ASCII character stands in it.
    [[nodiscard]] bool contains(NuXmlChar unit) const noexcept;

    /// Puts `text` in place of the old one. Strong guarantee; `text` must not be a view into this.
    void assign(DocumentMemory& memory, std::u16string_view text) {
        std::uint64_t packed = 0;
        if (isInside() && text.size() <= insideLimit && packAscii(text, packed)) [[likely]] {
            setInside(packed, text.size(), 0);
            return;
        }
        assignElsewhere(memory, text);
    }
    /// The same for well-formed UTF-8 as it was read, all of it ASCII or not. Behind it
    /// `loadSlack` bytes more can be read.
    void load(DocumentMemory& memory, std::string_view text, bool isAscii) {
        if (isInside() && text.size() <= insideLimit) [[likely]] {
            std::uint64_t packed = 0;
            std::memcpy(&packed, text.data(), sizeof packed);
            packed &= (std::uint64_t{1} << text.size() * 8) - 1;
            setInside(packed, text.size(), isAscii ? 0 : utf8Flag);
            return;
        }
        loadElsewhere(memory, text, isAscii);
    }
    static constexpr std::size_t loadSlack = 8;
    /// The same for the text of another node, in the form that it has there.
    void copy(DocumentMemory& memory, const StoredText& other);
    /// Turns UTF-8 into UTF-16, so that places in the text can be found. Strong guarantee.
    void widen(DocumentMemory& memory) {
        if (isUtf8()) [[unlikely]] {
            assign(memory, toString());
        }
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
    static constexpr std::uint64_t utf8Flag = 4;
    static constexpr std::uint64_t allFlags = 7;
    static constexpr unsigned flagBits = 3;

    /// Outside, the length stands before the text in this form, and a longer one before that. Its
    /// highest bit tells that the memory grew by appending; its size is a power of two then.
    using ShortLength = std::uint32_t;
    static constexpr ShortLength grownMark = 0x80000000;
    static constexpr ShortLength longMark = 0x7FFFFFFF;

    [[nodiscard]] bool isInside() const noexcept { return (word_ & insideFlag) != 0; }
    [[nodiscard]] std::size_t insideLength() const noexcept { return word_ >> flagBits & 7; }
    void setInside(std::uint64_t packed, std::size_t length, std::uint64_t flags) noexcept {
        word_ = packed << 8 | length << flagBits | insideFlag | flags;
    }

    [[nodiscard]] char* outside() const noexcept {
        return reinterpret_cast<char*>(word_ & ~allFlags) + sizeof(ShortLength);
    }
    [[nodiscard]] std::size_t outsideLength() const noexcept {
        const ShortLength length = shortLength() & longMark;
        return length != longMark ? length : longLength();
    }
    [[nodiscard]] ShortLength shortLength() const noexcept {
        ShortLength length = 0;
        std::memcpy(&length, outside() - sizeof length, sizeof length);
        return length;
    }
    /// In bytes, or in units where the text is wide.
    [[nodiscard]] std::size_t storedLength() const noexcept {
        return isInside() ? insideLength() : outsideLength();
    }
    [[nodiscard]] std::size_t longLength() const noexcept;
    void setOutsideLength(std::size_t length, bool isGrown) noexcept;
    [[nodiscard]] bool isGrown() const noexcept {
        return !isInside() && (shortLength() & grownMark) != 0;
    }
    [[nodiscard]] std::size_t unitSize() const noexcept { return isWide() ? 2 : 1; }
    [[nodiscard]] static std::size_t headerSize(std::size_t length) noexcept;
    [[nodiscard]] static std::size_t wideSize(std::size_t units) noexcept;
    [[nodiscard]] std::size_t capacity() const noexcept;
    void adopt(void* piece, std::size_t length, std::uint64_t flags, bool isGrown) noexcept;
    void release(DocumentMemory& memory) noexcept;
    void assignElsewhere(DocumentMemory& memory, std::u16string_view text);
    void loadElsewhere(DocumentMemory& memory, std::string_view text, bool isAscii);
    void loadWide(DocumentMemory& memory, std::string_view text, std::size_t length);
    void grow(DocumentMemory& memory, std::size_t length);

    std::uint64_t word_ = insideFlag;
};

} // namespace nu
