#pragma once

#include <atomic>
#include <cstdint>
#include <vector>

class TNuDOMDocument;
class TNuDOMNode;
class TNuDOMNodeList;
class TNuDOMObject;

namespace nu {

/// Decides when a document goes, and when nodes outside of its tree do.
///
/// The document is held as long as the count of any of its objects is above zero. Instead of
/// looking at all of them, the number of held objects is counted. A node outside of the tree goes
/// when neither it nor anything below it is held; until then it is a candidate that is looked at
/// whenever a count drops to zero.
///
/// Counts may drop on several threads at once. Two rules make that safe. After an object's count
/// has become zero it is not touched unless nobody else can free it, and the document is not
/// touched after its number of held objects was decremented. And dropping a reference frees no
/// memory of the document, which another thread may be using: what goes is set aside as garbage,
/// and reclaim() frees it when the tree is worked on again.
class DocumentLifetime {
public:
    explicit DocumentLifetime(TNuDOMDocument& document) noexcept : document_(document) {}
    DocumentLifetime(const DocumentLifetime&) = delete;
    DocumentLifetime& operator=(const DocumentLifetime&) = delete;

    /// The count of an object of the document has left zero.
    void hold() noexcept { held_.fetch_add(1, std::memory_order_relaxed); }
    /// The count of an object of the document has become zero; `detached` is that object when it is
    /// a node outside of the tree that is no candidate yet. The document may be gone afterwards.
    /// `asksDocument` is false for nodes outside of the tree: Deliberate: their last release frees
    /// the document only if another object has asked for that before.
    void forget(TNuDOMNode* detached, bool asksDocument) noexcept;
    /// Frees a node outside of the tree at once if it and everything below it is unheld; else it
    /// becomes a candidate.
    void collect(TNuDOMNode& detached) noexcept;
    /// A candidate goes or comes into the tree.
    void withdraw(TNuDOMNode& node) noexcept;
    /// The last reference to a snapshot was dropped.
    void discard(TNuDOMNodeList& list) noexcept;
    /// Frees what dropped references have left behind.
    void reclaim() noexcept {
        if (hasGarbage_.load(std::memory_order_acquire)) [[unlikely]] {
            freeGarbage();
        }
    }
    /// Held objects come from, or go to, another document together with the nodes they belong to.
    void moveHeld(std::int64_t count) noexcept { held_.fetch_add(count); }
    [[nodiscard]] std::int64_t held() const noexcept { return held_.load(); }
    /// Frees the document if it was asked to go before and nothing of it is held now.
    void collectDocument() noexcept;

private:
    class Lock;

    void addCandidate(TNuDOMNode& node) noexcept;
    void sweep() noexcept;
    void freeGarbage() noexcept;

    TNuDOMDocument& document_;
    std::atomic<std::int64_t> held_ = 0;
    std::atomic<bool> documentAsked_ = false;
    std::atomic<bool> hasGarbage_ = false;
    std::atomic<bool> hasCandidates_ = false;
    /// Guards the lists.
    std::atomic_flag lock_;
    std::vector<TNuDOMNode*> candidates_;
    std::vector<TNuDOMNode*> garbage_;
    std::vector<TNuDOMNodeList*> discarded_;
};

} // namespace nu
