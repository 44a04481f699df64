#pragma once

#include "nuObj2Xml/optionSet.h"

/// How objects are read back.
enum TNuDeserializeOption : std::uint8_t {
    /// Elements that stand for no property, missing properties that have no default, text beside
    /// elements, and a missing value for what cannot be missing are errors.
    dsStrict = 1,
    /// A property that is missing gets its declared default. Objects that reading makes itself
    /// always get theirs; this is for the object that is handed in, and what it holds already.
    dsResetMissing = 2,
};

/// A set of these options.
using TNuDeserializeOptions = nu::OptionSet<TNuDeserializeOption>;

/// The set of two options.
constexpr TNuDeserializeOptions operator|(TNuDeserializeOption left,
                                          TNuDeserializeOption right) noexcept {
    return TNuDeserializeOptions(left) | TNuDeserializeOptions(right);
}
