#pragma once

#include <cstddef>

#include "host/com/unknown.h"

class TNuDOMNode;
class TNuDOMNodeList;
class TNuDOMImplementation;

namespace nu {

class DocumentMemory;

/// The interfaces of one object of the tree: a small object beside it, made when the first
/// interface is asked for. It shares count and identity of its object and dies with it.
class Face {
public:
    Face(const Face&) = delete;
    Face& operator=(const Face&) = delete;
    virtual ~Face() = default;

    /// The interface `id`, or null; takes no reference.
    [[nodiscard]] virtual void* find(const host::InterfaceId& id) noexcept = 0;
    /// The bytes that the face takes, so that its memory can go back to the document.
    [[nodiscard]] virtual std::size_t size() const noexcept = 0;

protected:
    Face() = default;
};

/// Makes the face of a node in the memory of its document. Nothing but that memory has to be given
/// back when the node goes.
[[nodiscard]] Face* makeFace(TNuDOMNode& node, DocumentMemory& memory);
/// Makes the face of a list or an implementation object, which owns it.
[[nodiscard]] Face* makeFace(TNuDOMNodeList& list);
[[nodiscard]] Face* makeFace(TNuDOMImplementation& implementation);

} // namespace nu
