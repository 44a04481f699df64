#include "nuXmlDOM/core/lifetime.h"

#include <thread>

#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/nodeAccess.h"

namespace nu {

/// Held for a few steps only, and seldom by two threads: turning round is cheaper than sleeping.
class DocumentLifetime::Lock {
public:
    explicit Lock(std::atomic_flag& flag) noexcept : flag_(flag) {
        while (flag_.test_and_set(std::memory_order_acquire)) {
            std::this_thread::yield();
        }
    }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
    ~Lock() { flag_.clear(std::memory_order_release); }

private:
    std::atomic_flag& flag_;
};

// The document

void DocumentLifetime::forget(bool asksDocument) noexcept {
    // Noted before the count: afterwards others may free the document.
    if (asksDocument) {
        documentAsked_.store(true, std::memory_order_relaxed);
    }
    if (held_.fetch_sub(1) == 1) {
        collectDocument();
    }
}

void DocumentLifetime::giveHeld(std::int64_t count) noexcept {
    if (count != 0 && held_.fetch_sub(count) == count) {
        collectDocument();
    }
}

void DocumentLifetime::ask() noexcept {
    documentAsked_.store(true, std::memory_order_relaxed);
    if (held() == 0) {
        collectDocument();
    }
}

void DocumentLifetime::collectDocument() noexcept {
    if (documentAsked_.load(std::memory_order_relaxed)) {
        delete &document_;
    }
}

// Notes

void DocumentLifetime::note(TNuDOMNode& node) noexcept {
    const Lock lock(lock_);
    try {
        notes_.insert(&node);
    } catch (...) {
        return; // without memory for the note it goes with the document
    }
    hasNotes_.store(true, std::memory_order_release);
}

void DocumentLifetime::discard(TNuDOMNodeList& list) noexcept {
    const Lock lock(lock_);
    try {
        discarded_.push_back(&list);
    } catch (...) {
        return; // goes with the document
    }
    hasNotes_.store(true, std::memory_order_release);
}

void DocumentLifetime::followNotes() noexcept {
    // 1. Snapshots.
    std::vector<TNuDOMNodeList*> discarded;
    {
        const Lock lock(lock_);
        discarded.swap(discarded_);
    }
    for (TNuDOMNodeList* list : discarded) {
        delete list;
    }
    // 2. Nodes, one by one: with each of them others may go that are noted as well.
    while (TNuDOMNode* node = takeNote()) {
        if (TNuDOMNode* root = clearWitness(*node)) {
            look(*root, *node);
        } else if (!NodeAccess::isLinked(*node)) {
            look(*node, *node);
        }
    }
}

TNuDOMNode* DocumentLifetime::takeNote() noexcept {
    const Lock lock(lock_);
    if (notes_.empty()) {
        hasNotes_.store(!discarded_.empty(), std::memory_order_relaxed);
        return nullptr;
    }
    TNuDOMNode* node = *notes_.begin();
    notes_.erase(notes_.begin());
    return node;
}

void DocumentLifetime::eraseNote(TNuDOMNode& node) noexcept {
    if (hasNotes_.load(std::memory_order_acquire)) {
        const Lock lock(lock_);
        notes_.erase(&node);
    }
}

// Nodes outside of the tree

void DocumentLifetime::collect(TNuDOMNode& detached) noexcept {
    // What was noted about it must not free it under our hands.
    withdraw(detached);
    reclaim();
    look(detached, detached);
}

void DocumentLifetime::look(TNuDOMNode& root, const TNuDOMNode& start) noexcept {
    if (const TNuDOMNode* held = NodeAccess::firstHeld(root, start)) {
        setWitness(root, const_cast<TNuDOMNode&>(*held));
    } else {
        NodeAccess::destroySubtree(root);
    }
}

void DocumentLifetime::setWitness(TNuDOMNode& root, TNuDOMNode& witness) noexcept {
    // 1. It may be the witness of a candidate in which it stood before.
    if (TNuDOMNode* other = clearWitness(witness); other != nullptr && other != &root) {
        note(*other);
    }
    // 2. Without memory for the entries the candidate goes with the document.
    try {
        TNuDOMNode*& known = witnesses_[&root];
        if (known != nullptr) {
            clearWitness(*known);
        }
        candidates_[&witness] = &root;
        known = &witness;
    } catch (...) {
        withdraw(root);
        return;
    }
    root.setFlag(isCandidate);
    witness.setFlag(isWitness);
}

TNuDOMNode* DocumentLifetime::clearWitness(TNuDOMNode& witness) noexcept {
    if (!witness.hasFlag(isWitness)) {
        return nullptr;
    }
    witness.clearFlag(isWitness);
    const auto place = candidates_.find(&witness);
    TNuDOMNode* root = place->second;
    candidates_.erase(place);
    witnesses_[root] = nullptr;
    return root;
}

void DocumentLifetime::witnessMoved(TNuDOMNode& witness) noexcept {
    if (TNuDOMNode* root = clearWitness(witness); root != nullptr && root != &witness) {
        note(*root);
    }
}

void DocumentLifetime::withdraw(TNuDOMNode& node) noexcept {
    // 1. As a candidate.
    if (node.hasFlag(isCandidate)) {
        const auto place = witnesses_.find(&node);
        if (place != witnesses_.end()) {
            if (TNuDOMNode* witness = place->second) {
                clearWitness(*witness);
            }
            witnesses_.erase(&node);
        }
        node.clearFlag(isCandidate);
    }
    // 2. As a witness, and in a note.
    witnessMoved(node);
    eraseNote(node);
}

} // namespace nu
