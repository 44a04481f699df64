#pragma once

#include <vector>

#include "nuXmlDOM/core/nameTest.h"
#include "nuXmlDOM/core/node.h"
#include "nuXmlDOM/path/pathProgram.h"

namespace nu {

/// Nodes in the order of selection; one may stand there more than once.
using PathNodes = std::vector<TNuDOMNode*>;

/// Selects the nodes at `program` from `context`, an element or a document, behind what is in
/// `result` already. With `elementsOnly` nodes that are no elements are left out at the end.
///
/// The document stands for the element that holds the document element: it is a context and a
/// result, but has no attributes, and instructions and comments beside the document element are not
/// below it.
void selectNodes(const PathProgram& program, TNuDOMNode& context, bool elementsOnly,
                 PathNodes& result);

/// The one node that was found at `path`, or null. With soRaise none, or more than one, throws
/// ENuDomException.
[[nodiscard]] TNuDOMNode* singleNode(std::u16string_view path, TNuDOMSelectOptions options,
                                     const PathNodes& found);
/// The one element that was found at `path`, or null. More than one throws ENuDomException, and so
/// does none with soRaise.
[[nodiscard]] TNuDOMElement* singleElement(std::u16string_view path, TNuDOMSelectOptions options,
                                           const PathNodes& found);

/// Leaves only the candidates that the filter keeps. `mayRepeat` says whether a candidate may be
/// there more than once.
void applyFilter(const PathProgram& program, const PathFilter& filter, bool mayRepeat,
                 PathNodes& candidates);

/// The first child of an element or a document, which may be any node; of the document the document
/// element.
[[nodiscard]] inline TNuDOMNode* firstPathChild(TNuDOMNode& context) noexcept {
    // Named in full: the class is known, so nothing needs to be looked up.
    return NodeAccess::is<TNuDOMElement>(context)
               ? static_cast<TNuDOMElement&>(context).TNuDOMElement::get_firstChild()
               : static_cast<TNuDOMDocument&>(context).GetRootNode();
}

/// Calls `visit` for each child of an element or a document in order.
template <class Visit> void forEachPathChild(TNuDOMNode& context, Visit&& visit) {
    for (TNuDOMNode* node = firstPathChild(context); node != nullptr;
         node = NodeChain::next(*node)) {
        visit(*node);
    }
}

/// Compares a value with the literal of a filter. Throws host::EConvertError where an integer is
/// meant and there is none.
[[nodiscard]] bool comparePathValue(const PathFilter& filter, std::u16string_view value);
/// The same for the text of a leaf, without unfolding it where that is not needed.
[[nodiscard]] bool comparePathValue(const PathFilter& filter, const TNuDOMNode& leaf);

} // namespace nu
