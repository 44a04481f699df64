#pragma once

#include <atomic>
#include <cstdint>
#include <vector>

class TNuDOMDocument;
class TNuDOMNode;
class TNuDOMNodeList;

namespace nu {

/// That a snapshot is a guest of a document.
struct SnapshotVisit;

/// The snapshots that have to be told when nodes of a document go: its own, and those of other
/// documents that refer to nodes of this one, its guests.
///
/// A snapshot that was dropped is freed when its own document is worked on again, maybe on another
/// thread than the one that works on this document. So what has to do with guests is done under one
/// lock for all documents. Those that have no guest and are none need it not: they become one only
/// by a snapshot that is held, which makes both documents work of one thread.
class Snapshots {
public:
    explicit Snapshots(TNuDOMDocument& document) noexcept : document_(document) {}
    Snapshots(const Snapshots&) = delete;
    Snapshots& operator=(const Snapshots&) = delete;

    /// A snapshot of the document begins.
    void enter(TNuDOMNodeList& list) noexcept;
    /// It ends, also as a guest elsewhere.
    void leave(TNuDOMNodeList& list) noexcept;
    /// A snapshot of another document is about to refer to a node of this one. Throws
    /// std::bad_alloc.
    void invite(TNuDOMNodeList& list);
    /// A node of this document is about to go to another: what refers to it will be a guest there.
    /// Throws std::bad_alloc.
    void follow(const TNuDOMNode& node, TNuDOMDocument& target);
    /// A node goes: nothing refers to it any more.
    void forgetNode(TNuDOMNode& node) noexcept;
    /// Puts nodes into an empty list without looking whether one is there twice.
    static void fill(TNuDOMNodeList& list, std::vector<TNuDOMNode*> nodes);
    /// The document goes, with its snapshots; guests lose its nodes.
    void end() noexcept;

private:
    class Lock;

    void welcome(TNuDOMNodeList& list);
    void dismiss(SnapshotVisit& visit) noexcept;
    static void changeCount(const SnapshotVisit& visit, int change) noexcept;
    void markMembers() noexcept;

    TNuDOMDocument& document_;
    TNuDOMNodeList* first_ = nullptr;
    SnapshotVisit* firstGuest_ = nullptr;
    /// Visits to this document and of its snapshots elsewhere.
    std::atomic<std::int64_t> visitCount_ = 0;
};

} // namespace nu
