#include "nuXmlDOM/core/storedText.h"

#include <bit>
#include <limits>
#include <new>

#include "nuXmlDOM/core/asciiText.h"

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

std::size_t StoredText::capacity() const noexcept {
    const std::size_t size = length() * unitSize();
    return isGrown() ? std::bit_ceil(size) : size;
}

void StoredText::adopt(void* outside, std::size_t length, std::uint64_t flags) noexcept {
    wide_ = static_cast<NuXmlChar*>(outside);
    bits_ = static_cast<std::uint64_t>(length) << flagBits | flags;
}

void StoredText::clear(DocumentMemory& memory) noexcept {
    if (isOutside()) {
        memory.release(wide_, capacity());
    }
    bits_ = 0;
}

void StoredText::assignElsewhere(DocumentMemory& memory, std::u16string_view text) {
    // 1. Short and ASCII: into the object.
    if (text.size() <= inlineLength) {
        char bytes[inlineLength] = {};
        if (narrowTail(text.data(), text.size(), bytes)) {
            clear(memory);
            std::memcpy(inline_, bytes, inlineLength);
            bits_ = static_cast<std::uint64_t>(text.size()) << flagBits;
            return;
        }
    } else {
        // 2. Long and ASCII, as is likely: a byte a character.
        checkLength(text.size());
        auto* bytes = static_cast<char*>(memory.allocate(text.size()));
        if (narrowAscii(text, bytes)) {
            clear(memory);
            adopt(bytes, text.size(), 0);
            return;
        }
        memory.release(bytes, text.size());
    }
    // 3. Everything else as it is.
    const std::size_t size = text.size() * sizeof(NuXmlChar);
    void* units = memory.allocate(size);
    std::memcpy(units, text.data(), size);
    clear(memory);
    adopt(units, text.size(), wideFlag);
}

void StoredText::append(DocumentMemory& memory, std::u16string_view text) {
    if (text.empty()) {
        return;
    }
    if (empty()) {
        assign(memory, text);
        return;
    }
    // 1. A text that turns wide, or is still short, is put together anew.
    const std::size_t total = length() + text.size();
    checkLength(total);
    std::string narrowText(isNarrow() ? text.size() : 0, '\0');
    const bool staysNarrow = isNarrow() && narrowAscii(text, narrowText.data());
    if (staysNarrow != isNarrow() || total <= inlineLength) {
        NuXmlString whole = toString();
        whole += text;
        assign(memory, whole);
        return;
    }
    // 2. The memory doubles when it is full.
    const std::size_t size = length() * unitSize();
    const std::size_t added = text.size() * unitSize();
    auto* bytes = reinterpret_cast<char*>(wide_);
    if (!isGrown() || size + added > capacity() || !isOutside()) {
        auto* grown = static_cast<char*>(memory.allocate(std::bit_ceil(size + added)));
        std::memcpy(grown, isOutside() ? bytes : inline_, size);
        const std::uint64_t flags = bits_ & wideFlag;
        clear(memory);
        bytes = grown;
        bits_ = flags;
    }
    std::memcpy(bytes + size,
                isNarrow() ? static_cast<const void*>(narrowText.data()) : text.data(), added);
    adopt(bytes, total, (bits_ & wideFlag) | grownFlag);
}

void StoredText::appendTo(NuXmlString& target) const {
    if (!isNarrow()) {
        target.append(wide());
        return;
    }
    const std::string_view bytes = narrow();
    const std::size_t start = target.size();
    target.resize(start + bytes.size());
    widenAscii(bytes, target.data() + start);
}

NuXmlString StoredText::toString() const {
    NuXmlString text;
    appendTo(text);
    return text;
}

NuXmlString StoredText::part(std::size_t offset, std::size_t count) const {
    offset = std::min(offset, length());
    if (!isNarrow()) {
        return NuXmlString(wide().substr(offset, count));
    }
    const std::string_view bytes = narrow().substr(offset, count);
    NuXmlString text(bytes.size(), u'\0');
    widenAscii(bytes, text.data());
    return text;
}

bool StoredText::equals(std::u16string_view text) const noexcept {
    return isNarrow() ? equalsAscii(narrow(), text) : wide() == text;
}

bool StoredText::contains(NuXmlChar unit) const noexcept {
    if (!isNarrow()) {
        return wide().find(unit) != std::u16string_view::npos;
    }
    return unit < 0x80 && narrow().find(static_cast<char>(unit)) != std::string_view::npos;
}

} // namespace nu
