#include "nuXmlParser/markup/checkedText.h"

#include <algorithm>

#include "common/simd/block.h"
#include "common/utf8.h"
#include "host/runtime/utf8Sequence.h"

namespace nu {

namespace {

/// Text that is looked at at once, so that it is still near for the second look.
constexpr std::size_t pieceSize = 4096;

/// Bytes that are judged together.
constexpr std::size_t groupSize = 4 * simd::blockSize;

constexpr bool isAllowed(char32_t codePoint) noexcept {
    return codePoint >= 0x20 ? (codePoint & 0xFFFFFFFE) != 0xFFFE
                             : codePoint == '\t' || codePoint == '\n' || codePoint == '\r';
}

/// Marks the control characters among 16 bytes that are not allowed.
simd::Block controls(simd::Block block) noexcept {
    return block.isAtMost(0x1F).butNot(simd::isAnyOf<'\t', '\n', '\r'>(block));
}

/// Marks where U+FFFE and U+FFFF begin among 16 bytes, of which two more are looked at.
simd::Block noncharacters(const char* bytes) noexcept {
    using simd::Block;
    return Block::load(bytes).equals(Block::all(0xEF)) &
           Block::load(bytes + 1).equals(Block::all(0xBF)) &
           (Block::load(bytes + 2) | Block::all(1)).equals(Block::all(0xBF));
}

/// Bytes from the front that are ASCII, all of it allowed.
std::size_t allowedAscii(std::string_view bytes) noexcept {
    std::size_t place = 0;
    for (; place + groupSize <= bytes.size(); place += groupSize) {
        auto found = simd::Block::all(0);
        for (std::size_t offset = 0; offset < groupSize; offset += simd::blockSize) {
            const auto block = simd::Block::load(bytes.data() + place + offset);
            found = found | controls(block) | block;
        }
        if (found.mask() != 0) {
            break;
        }
    }
    return place;
}

/// Whether a character that is not allowed begins in a group of bytes, of which two more are looked
/// at.
bool isRefusedIn(const char* group) noexcept {
    auto found = simd::Block::all(0);
    auto leads = simd::Block::all(0); // of sequences that may be noncharacters
    for (std::size_t offset = 0; offset < groupSize; offset += simd::blockSize) {
        const auto block = simd::Block::load(group + offset);
        found = found | controls(block);
        leads = leads | block.equals(simd::Block::all(0xEF));
    }
    if (leads.mask() != 0) {
        for (std::size_t offset = 0; offset < groupSize; offset += simd::blockSize) {
            found = found | noncharacters(group + offset);
        }
    }
    return found.mask() != 0;
}

/// Bytes from the front of well-formed text in which no character begins that is not allowed.
std::size_t surelyAllowed(std::string_view bytes) noexcept {
    constexpr std::size_t looked = groupSize + 2;
    if (bytes.size() < looked) {
        return 0;
    }
    // The last group lies over the one before, so that hardly anything is left.
    const std::size_t last = bytes.size() - looked;
    for (std::size_t place = 0;; place = std::min(place + groupSize, last)) {
        if (isRefusedIn(bytes.data() + place)) {
            return place;
        }
        if (place == last) {
            return last + groupSize;
        }
    }
}

/// Character by character, from the one on that `from` is in.
CheckedText checkEach(std::string_view bytes, std::size_t from) noexcept {
    const auto* const start = reinterpret_cast<const unsigned char*>(bytes.data());
    const auto* const end = start + bytes.size();
    const auto* place = start + from;
    while (place != end && (*place & 0xC0) == 0x80 && place != start) {
        --place;
    }
    while (place != end) {
        const host::Utf8Sequence sequence = host::readUtf8Sequence(place, end);
        const auto length = static_cast<std::size_t>(place - start);
        if (!sequence.wellFormed) {
            return {length,
                    sequence.truncated ? CheckedText::Stop::CutShort : CheckedText::Stop::Malformed,
                    0};
        }
        if (!isAllowed(sequence.codePoint)) {
            return {length, CheckedText::Stop::NotAllowed, sequence.codePoint};
        }
        place += sequence.length;
    }
    return {bytes.size(), CheckedText::Stop::All, 0};
}

/// The length of `bytes` without a sequence that their end may cut off.
std::size_t wholeSequences(std::string_view bytes) noexcept {
    std::size_t length = bytes.size();
    for (int back = 0; back < 3 && length > 0; ++back) {
        const auto last = static_cast<unsigned char>(bytes[length - 1]);
        if (last < 0x80) {
            break;
        }
        --length;
        if (last >= 0xC0) {
            return length;
        }
    }
    return length;
}

} // namespace

CheckedText checkText(std::string_view bytes) noexcept {
    std::size_t checked = 0;
    while (checked < bytes.size()) {
        // 1. What takes one look.
        checked += allowedAscii(bytes.substr(checked));
        // 2. All at once, as nearly always.
        const std::string_view rest = bytes.substr(checked, pieceSize);
        const std::string_view piece = rest.substr(0, wholeSequences(rest));
        if (!piece.empty() && NuIsUtf8(piece)) {
            const std::size_t allowed = surelyAllowed(piece);
            const CheckedText tail = checkEach(piece, allowed);
            checked += tail.length;
            if (tail.stop != CheckedText::Stop::All) {
                return {checked, tail.stop, tail.codePoint};
            }
            continue;
        }
        // 3. One by one where something is wrong, or where there is only the end of the text.
        const CheckedText found = checkEach(rest, 0);
        checked += found.length;
        if (found.stop != CheckedText::Stop::All &&
            (found.stop != CheckedText::Stop::CutShort || found.length == 0 ||
             checked + rest.size() - found.length == bytes.size())) {
            return {checked, found.stop, found.codePoint};
        }
    }
    return {checked, CheckedText::Stop::All, 0};
}

} // namespace nu
