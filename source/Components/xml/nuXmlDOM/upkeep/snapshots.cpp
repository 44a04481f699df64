#include "nuXmlDOM/upkeep/snapshots.h"

#include <mutex>

#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/nodeLinks.h"
#include "nuXmlDOM/core/nodeList.h"
#include "nuXmlDOM/upkeep/documentParts.h"

namespace nu {

namespace {

// Documents of several threads may hold lists of each other's nodes, so what leads from one to
// another is not of either of them.
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables)
std::mutex guestMutex;

} // namespace

struct SnapshotVisit {
    TNuDOMNodeList& list;
    Snapshots& host;
    /// The other guests of the host.
    SnapshotVisit* previous;
    SnapshotVisit* next;
    /// The next visit of the list.
    SnapshotVisit* nextOfList;
};

/// Held by a document that has guests, or whose snapshots are guests.
class Snapshots::Lock {
public:
    explicit Lock(const Snapshots& snapshots) : lock_(guestMutex, std::defer_lock) {
        if (snapshots.visitCount_.load(std::memory_order_acquire) != 0) {
            lock_.lock();
        }
    }

private:
    std::unique_lock<std::mutex> lock_;
};

void Snapshots::enter(TNuDOMNodeList& list) noexcept {
    list.next_ = first_;
    if (first_ != nullptr) {
        first_->previous_ = &list;
    }
    first_ = &list;
}

void Snapshots::leave(TNuDOMNodeList& list) noexcept {
    {
        const Lock lock(*this);
        while (SnapshotVisit* visit = list.visits_) {
            list.visits_ = visit->nextOfList;
            visit->host.dismiss(*visit);
        }
    }
    (list.previous_ != nullptr ? list.previous_->next_ : first_) = list.next_;
    if (list.next_ != nullptr) {
        list.next_->previous_ = list.previous_;
    }
}

void Snapshots::invite(TNuDOMNodeList& list) {
    const std::lock_guard lock(guestMutex);
    welcome(list);
    if (!list.marksMembers_) {
        list.markMembers();
    }
}

void Snapshots::welcome(TNuDOMNodeList& list) {
    if (list.OwnerDocument() == &document_) {
        return;
    }
    for (const SnapshotVisit* visit = list.visits_; visit != nullptr; visit = visit->nextOfList) {
        if (&visit->host == this) {
            return;
        }
    }
    auto* visit = new SnapshotVisit{list, *this, nullptr, firstGuest_, list.visits_};
    if (firstGuest_ != nullptr) {
        firstGuest_->previous = visit;
    }
    firstGuest_ = visit;
    list.visits_ = visit;
    changeCount(*visit, 1);
}

void Snapshots::dismiss(SnapshotVisit& visit) noexcept {
    (visit.previous != nullptr ? visit.previous->next : firstGuest_) = visit.next;
    if (visit.next != nullptr) {
        visit.next->previous = visit.previous;
    }
    changeCount(visit, -1);
    delete &visit;
}

void Snapshots::changeCount(const SnapshotVisit& visit, int change) noexcept {
    visit.host.visitCount_ += change;
    visit.list.OwnerDocument()->parts().snapshots.visitCount_ += change;
}

void Snapshots::follow(const TNuDOMNode& node, TNuDOMDocument& target) {
    markMembers();
    if (!NodeFlags::has(node, isInResultList)) {
        return;
    }
    const std::lock_guard lock(guestMutex);
    for (TNuDOMNodeList* list = first_; list != nullptr; list = list->next_) {
        if (list->refersTo(node)) {
            target.parts().snapshots.welcome(*list);
        }
    }
    for (SnapshotVisit* visit = firstGuest_; visit != nullptr; visit = visit->next) {
        if (visit->list.refersTo(node)) {
            target.parts().snapshots.welcome(visit->list);
        }
    }
}

/// New lists stand before those that have marked their members.
void Snapshots::markMembers() noexcept {
    for (TNuDOMNodeList* list = first_; list != nullptr && !list->isMarkedHere_;
         list = list->next_) {
        list->isMarkedHere_ = true;
        if (!list->marksMembers_) {
            list->markMembers();
        }
    }
}

void Snapshots::forgetNode(TNuDOMNode& node) noexcept {
    markMembers();
    if (!NodeFlags::has(node, isInResultList)) {
        return;
    }
    const Lock lock(*this);
    for (TNuDOMNodeList* list = first_; list != nullptr; list = list->next_) {
        list->forgetNode(node);
    }
    for (SnapshotVisit* visit = firstGuest_; visit != nullptr; visit = visit->next) {
        visit->list.forgetNode(node);
    }
}

void Snapshots::fill(TNuDOMNodeList& list, std::vector<TNuDOMNode*> nodes) {
    if (nodes.size() < nodes.capacity() / 2) {
        // Much room for few nodes is better kept for a list that needs it.
        list.items_.assign(nodes.begin(), nodes.end());
        list.OwnerDocument()->parts().keepRoom(std::move(nodes));
    } else {
        list.items_ = std::move(nodes);
    }
    if (list.marksMembers_) {
        list.markMembers();
    }
}

void Snapshots::end() noexcept {
    while (first_ != nullptr) {
        delete first_;
    }
    const Lock lock(*this);
    while (SnapshotVisit* visit = firstGuest_) {
        TNuDOMNodeList& list = visit->list;
        list.forgetNodesOf(document_);
        SnapshotVisit** place = &list.visits_;
        while (*place != visit) {
            place = &(*place)->nextOfList;
        }
        *place = visit->nextOfList;
        dismiss(*visit);
    }
}

} // namespace nu
