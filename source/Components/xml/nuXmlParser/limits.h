#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>

/// What documents may ask of a reader; nothing is limited unless somebody says so. What is more is
/// a fatal error with a message of its own.
struct TNuSaxLimits {
    /// Elements in each other. The reader cannot count more than this either.
    std::int32_t Depth = std::numeric_limits<std::int32_t>::max();
    /// Attributes of one element, declarations among them.
    std::size_t Attributes = std::numeric_limits<std::size_t>::max();
    /// Characters of one name: of an element, an attribute, an instruction's target, a document
    /// type.
    std::size_t NameLength = std::numeric_limits<std::size_t>::max();

    friend bool operator==(const TNuSaxLimits&, const TNuSaxLimits&) = default;
};
