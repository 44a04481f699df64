#pragma once

class TNuDOMDocument;
class TNuDOMNode;

namespace nu {

/// Moves a node outside of the tree, and everything below it, to another document. Its memory stays
/// where it is; the new document keeps that of the old one alive. References that are held move
/// along, so the old document may go, and so do the entries of snapshots.
/// Throws std::bad_alloc and changes nothing then.
void adopt(TNuDOMNode& root, TNuDOMDocument& document);

} // namespace nu
