#include "nuXmlDOM/upkeep/lifetime.h"

#include <algorithm>
#include <thread>

#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/nodeLinks.h"
#include "nuXmlDOM/upkeep/heldNodes.h"
#include "nuXmlDOM/upkeep/nodeMemory.h"

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
    if (NodeLinks::isLinked(node)) {
        if (NodeFlags::has(node, isWitness) && !isHeld(node)) {
            lookFurther(node, node, node);
        }
    } else if (!NodeFlags::has(node, isCandidate)) {
        look(node);
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

bool DocumentLifetime::eraseNote(TNuDOMNode& node) noexcept {
    if (!hasNotes_.load(std::memory_order_acquire)) {
        return false;
    }
    const Lock lock(lock_);
    return notes_.erase(&node) != 0;
}

// Nodes outside of the tree

namespace {

/// Changes the nodes from one up to what stands below another.
template <class Change> void changePath(TNuDOMNode* from, const TNuDOMNode* to, Change&& change) {
    for (; from != to; from = NodeLinks::parent(*from)) {
        change(*from);
    }
}

/// Whether `root` is what `node` stands in. Looks only so far up as costs nothing: false tells
/// nothing.
bool isSoonFound(const TNuDOMNode& root, const TNuDOMNode& node) noexcept {
    constexpr int mostSteps = 64;
    const TNuDOMNode* place = &node;
    for (int steps = 0; place != nullptr && steps < mostSteps; ++steps) {
        if (place == &root) {
            return true;
        }
        place = NodeLinks::parent(*place);
    }
    return false;
}

} // namespace

void DocumentLifetime::collect(TNuDOMNode& detached) noexcept {
    withdraw(detached);
    look(detached);
}

bool DocumentLifetime::reclaimBut(TNuDOMNode& node) noexcept {
    const bool isWaiting =
        NodeFlags::has(node, isCandidate) || (!NodeLinks::isLinked(node) && eraseNote(node));
    reclaim();
    return isWaiting;
}

void DocumentLifetime::look(TNuDOMNode& root) noexcept {
    const TNuDOMNode* held = firstHeld(root);
    if (held == nullptr) {
        NodeMemory::destroySubtree(root);
    } else if (held != &root) {
        addCandidate(root, const_cast<TNuDOMNode&>(*held));
    }
}

/// A candidate has lost its witness: another one is looked for, from `start` on first, where the
/// witness stood. From `place` up to the candidate nodes lead to it still.
void DocumentLifetime::lookFurther(TNuDOMNode& witness, TNuDOMNode& place,
                                   const TNuDOMNode& start) noexcept {
    TNuDOMNode& root = *candidates_.find(&witness)->second;
    const TNuDOMNode* held = firstHeld(root, start);
    if (held != nullptr && held != &root) {
        replaceWitness(witness, place, const_cast<TNuDOMNode&>(*held));
        return;
    }
    removeCandidate(root, witness, place);
    if (held == nullptr) {
        note(root);
    }
}

void DocumentLifetime::departed(TNuDOMNode& node, TNuDOMNode& place, TNuDOMNode* next) noexcept {
    // 1. Whose witness it is, or leads to.
    TNuDOMNode* root = NodeFlags::has(node, isWitness) ? candidates_.find(&node)->second : &place;
    while (TNuDOMNode* parent = NodeLinks::parent(*root)) {
        root = parent;
    }
    TNuDOMNode& witness = *witnesses_.find(root)->second;
    changePath(&witness, NodeLinks::parent(node),
               [](TNuDOMNode& other) { NodeFlags::clear(other, leadsToWitness); });
    // 2. It may only have moved about.
    if (isHeld(witness) && isSoonFound(*root, witness)) {
        replaceWitness(witness, place, witness);
    } else {
        lookFurther(witness, place, next != nullptr ? *next : place);
    }
}

void DocumentLifetime::addCandidate(TNuDOMNode& root, TNuDOMNode& witness) noexcept {
    // Without memory for the entries the candidate goes with the document.
    try {
        const auto place = candidates_.emplace(&witness, &root).first;
        try {
            witnesses_.emplace(&root, &witness);
        } catch (...) {
            candidates_.erase(place);
            throw;
        }
    } catch (...) {
        return;
    }
    NodeFlags::set(root, isCandidate);
    NodeFlags::set(witness, isWitness);
    changePath(&witness, nullptr, [](TNuDOMNode& node) { NodeFlags::set(node, leadsToWitness); });
}

void DocumentLifetime::replaceWitness(TNuDOMNode& former, TNuDOMNode& place,
                                      TNuDOMNode& witness) noexcept {
    // 1. The entries, which are used again.
    auto entry = candidates_.extract(&former);
    NodeFlags::clear(former, isWitness);
    NodeFlags::set(witness, isWitness);
    witnesses_.find(entry.mapped())->second = &witness;
    entry.key() = &witness;
    candidates_.insert(std::move(entry));
    // 2. The paths have their upper end in common.
    TNuDOMNode* node = &witness;
    for (; !NodeFlags::has(*node, leadsToWitness); node = NodeLinks::parent(*node)) {
        NodeFlags::set(*node, leadsToWitness);
    }
    changePath(&place, node, [](TNuDOMNode& other) { NodeFlags::clear(other, leadsToWitness); });
}

void DocumentLifetime::removeCandidate(TNuDOMNode& root, TNuDOMNode& witness,
                                       TNuDOMNode& place) noexcept {
    changePath(&place, NodeLinks::parent(root),
               [](TNuDOMNode& node) { NodeFlags::clear(node, leadsToWitness); });
    NodeFlags::clear(witness, isWitness);
    NodeFlags::clear(root, isCandidate);
    candidates_.erase(&witness);
    witnesses_.erase(&root);
}

void DocumentLifetime::withdraw(TNuDOMNode& node) noexcept {
    if (NodeFlags::has(node, isCandidate)) {
        TNuDOMNode& witness = *witnesses_.find(&node)->second;
        removeCandidate(node, witness, witness);
    }
    eraseNote(node);
}

} // namespace nu
