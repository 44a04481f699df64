#include "output.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "decimal.h"
#include "host/runtime/unicode.h"

namespace tool {

namespace {

/// For each ASCII character: 0 to write it as it is, 'u' for its number, or the letter behind "\".
using EscapeTable = std::array<char, 128>;

consteval EscapeTable makeTable(Escapes escapes) {
    EscapeTable table{};
    if (escapes == Escapes::None) {
        return table;
    }
    for (std::size_t control = 0; control < 0x20; ++control) {
        table[control] = 'u';
    }
    table['\n'] = 'n';
    table['\r'] = 'r';
    table['\t'] = 't';
    table['\\'] = '\\';
    if (escapes == Escapes::Json) {
        table['\b'] = 'b';
        table['\f'] = 'f';
        table['"'] = '"';
    } else {
        table[0x7F] = 'u';
    }
    return table;
}

constexpr std::array<EscapeTable, 3> tables{makeTable(Escapes::None), makeTable(Escapes::Visible),
                                            makeTable(Escapes::Json)};

/// What a terminal obeys or a reader cannot see: the C1 controls, separators of lines and
/// paragraphs, and what changes the direction of the text behind it.
constexpr bool isUnsafeToShow(char16_t unit) noexcept {
    return (unit >= 0x80 && unit < 0xA0) || (unit >= 0x2028 && unit <= 0x202E) ||
           (unit >= 0x2066 && unit <= 0x2069);
}

/// The most bytes that one unit becomes.
constexpr std::size_t longestEscape = 6;

char* putNumberEscape(char* target, char16_t unit) noexcept {
    constexpr std::string_view digits = "0123456789ABCDEF";
    *target++ = '\\';
    *target++ = 'u';
    for (int shift = 12; shift >= 0; shift -= 4) {
        *target++ = digits[(unit >> shift) & 0xF];
    }
    return target;
}

char* putAsciiEscape(char* target, char16_t unit, char escape) noexcept {
    if (escape == 'u') {
        return putNumberEscape(target, unit);
    }
    *target++ = '\\';
    *target++ = escape;
    return target;
}

constexpr char byteOf(char32_t bits) noexcept { return static_cast<char>(bits); }
constexpr char trailByte(char32_t bits) noexcept { return byteOf(0x80 | (bits & 0x3F)); }

char* putBasic(char* target, char16_t unit) noexcept {
    if (unit < 0x800) {
        *target++ = byteOf(0xC0 | (unit >> 6));
    } else {
        *target++ = byteOf(0xE0 | (unit >> 12));
        *target++ = trailByte(unit >> 6);
    }
    *target++ = trailByte(unit);
    return target;
}

char* putPair(char* target, char16_t high, char16_t low) noexcept {
    const char32_t point = 0x10000 + ((high & 0x3FFU) << 10) + (low & 0x3FFU);
    *target++ = byteOf(0xF0 | (point >> 18));
    *target++ = trailByte(point >> 12);
    *target++ = trailByte(point >> 6);
    *target++ = trailByte(point);
    return target;
}

} // namespace

void Output::writeNumber(std::int64_t number) noexcept { write(Decimal(number).view()); }

void Output::writeSpaces(std::size_t count) noexcept {
    constexpr std::string_view spaces = "                                ";
    for (; count > spaces.size(); count -= spaces.size()) {
        write(spaces);
    }
    write(spaces.substr(0, count));
}

void Output::writeText(std::u16string_view text, Escapes escapes) noexcept {
    const EscapeTable& table = tables[static_cast<std::size_t>(escapes)];
    const char16_t* at = text.data();
    const char16_t* const end = at + text.size();
    while (at < end) {
        // 1. As many units as surely find room.
        if (capacity - fill_ < 2 * longestEscape) {
            flush();
        }
        const std::size_t batch =
            std::min((capacity - fill_) / longestEscape - 1, static_cast<std::size_t>(end - at));
        const char16_t* const batchEnd = at + batch;

        // 2. Unit by unit; the second half of a pair may lie behind the batch.
        char* target = buffer_.data() + fill_;
        while (at < batchEnd) {
            const char16_t unit = *at++;
            if (unit < 0x80) [[likely]] {
                const char escape = table[unit];
                if (escape == 0) [[likely]] {
                    *target++ = static_cast<char>(unit);
                } else {
                    target = putAsciiEscape(target, unit, escape);
                }
            } else if (host::isSurrogate(unit)) {
                if (at < end && host::isHighSurrogate(unit) && host::isLowSurrogate(*at)) {
                    target = putPair(target, unit, *at++);
                } else {
                    target = putNumberEscape(target, unit);
                }
            } else if (escapes == Escapes::Visible && isUnsafeToShow(unit)) {
                target = putNumberEscape(target, unit);
            } else {
                target = putBasic(target, unit);
            }
        }
        fill_ = static_cast<std::size_t>(target - buffer_.data());
    }
}

void Output::writeJsonString(std::u16string_view text) noexcept {
    write('"');
    writeText(text, Escapes::Json);
    write('"');
}

void Output::flush() noexcept {
    send(buffer_.data(), fill_);
    fill_ = 0;
}

void Output::send(const char* bytes, std::size_t count) noexcept {
    while (count > 0 && isOpen()) {
        const ssize_t taken = ::write(descriptor_, bytes, count);
        if (taken >= 0) {
            bytes += taken;
            count -= static_cast<std::size_t>(taken);
        } else if (errno == EAGAIN) {
            // Somebody else made the descriptor non-blocking: wait as if it were not.
            pollfd waited{descriptor_, POLLOUT, 0};
            ::poll(&waited, 1, -1);
        } else if (errno != EINTR) {
            error_ = errno;
        }
    }
}

bool Output::isTerminal() const noexcept { return ::isatty(descriptor_) == 1; }

int Output::failure() const noexcept { return error_ == EPIPE ? 0 : error_; }

} // namespace tool
