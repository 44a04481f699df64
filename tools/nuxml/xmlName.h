#pragma once

#include <string_view>

namespace tool {

/// Whether elements and attributes can have this name, by XML 1.0 and its namespaces.
[[nodiscard]] bool isXmlName(std::u16string_view name);

} // namespace tool
