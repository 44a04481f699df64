#pragma once

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <system_error>

namespace tool {

/// The digits of a number, for those who want to know their count before they write them.
class Decimal {
public:
    explicit Decimal(std::int64_t number) noexcept
        : length_(static_cast<std::size_t>(
              std::to_chars(digits_.data(), digits_.data() + digits_.size(), number).ptr -
              digits_.data())) {}

    [[nodiscard]] std::string_view view() const noexcept { return {digits_.data(), length_}; }

private:
    std::array<char, 24> digits_{};
    std::size_t length_;
};

/// The number that digits stand for, with nothing before or behind them.
template <class Number> std::optional<Number> numberOf(std::string_view digits) noexcept {
    Number number = 0;
    const char* const end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, number);
    const bool isRight = result.ec == std::errc() && result.ptr == end;
    return isRight ? std::optional(number) : std::nullopt;
}

} // namespace tool
