#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>
#include <string_view>

#include "nuXmlParser/limits.h"

namespace nu {

/// What a document may ask for.
class LimitRules {
public:
    explicit LimitRules(const TNuSaxLimits& limits) noexcept
        : depth_(static_cast<std::size_t>(std::max(limits.Depth, 0))),
          attributes_(limits.Attributes), nameLength_(limits.NameLength),
          shortTag_(std::min(limits.Attributes, mostCounted) * shortestAttribute) {}

    [[nodiscard]] std::size_t depth() const noexcept { return depth_; }
    [[nodiscard]] std::size_t attributes() const noexcept { return attributes_; }
    [[nodiscard]] std::size_t nameLength() const noexcept { return nameLength_; }

    [[nodiscard]] bool allowsName(std::string_view name) const noexcept {
        return name.size() <= nameLength_ || isShort(name);
    }
    /// Whether a tag of so many bytes has no more attributes than it may. A longer one than has to
    /// be counted is for somebody who does.
    [[nodiscard]] bool allowsTag(std::ptrdiff_t length) const noexcept {
        return static_cast<std::size_t>(length) <= shortTag_;
    }
    /// The same, and whether it may begin an element inside of `depth` others.
    [[nodiscard]] bool allowsKnownTag(std::size_t depth, std::ptrdiff_t length) const noexcept {
        return depth < depth_ && allowsTag(length);
    }

private:
    static constexpr std::size_t shortestAttribute = 5; // ` a=""`
    static constexpr std::size_t mostCounted =
        std::numeric_limits<std::size_t>::max() / shortestAttribute;

    [[nodiscard]] bool isShort(std::string_view name) const noexcept;

    std::size_t depth_;
    std::size_t attributes_;
    std::size_t nameLength_;
    std::size_t shortTag_; ///< bytes that cannot hold more attributes than are allowed
};

} // namespace nu
