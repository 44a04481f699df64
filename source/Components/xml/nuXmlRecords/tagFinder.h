#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

namespace nu {

/// Looks through bytes for what reads as a start tag of one name, with any prefix or none, whatever
/// it stands in.
class TagFinder {
public:
    explicit TagFinder(std::string localName) : name_(std::move(localName)) {}

    /// Goes through the next bytes, of which the first one stands at `position`.
    void look(std::string_view bytes, std::int64_t position);
    /// The positions of the "<" of what was found and not taken, in order.
    [[nodiscard]] std::deque<std::int64_t>& found() noexcept { return found_; }
    [[nodiscard]] const std::string& name() const noexcept { return name_; }

private:
    std::string name_;
    std::deque<std::int64_t> found_;
    bool isInName_ = false; ///< bytes ended in what may become the name
    std::int64_t less_ = 0;
    std::string read_; ///< of that name
};

} // namespace nu
