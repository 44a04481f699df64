#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/runtime/export.h"

/// The features of a reader: lines "name=value" in the order they were first set. Names are
/// compared ignoring letter case. They are stored and told, nothing else: the reader works the same
/// whatever their values.
class NUXML_API TNuSaxFeatures {
public:
    /// The value stored under `name`; nothing when there is none.
    [[nodiscard]] std::optional<bool> Get(std::u16string_view name) const;
    /// Stores a value, behind the others if the name is a new one.
    void Set(std::u16string_view name, bool value);

private:
    /// Empty, and the defaults hold, until something is set: most readers are made for one parse.
    std::vector<std::u16string> lines_;
};
