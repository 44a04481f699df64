#pragma once

class TNuDOMDocument;

namespace nu {

/// What an object of a document shares with others and leads to the document. For most nodes this
/// is their name; for those that need more, an object of their own.
struct ObjectContext {
    TNuDOMDocument* document;
};

} // namespace nu
