#pragma once

#include <atomic>
#include <cstdint>
#include <unordered_map>
#include <unordered_set>
#include <vector>

class TNuDOMDocument;
class TNuDOMNode;
class TNuDOMNodeList;
class TNuDOMObject;

namespace nu {

/// Decides when a document goes, and when nodes outside of its tree do.
///
/// The document is held as long as the count of any of its objects is above zero. Instead of
/// looking at all of them, the number of held objects is counted.
///
/// A node outside of the tree goes when neither it nor anything below it is held. If its last
/// reference goes earlier it becomes a candidate, and one of the held nodes below it its witness.
/// All nodes from the witness up to the candidate know that they lead to it, so that whoever leaves
/// the candidate without one needs not look. When the witness is let go, or leaves, the next held
/// node is looked for from there on: emptying a candidate node by node takes a time in proportion
/// to its size. The candidate goes as soon as none is left, but at the end of the operation, which
/// may be working on it.
///
/// Counts may drop on several threads at once. Two rules make that safe. After an object's count
/// has become zero it is not touched unless nobody else can free it, and the document is not
/// touched after its number of held objects was decremented. And dropping a reference neither looks
/// at the tree nor frees memory of the document, which another thread may be using: it leaves a
/// note, and reclaim() does the rest when the tree is worked on again.
class DocumentLifetime {
public:
    /// While one stands, no candidate goes: for operations that need a node after they have changed
    /// the tree.
    class Work {
    public:
        explicit Work(DocumentLifetime& lifetime) noexcept : lifetime_(lifetime) {
            ++lifetime_.works_;
        }
        Work(const Work&) = delete;
        Work& operator=(const Work&) = delete;
        ~Work() {
            --lifetime_.works_;
            lifetime_.reclaim();
        }

    private:
        DocumentLifetime& lifetime_;
    };

    explicit DocumentLifetime(TNuDOMDocument& document) noexcept : document_(document) {}
    DocumentLifetime(const DocumentLifetime&) = delete;
    DocumentLifetime& operator=(const DocumentLifetime&) = delete;

    /// \name For any thread
    /// @{

    /// The count of an object of the document has left zero.
    void hold() noexcept { held_.fetch_add(1, std::memory_order_relaxed); }
    /// The count of an object of the document has become zero. The document may be gone afterwards.
    /// `asksDocument` is false for what is outside of the tree: Deliberate: its last release frees
    /// the document only if another object has asked for that before.
    void forget(bool asksDocument) noexcept;
    /// A node outside of the tree, or a witness, is about to be let go.
    void note(TNuDOMNode& node) noexcept;
    /// The last reference to a snapshot was dropped.
    void discard(TNuDOMNodeList& list) noexcept;
    /// @}

    /// \name For the thread that works on the tree
    /// @{

    /// Frees what dropped references have left behind.
    void reclaim() noexcept {
        if (hasNotes_.load(std::memory_order_acquire) && works_ == 0) [[unlikely]] {
            followNotes();
        }
    }
    /// The same for dropped snapshots alone, which never takes a node away.
    void reclaimLists() noexcept {
        if (hasNotes_.load(std::memory_order_acquire)) [[unlikely]] {
            freeDiscarded();
        }
    }
    /// The same as reclaim() before `node` is moved, which stays even if nobody holds it. Gives
    /// whether it would have gone, now or later.
    [[nodiscard]] bool reclaimBut(TNuDOMNode& node) noexcept;
    /// Frees a node outside of the tree at once if it and everything below it is unheld; else it
    /// becomes a candidate.
    void collect(TNuDOMNode& detached) noexcept;
    /// A candidate comes into the tree, or a node goes: nothing here refers to it any more.
    void withdraw(TNuDOMNode& node) noexcept;
    /// A node that leads to a witness has left `place`, where `next` stood behind it. It may stand
    /// elsewhere already.
    void departed(TNuDOMNode& node, TNuDOMNode& place, TNuDOMNode* next) noexcept;
    /// Held objects come from another document together with the nodes they belong to.
    void takeHeld(std::int64_t count) noexcept { held_.fetch_add(count); }
    /// Held objects go to another document. This one may be gone afterwards.
    void giveHeld(std::int64_t count) noexcept;
    /// @}

    [[nodiscard]] std::int64_t held() const noexcept { return held_.load(); }
    /// Somebody wants the document to go as soon as nothing of it is held.
    void ask() noexcept;

private:
    class Lock;

    void collectDocument() noexcept;
    void followNotes() noexcept;
    void freeDiscarded() noexcept;
    [[nodiscard]] TNuDOMNode* takeNote() noexcept;
    bool eraseNote(TNuDOMNode& node) noexcept;
    void follow(TNuDOMNode& node) noexcept;
    void look(TNuDOMNode& root) noexcept;
    void lookFurther(TNuDOMNode& witness, TNuDOMNode& place, const TNuDOMNode& start) noexcept;
    void addCandidate(TNuDOMNode& root, TNuDOMNode& witness) noexcept;
    void replaceWitness(TNuDOMNode& former, TNuDOMNode& place, TNuDOMNode& witness) noexcept;
    void removeCandidate(TNuDOMNode& root, TNuDOMNode& witness, TNuDOMNode& place) noexcept;

    TNuDOMDocument& document_;
    std::atomic<std::int64_t> held_ = 0;
    std::atomic<bool> documentAsked_ = false;
    std::atomic<bool> hasNotes_ = false;
    /// Guards what the notes are.
    std::atomic_flag lock_;
    std::unordered_set<TNuDOMNode*> notes_;
    std::vector<TNuDOMNodeList*> discarded_;

    std::int32_t works_ = 0;

    /// The witness of each candidate, and the candidate of each witness.
    std::unordered_map<TNuDOMNode*, TNuDOMNode*> witnesses_;
    std::unordered_map<TNuDOMNode*, TNuDOMNode*> candidates_;
};

} // namespace nu
