#pragma once

#include <string_view>

#include "nuXmlParser/chars.h"
#include "nuXmlParser/namespaceNames.h"

class TNuDOMElement;

/// \file
/// How the names of XML Schema are written at a place in a document.

namespace nu {

/// A namespace as it is in scope at an element.
struct SchemaPrefix {
    /// The declared prefix with its colon; empty when there is none, or for the default namespace.
    NuXmlString text;
    bool isDeclared = false;

    [[nodiscard]] NuXmlString name(std::u16string_view local) const {
        return text + NuXmlString(local);
    }
};

SchemaPrefix findSchemaPrefix(const TNuDOMElement& element, std::u16string_view uri);

} // namespace nu
