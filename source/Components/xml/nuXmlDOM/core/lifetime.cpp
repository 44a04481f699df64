#include "nuXmlDOM/core/lifetime.h"

#include <algorithm>
#include <thread>
#include <utility>

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

void DocumentLifetime::forget(TNuDOMNode* detached, bool asksDocument) noexcept {
    // 1. A node outside of the tree may go now, and so may one in which it was the last held.
    if (detached != nullptr) {
        addCandidate(*detached);
    }
    if (hasCandidates_.load()) {
        sweep();
    }
    // 2. The document may go. Noted before the count: afterwards others may free the document.
    if (asksDocument) {
        documentAsked_.store(true, std::memory_order_relaxed);
    }
    if (held_.fetch_sub(1) == 1) {
        collectDocument();
    }
}

void DocumentLifetime::collect(TNuDOMNode& detached) noexcept {
    reclaim();
    if (NodeAccess::isSubtreeHeld(detached)) {
        if (!detached.hasFlag(isCandidate)) {
            addCandidate(detached);
        }
        return;
    }
    NodeAccess::destroySubtree(detached);
}

void DocumentLifetime::addCandidate(TNuDOMNode& node) noexcept {
    const Lock lock(lock_);
    try {
        candidates_.push_back(&node);
    } catch (...) {
        return; // without memory for the note it goes with the document
    }
    node.setFlag(isCandidate);
    hasCandidates_.store(true);
}

void DocumentLifetime::withdraw(TNuDOMNode& node) noexcept {
    const Lock lock(lock_);
    candidates_.erase(std::remove(candidates_.begin(), candidates_.end(), &node),
                      candidates_.end());
    node.clearFlag(isCandidate);
    hasCandidates_.store(!candidates_.empty());
}

void DocumentLifetime::sweep() noexcept {
    const Lock lock(lock_);
    const auto isKept = [this](TNuDOMNode* node) {
        if (NodeAccess::isSubtreeHeld(*node)) {
            return true;
        }
        try {
            garbage_.push_back(node);
        } catch (...) {
            return true;
        }
        return false;
    };
    candidates_.erase(std::stable_partition(candidates_.begin(), candidates_.end(), isKept),
                      candidates_.end());
    hasCandidates_.store(!candidates_.empty());
    if (!garbage_.empty()) {
        hasGarbage_.store(true, std::memory_order_release);
    }
}

void DocumentLifetime::discard(TNuDOMNodeList& list) noexcept {
    const Lock lock(lock_);
    try {
        discarded_.push_back(&list);
    } catch (...) {
        return; // goes with the document
    }
    hasGarbage_.store(true, std::memory_order_release);
}

void DocumentLifetime::freeGarbage() noexcept {
    std::vector<TNuDOMNode*> garbage;
    std::vector<TNuDOMNodeList*> discarded;
    {
        const Lock lock(lock_);
        garbage.swap(garbage_);
        discarded.swap(discarded_);
        hasGarbage_.store(false, std::memory_order_relaxed);
    }
    for (TNuDOMNodeList* list : discarded) {
        delete list;
    }
    for (TNuDOMNode* node : garbage) {
        node->clearFlag(isCandidate);
        NodeAccess::destroySubtree(*node);
    }
}

void DocumentLifetime::collectDocument() noexcept {
    if (documentAsked_.load(std::memory_order_relaxed) && held() == 0) {
        delete &document_;
    }
}

} // namespace nu
