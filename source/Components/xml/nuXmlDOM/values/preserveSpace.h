#pragma once

#include "nuXmlDOM/storage/nodeName.h"

class TNuDOMAttribute;
class TNuDOMDocument;
class TNuDOMElement;

/// \file
/// What the attribute xml:space says.

namespace nu {

/// The name xml:space, null when no node of the document ever had it.
[[nodiscard]] const NodeName* findSpaceName(TNuDOMDocument& document) noexcept;

/// The first attribute of that name, which findSpaceName gave; null without one.
[[nodiscard]] const TNuDOMAttribute* findSpaceAttribute(const TNuDOMElement& element,
                                                        const NodeName& name) noexcept;

/// Whether the value is "preserve" in any letter case.
[[nodiscard]] bool saysPreserve(const TNuDOMAttribute& attribute);

} // namespace nu
