#pragma once

#include "nuObj2Xml/optionSet.h"
#include "nuXmlParser/limits.h"

/// How objects are read back.
enum TNuDeserializeOption : std::uint8_t {
    /// Text that is no well-formed XML (ENuXmlFault), elements that stand for no property, missing
    /// properties that have no default, text beside
    /// elements, and a missing value for what cannot be missing are errors.
    dsStrict = 1,
    /// A property that is missing gets its declared default. Objects that reading makes itself
    /// always get theirs; this is for the object that is handed in, and what it holds already.
    dsResetMissing = 2,
    /// The text is as serializers write it, so that the reader may read it by its own rules, which
    /// is faster: nobody looks whether it is well-formed, and white space alone is no value.
    dsUnchecked = 4,
};

/// A set of these options, with limits on what a text may ask for.
class TNuDeserializeOptions : public nu::OptionSet<TNuDeserializeOption> {
public:
    using OptionSet::OptionSet;
    constexpr TNuDeserializeOptions(OptionSet set) noexcept : OptionSet(set) {}

    /// For texts of strangers; an element of a tree is as it is. More throws ENuSaxFatalError.
    TNuSaxLimits Limits = {};
};

/// The set of two options.
constexpr TNuDeserializeOptions operator|(TNuDeserializeOption left,
                                          TNuDeserializeOption right) noexcept {
    return {left, right};
}
