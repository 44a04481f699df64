#pragma once

#include <string_view>

#include "nuXmlDOM/path/pathNodes.h"
#include "nuXmlDOM/path/pathProgram.h"
#include "nuXmlDOM/path/pathWork.h"

class TNuDOMElement;

namespace nu {

/// Selects the nodes at `program` from `context`, an element or a document, behind what is in
/// `result` already. With `elementsOnly` nodes that are no elements are left out at the end. Throws
/// ENuDomException where `work` says that it is too much.
void selectNodes(const PathProgram& program, TNuDOMNode& context, bool elementsOnly,
                 PathNodes& result, PathWork& work);

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
