#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>

#include "nuXmlDOM.h"

namespace tool {

/// Paths that select one node each, for one document: the names from the document element down,
/// with a position where a name occurs more than once: "/library/shelf[2]/book/@id".
///
/// Remembers the positions of the children it has counted, so that all nodes of a document cost
/// linear time. The document must not change meanwhile.
class NodePaths {
public:
    [[nodiscard]] std::u16string pathOf(TNuDOMNode& node);

private:
    struct Place {
        std::size_t position; ///< from 1, among those of the same name
        bool isOnlyOne;
    };

    [[nodiscard]] std::u16string stepOf(TNuDOMNode& node);
    void countChildren(TNuDOMNode& parent);

    std::unordered_map<const TNuDOMNode*, Place> places_;
};

} // namespace tool
