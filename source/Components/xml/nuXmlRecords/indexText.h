#pragma once

#include <charconv>
#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>

namespace nu {

/// A digest that finds what changed by accident.
inline constexpr std::uint64_t digestStart = 0xCBF29CE484222325;
[[nodiscard]] std::uint64_t continueDigest(std::uint64_t digest, std::string_view bytes) noexcept;

/// Writes the values of an index, lines of numbers and of texts with their lengths in front, under
/// a line that names the form and over one with the digest of all.
class IndexTextWriter {
public:
    IndexTextWriter();
    IndexTextWriter& number(std::integral auto value) {
        char digits[24];
        text_.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
        text_ += ' ';
        return *this;
    }
    IndexTextWriter& text(std::string_view value);
    void endLine() { text_.back() = '\n'; }
    [[nodiscard]] std::string finish();

private:
    std::string text_;
};

/// Reads them in the same order. Throws host::Exception for anything else.
class IndexTextReader {
public:
    /// Looks at the first line and the last.
    explicit IndexTextReader(std::string_view bytes);
    /// Not negative.
    [[nodiscard]] std::int64_t number();
    [[nodiscard]] std::uint64_t unsignedNumber();
    [[nodiscard]] std::string_view text();

private:
    template <class Number> Number read();

    std::string_view rest_;
};

} // namespace nu
