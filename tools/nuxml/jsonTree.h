#pragma once

#include <optional>
#include <string_view>

#include "nuXmlDOM.h"

namespace tool {

/// A document made of JSON.
struct JsonTree {
    NuRef<TNuDOMDocument> document;
    std::size_t beforeRoot = 0; ///< instructions and comments before the document element
};

/// Makes the document that JSON stands for, by the rules of JsonWriter. Arrays in arrays become
/// elements "item", null an empty element.
///
/// \param root the name of the document element around everything; without one the only member of
///             the JSON is that
/// Throws JsonFault.
[[nodiscard]] JsonTree treeOfJson(std::string_view json, std::optional<std::u16string_view> root);

} // namespace tool
