#pragma once

#include <cstdint>
#include <string_view>

namespace nu {

/// A place in a source; both count from 1, columns in UTF-16 units.
struct SourcePlace {
    std::int64_t line = 1;
    std::int64_t column = 1;
};

/// Follows places through text. A line ends with LF, CR LF or CR.
class PlaceCounter {
public:
    PlaceCounter() = default;
    /// Counts from a place that is not the first.
    explicit PlaceCounter(SourcePlace place) noexcept : place_(place) {}

    /// The place of the next character.
    [[nodiscard]] SourcePlace place() const noexcept { return place_; }
    void moveOver(std::string_view text) noexcept;

private:
    void breakLines(std::string_view text) noexcept;

    SourcePlace place_;
    bool isBehindCr_ = false;
};

} // namespace nu
