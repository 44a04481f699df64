#pragma once

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string_view>

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

} // namespace tool
