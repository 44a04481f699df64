#pragma once

#include <string_view>

#include "common/caseFolding.h"

namespace nu {

/// Whether the tree has a feature of the DOM in a version.
[[nodiscard]] inline bool hasFeature(std::u16string_view feature, std::u16string_view version) {
    return NuEqualFolded(feature, u"xml") && (version == u"1.0" || version == u"2.0");
}

} // namespace nu
