#include "nuXmlDOM/storage/storedText.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <new>

#include "nuXmlDOM/storage/asciiText.h"
#include "nuXmlDOM/storage/documentMemory.h"

namespace nu {

namespace {

/// More than this no address space holds; below it sizes in bytes do not overflow.
constexpr std::size_t longestText = std::numeric_limits<std::size_t>::max() / 8;

void checkLength(std::size_t length) {
    if (length > longestText) {
        throw std::bad_alloc();
    }
}

} // namespace

std::size_t StoredText::headerSize(std::size_t length) noexcept {
    return sizeof(ShortLength) + (length < longMark ? 0 : sizeof(std::uint64_t));
}

std::size_t StoredText::longLength() const noexcept {
    std::uint64_t length = 0;
    std::memcpy(&length, outside() - headerSize(longMark), sizeof length);
    return length;
}

void StoredText::setOutsideLength(std::size_t length, bool isGrown) noexcept {
    const auto shown = static_cast<ShortLength>(std::min<std::size_t>(length, longMark));
    const ShortLength mark = shown | (isGrown ? grownMark : 0);
    std::memcpy(outside() - sizeof mark, &mark, sizeof mark);
    if (shown == longMark) {
        std::memcpy(outside() - headerSize(length), &length, sizeof length);
    }
}

/// What a piece of memory for so many units takes.
std::size_t StoredText::wideSize(std::size_t units) noexcept {
    return DocumentMemory::rounded(headerSize(units) + units * sizeof(NuXmlChar));
}

/// The size of the piece of memory outside.
std::size_t StoredText::capacity() const noexcept {
    const std::size_t length = storedLength();
    const std::size_t size = headerSize(length) + length * unitSize();
    return isGrown() ? std::bit_ceil(size) : size;
}

/// Takes a piece of memory for a text of this length.
void StoredText::adopt(void* piece, std::size_t length, std::uint64_t flags,
                       bool isGrown) noexcept {
    char* const marked = static_cast<char*>(piece) + headerSize(length) - sizeof(ShortLength);
    word_ = reinterpret_cast<std::uintptr_t>(marked) | flags;
    setOutsideLength(length, isGrown);
}

/// Gives the memory outside back.
void StoredText::release(DocumentMemory& memory) noexcept {
    memory.release(outside() - headerSize(outsideLength()), capacity());
}

void StoredText::copy(DocumentMemory& memory, const StoredText& other) {
    if (other.isInside()) {
        clear(memory);
        word_ = other.word_;
        return;
    }
    const std::size_t length = other.outsideLength();
    const std::size_t header = headerSize(length);
    const std::size_t size = length * other.unitSize();
    auto* piece = static_cast<char*>(memory.allocate(header + size));
    std::memcpy(piece + header, other.outside(), size);
    clear(memory);
    adopt(piece, length, other.word_ & (wideFlag | utf8Flag), false);
}

void StoredText::assignElsewhere(DocumentMemory& memory, std::u16string_view text) {
    checkLength(text.size());
    const std::size_t header = headerSize(text.size());
    // 1. Long and ASCII, as is likely: a byte a character.
    if (text.size() > insideLimit) [[likely]] {
        const std::size_t size = header + text.size();
        auto* piece = static_cast<char*>(memory.allocate(size));
        if (narrowAscii(text, piece + header)) [[likely]] {
            clear(memory);
            adopt(piece, text.size(), 0, false);
            return;
        }
        memory.release(piece, size);
    }
    // 2. Short and ASCII: into the object.
    std::uint64_t packed = 0;
    if (text.size() <= insideLimit && packAscii(text, packed)) {
        clear(memory);
        setInside(packed, text.size(), 0);
        return;
    }
    // 3. Everything else as it is.
    const std::size_t size = text.size() * sizeof(NuXmlChar);
    auto* piece = static_cast<char*>(memory.allocate(header + size));
    std::memcpy(piece + header, text.data(), size);
    clear(memory);
    adopt(piece, text.size(), wideFlag, false);
}

void StoredText::loadElsewhere(DocumentMemory& memory, std::string_view text, bool isAscii) {
    checkLength(text.size());
    // 1. As UTF-16 what takes less room so. Three bytes are at least one unit.
    const std::size_t header = headerSize(text.size());
    const std::size_t size = header + text.size();
    if (!isAscii && text.size() > insideLimit &&
        wideSize(text.size() / 3) < DocumentMemory::rounded(size)) {
        const std::size_t units = NuUtf16Length(text);
        if (wideSize(units) < DocumentMemory::rounded(size)) {
            loadWide(memory, text, units);
            return;
        }
    }
    // 2. Short text replaces longer text.
    if (text.size() <= insideLimit) {
        clear(memory);
        load(memory, text, isAscii);
        return;
    }
    // 3. As it is; of short text both ends, which overlap.
    auto* piece = static_cast<char*>(memory.allocate(size));
    char* const target = piece + header;
    constexpr std::size_t half = insideLimit + 1;
    if (text.size() <= 2 * half) {
        const std::size_t last = text.size() - half;
        std::memcpy(target, text.data(), half);
        std::memcpy(target + last, text.data() + last, half);
    } else {
        std::memcpy(target, text.data(), text.size());
    }
    clear(memory);
    adopt(piece, text.size(), isAscii ? 0 : utf8Flag, false);
}

/// The text has so many units, all of which fit into less room than its bytes.
void StoredText::loadWide(DocumentMemory& memory, std::string_view text, std::size_t length) {
    const std::size_t header = headerSize(length);
    auto* piece = static_cast<char*>(memory.allocate(header + length * sizeof(NuXmlChar)));
    static_cast<void>(NuDecodeUtf8(text, reinterpret_cast<NuXmlChar*>(piece + header)));
    clear(memory);
    adopt(piece, length, wideFlag, false);
}

/// Makes room for a text of `length` units of the same size.
void StoredText::grow(DocumentMemory& memory, std::size_t length) {
    const std::size_t former = storedLength();
    const std::size_t header = headerSize(length);
    const std::size_t size = header + length * unitSize();
    if (isGrown() && size <= capacity() && header == headerSize(former)) {
        return;
    }
    auto* piece = static_cast<char*>(memory.allocate(std::bit_ceil(size)));
    const std::uint64_t wide = word_ & wideFlag;
    std::memcpy(piece + header, isInside() ? bytes().data() : outside(), former * unitSize());
    clear(memory);
    adopt(piece, length, wide, true);
}

void StoredText::append(DocumentMemory& memory, std::u16string_view text) {
    if (text.empty()) {
        return;
    }
    const std::size_t former = length();
    checkLength(text.size());
    checkLength(former + text.size());
    const std::size_t total = former + text.size();
    // 1. A text that turns wide, or is short, is put together anew.
    const bool turnsWide = isUtf8() || (isNarrow() && !isAsciiText(text));
    if (turnsWide || former == 0 || total <= insideLimit) {
        NuXmlString whole = toString();
        whole += text;
        assign(memory, whole);
        return;
    }
    // 2. Text of the same kind goes behind, in memory that doubles when it is full.
    grow(memory, total);
    char* const end = outside() + former * unitSize();
    if (isNarrow()) {
        narrowAscii(text, end);
    } else {
        std::memcpy(end, text.data(), text.size() * sizeof(NuXmlChar));
    }
    setOutsideLength(total, true);
}

void StoredText::appendTo(NuXmlString& target) const {
    if (isWide()) {
        target.append(wide());
        return;
    }
    const std::string_view text = bytes();
    const std::size_t start = target.size();
    target.resize(start + text.size());
    if (isUtf8()) {
        target.resize(start + NuDecodeUtf8Prefix(text, target.data() + start).Units);
    } else {
        widenAscii(text, target.data() + start);
    }
}

NuXmlString StoredText::toString() const {
    NuXmlString text;
    appendTo(text);
    return text;
}

NuXmlString StoredText::part(std::size_t offset, std::size_t count) const {
    if (isUtf8()) {
        const NuXmlString whole = toString();
        return whole.substr(std::min(offset, whole.size()), count);
    }
    offset = std::min(offset, length());
    if (isWide()) {
        return NuXmlString(wide().substr(offset, count));
    }
    const std::string_view ascii = bytes().substr(offset, count);
    NuXmlString text(ascii.size(), u'\0');
    widenAscii(ascii, text.data());
    return text;
}

bool StoredText::contains(NuXmlChar unit) const noexcept {
    if (isWide()) {
        return wide().find(unit) != std::u16string_view::npos;
    }
    return bytes().find(static_cast<char>(unit)) != std::string_view::npos;
}

} // namespace nu
