#pragma once

#include <cstdint>
#include <limits>
#include <string>

#include "host/runtime/export.h"

namespace nu {

/// A share of the bytes of a document: a record belongs to it if its "<" stands in it.
struct RecordShare {
    std::int64_t first = 0;                                         ///< its first byte
    std::int64_t behind = std::numeric_limits<std::int64_t>::max(); ///< the first byte behind it
};

/// The share of one of `count` workers, which are numbered from 0; together they are all of `size`
/// bytes, and each byte belongs to one.
[[nodiscard]] NUXML_API RecordShare shareOf(std::int64_t size, std::int64_t number,
                                            std::int64_t count) noexcept;

/// A start tag in a document, with everything around it that counts from there on: for readers that
/// see the same one the same follows.
struct RecordBorder {
    std::int64_t position = -1; ///< of its "<"; -1 where there is none
    std::string around{};       ///< the names of the open elements and what they declare

    /// False until there is one.
    [[nodiscard]] bool isThere() const noexcept { return position >= 0; }
    friend bool operator==(const RecordBorder&, const RecordBorder&) = default;
};

/// A place to begin reading at in the middle of a document, and what has to be known there.
struct RecordStart {
    std::int64_t position = 0; ///< in bytes
    std::int64_t line = 1;     ///< 0 where nobody knows
    std::int64_t column = 1;   ///< of `position`, from 1
    /// What is read in place of everything before: the document type and the start tags of the open
    /// elements with their declarations. Ends with a line break unless it is empty.
    std::string head{};
};

} // namespace nu
