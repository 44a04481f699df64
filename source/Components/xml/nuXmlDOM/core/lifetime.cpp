#include "nuXmlDOM/core/lifetime.h"

#include <algorithm>
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

void DocumentLifetime::freeDiscarded() noexcept {
    std::vector<TNuDOMNodeList*> discarded;
    {
        const Lock lock(lock_);
        discarded.swap(discarded_);
    }
    for (TNuDOMNodeList* list : discarded) {
        delete list;
    }
}

void DocumentLifetime::followNotes() noexcept {
    freeDiscarded();
    // Nodes one by one: with each of them others may go that are noted as well.
    while (TNuDOMNode* node = takeNote()) {
        follow(*node);
    }
}

void DocumentLifetime::follow(TNuDOMNode& node) noexcept {
    const bool isLinked = NodeAccess::isLinked(node);
    if (isLinked && candidates_.count(&node) == 1) {
        // Most often: others that are held stand behind the witness.
        look(*takeCandidate(node), node);
        return;
    }
    noteCandidates(node);
    if (!isLinked) {
        look(node, node);
    }
}

void DocumentLifetime::noteCandidates(TNuDOMNode& witness) noexcept {
    if (witness.hasFlag(isWitness)) {
        while (TNuDOMNode* root = takeCandidate(witness)) {
            if (root != &witness) {
                note(*root);
            }
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
    withdraw(detached);
    look(detached, detached);
}

void DocumentLifetime::reclaimBut(TNuDOMNode& node) noexcept {
    if (hasNotes_.load(std::memory_order_acquire)) {
        if (!NodeAccess::isLinked(node) && !node.hasFlag(isWitness)) {
            eraseNote(node);
        }
        followNotes();
    }
}

void DocumentLifetime::look(TNuDOMNode& root, const TNuDOMNode& start) noexcept {
    if (const TNuDOMNode* held = NodeAccess::firstHeld(root, start)) {
        setWitness(root, const_cast<TNuDOMNode&>(*held));
    } else {
        NodeAccess::destroySubtree(root);
    }
}

void DocumentLifetime::setWitness(TNuDOMNode& root, TNuDOMNode& witness) noexcept {
    // Without memory for the entries the candidate goes with the document.
    withdraw(root);
    try {
        const auto place = candidates_.emplace(&witness, &root);
        try {
            witnesses_.emplace(&root, &witness);
        } catch (...) {
            candidates_.erase(place);
            throw;
        }
    } catch (...) {
        return;
    }
    root.setFlag(isCandidate);
    witness.setFlag(isWitness);
}

TNuDOMNode* DocumentLifetime::takeCandidate(TNuDOMNode& witness) noexcept {
    const auto place = candidates_.find(&witness);
    if (place == candidates_.end()) {
        return nullptr;
    }
    TNuDOMNode* root = place->second;
    candidates_.erase(place);
    if (!candidates_.contains(&witness)) {
        witness.clearFlag(isWitness);
    }
    witnesses_.erase(root);
    root->clearFlag(isCandidate);
    return root;
}

void DocumentLifetime::withdraw(TNuDOMNode& node) noexcept {
    // 1. As a candidate.
    if (node.hasFlag(isCandidate)) {
        const auto place = witnesses_.find(&node);
        TNuDOMNode* witness = place->second;
        const auto [first, last] = candidates_.equal_range(witness);
        candidates_.erase(std::find_if(
            first, last, [&node](const auto& entry) { return entry.second == &node; }));
        if (!candidates_.contains(witness)) {
            witness->clearFlag(isWitness);
        }
        witnesses_.erase(place);
        node.clearFlag(isCandidate);
    }
    // 2. In a note.
    eraseNote(node);
}

void DocumentLifetime::forgetNode(TNuDOMNode& node) noexcept {
    withdraw(node);
    noteCandidates(node);
}

} // namespace nu
