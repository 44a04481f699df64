#pragma once

#include <vector>

class TNuDOMNode;

namespace nu {

/// Nodes in the order of selection; one may stand there more than once.
using PathNodes = std::vector<TNuDOMNode*>;

} // namespace nu
