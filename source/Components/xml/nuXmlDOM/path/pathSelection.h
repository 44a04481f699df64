#pragma once

#include <cstddef>
#include <limits>
#include <string_view>

#include "nuXmlDOM/path/pathNodes.h"
#include "nuXmlDOM/path/pathProgram.h"

class TNuDOMElement;

namespace nu {

/// Selects the nodes at `program` from `context`, an element or a document, behind what is in
/// `result` already. With `elementsOnly` nodes that are no elements are left out at the end. More
/// than `limit` nodes in the result before that throw ENuDomException.
void selectNodes(const PathProgram& program, TNuDOMNode& context, bool elementsOnly,
                 PathNodes& result, std::size_t limit = std::numeric_limits<std::size_t>::max());

/// The first of the nodes, or of the elements, at `program`; null without one. Looks no further.
[[nodiscard]] TNuDOMNode* firstSelected(const PathProgram& program, TNuDOMNode& context,
                                        bool elementsOnly);

/// The one node that was found at `path`, or null. With soRaise none, or more than one, throws
/// ENuDomException.
[[nodiscard]] TNuDOMNode* singleNode(std::u16string_view path, TNuDOMSelectOptions options,
                                     const PathNodes& found);
/// The one element that was found at `path`, or null. More than one throws ENuDomException, and so
/// does none with soRaise.
[[nodiscard]] TNuDOMElement* singleElement(std::u16string_view path, TNuDOMSelectOptions options,
                                           const PathNodes& found);

} // namespace nu
