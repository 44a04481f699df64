#pragma once

#include <cstdint>
#include <string_view>

#include "nuXmlParser/chars.h"

namespace nu {

/// Where written text goes, a block at a time: UTF-16 or UTF-8. What it tells about itself is about
/// the time before the first block; a target is empty unless it says otherwise.
template <class Unit> class OutputTarget {
public:
    /// Takes all of the block or throws.
    virtual void take(std::basic_string_view<Unit> block) = 0;

    /// In bytes, where the first block will go.
    virtual std::int64_t position() { return 0; }
    /// In bytes, what is there already.
    virtual std::int64_t size() { return 0; }
    /// The first character of what is there.
    virtual NuXmlChar firstCharacter() { return 0; }

protected:
    OutputTarget() = default;
    OutputTarget(const OutputTarget&) = default;
    OutputTarget& operator=(const OutputTarget&) = default;
    ~OutputTarget() = default;
};

} // namespace nu
