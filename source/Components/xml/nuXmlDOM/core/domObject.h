#pragma once

#include <atomic>
#include <cstdint>
#include <exception>

#include "host/com/ref.h"
#include "host/com/unknown.h"
#include "host/runtime/export.h"
#include "nuXmlDOM/storage/objectContext.h"

/// \file
/// Handles, and what all objects of a document have in common.

class TNuDOMDocument;
class TNuDOMNodeList;

/// A counted handle to an object of the tree. The only thing that touches counts: an application
/// keeps what it wants to keep in handles; raw pointers and references are good as long as the
/// tree stays as it is.
template <class Object> using NuRef = host::Ref<Object>;

namespace nu {

class DocumentLifetime;
class Face;
class FaceAccess;
class NodeContext;

/// \cond internal
enum ObjectFlag : std::uint16_t {
    /// Belongs to those who hold it: a result list, an implementation object.
    selfOwned = 1,
    /// A node outside of the tree that DocumentLifetime watches.
    isCandidate = 2,
    /// A node whose parent refused it: the parent does not know it.
    isRefused = 4,
    /// A node that a snapshot of its document refers to.
    isInResultList = 8,
    /// A node that has a NodeExtras of its own.
    hasExtras = 16,
    /// An element whose child elements are listed in another order than its children.
    hasElementOrder = 32,
    /// A text that reads the same after it is unescaped and escaped again.
    isCanonicalText = 64,
    /// A held node for whose sake DocumentLifetime keeps a candidate that it stands in.
    isWitness = 128,
    /// A node that is the parent of refused ones.
    hasRefused = 256,
    /// An element that was given a child other than text and comments: without it a search
    /// for elements need not look at the children.
    hadNamedChild = 512,
    /// A witness, or a node of a candidate below which one stands.
    leadsToWitness = 1024,
    /// A text in which no reference stands, as somebody has seen.
    isFreeOfReferences = 2048,
};
/// \endcond

} // namespace nu

/// The root of all objects of a document: nodes, lists, the document itself.
///
/// A reference to any object of a document keeps the whole document alive: the document goes when
/// the last reference to anything in it is dropped. A node outside of the tree that nobody holds,
/// nor anything below it, goes at once. Counts are touched by handles and interfaces only, and may
/// be touched by several threads at a time; everything else is for one thread at a time.
class NUXML_API TNuDOMObject {
public:
    TNuDOMObject(const TNuDOMObject&) = delete;
    TNuDOMObject& operator=(const TNuDOMObject&) = delete;

    /// The document that the object belongs to; null for a host implementation object and a
    /// list whose document is gone.
    [[nodiscard]] TNuDOMDocument* OwnerDocument() const noexcept {
        return context_ != nullptr ? context_->document : nullptr;
    }

    /// Stores a counted reference to the object's interface `id` in `*object` and gives
    /// host::resultOk, or stores null and gives host::resultNoInterface.
    host::ResultCode QueryInterface(const host::InterfaceId& id, void** object) noexcept;
    /// Takes a reference; gives the new count.
    std::int32_t _AddRef() noexcept;
    /// Drops a reference and lets the object, or its document, go when nothing is held any more.
    /// Gives the new count.
    std::int32_t _Release() noexcept;
    /// The object itself: leads from an interface back to the class.
    [[nodiscard]] TNuDOMObject* AsObject() noexcept { return this; }
    /// The number of references that are held.
    [[nodiscard]] std::int32_t RefCount() const noexcept {
        // What was done before the last reference was dropped is done for whoever sees none.
        return count_.load(std::memory_order_acquire);
    }

    /// Publishes what an exception says as the thread's error information and gives the failure
    /// code: the exception's own when it is a host::ESystemError with a negative code, else
    /// host::resultUnexpected. Interfaces answer so instead of throwing.
    static host::ResultCode SafeCallException(const std::exception& exception) noexcept;

protected:
    /// Throws host::EAssertionFailed ("A owner document is required!") without a document.
    explicit TNuDOMObject(TNuDOMDocument* document);
    /// For the two kinds that have no owner at first: document and implementation.
    explicit TNuDOMObject(const nu::ObjectContext* context) noexcept : context_(context) {}
    ~TNuDOMObject() = default;

    /// Lets the object go that belongs to nobody but those who hold it; run when the count of an
    /// object with the flag selfOwned has become zero.
    virtual void _GC() noexcept = 0;
    /// The object that offers the interfaces of this one; made at the first call.
    virtual nu::Face& face() = 0;

    /// \cond internal
    [[nodiscard]] bool hasFlag(nu::ObjectFlag flag) const noexcept {
        return (flags_.load(std::memory_order_relaxed) & flag) != 0;
    }
    void setFlag(nu::ObjectFlag flag) noexcept {
        flags_.store(static_cast<std::uint16_t>(flags_.load(std::memory_order_relaxed) | flag),
                     std::memory_order_relaxed);
    }
    void clearFlag(nu::ObjectFlag flag) noexcept {
        flags_.store(static_cast<std::uint16_t>(flags_.load(std::memory_order_relaxed) & ~flag),
                     std::memory_order_relaxed);
    }
    /// \endcond

private:
    /// The last reference to a node, or to one of its lists, is about to be dropped. Gives whether
    /// that lets the document go.
    NUXML_LOCAL bool noteLastRelease(nu::DocumentLifetime& lifetime) noexcept;

    friend class nu::FaceAccess;
    friend class nu::NodeContext;

    const nu::ObjectContext* context_;
    std::atomic<std::int32_t> count_ = 0;

protected:
    /// \cond internal
    // Here, where they fill what the count leaves of a word.
    /// The host::DOMNodeType of a node; 0 for what is none.
    std::uint16_t nodeType_ = 0;
    std::atomic<std::uint16_t> flags_ = 0;
    /// \endcond
};
