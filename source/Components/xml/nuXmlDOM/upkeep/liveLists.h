#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "nuXmlDOM/core/nodeList.h"
#include "nuXmlDOM/upkeep/attributeIndex.h"
#include "nuXmlDOM/upkeep/heldNodes.h"

class TNuDOMDocument;
class TNuDOMElement;

/// \file
/// The lists of a node that follow the changes of the tree. The tree itself keeps no lists: these
/// are made when somebody asks for them, and from then on they are told of every change.

namespace nu {

/// Which nodes of a node's a list shows that follows the changes of the tree.
enum class LiveMembers : std::uint8_t { childNodes, childElements, attributes };

/// The nodes of a live list by index, gathered when somebody asks by index.
///
/// What was gathered follows the changes of the tree. Between the entries lies a gap that moves to
/// where the last change was, and nodes are looked for from the place on that was used last, so a
/// loop that edits as it goes pays for its steps and not for the length of the list. The last entry
/// comes and goes without the gap, so taking nodes from one end and putting them to the other is
/// such a loop, too.
class MemberIndex {
public:
    [[nodiscard]] bool isValid() const noexcept { return isValid_; }
    void rebuild(std::vector<TNuDOMNode*> members) noexcept;
    void drop() noexcept { isValid_ = false; }
    /// A node came in before `next`, at the end when that is null. Throws std::bad_alloc.
    void inserted(TNuDOMNode& node, const TNuDOMNode* next);
    void removed(const TNuDOMNode& node) noexcept;

    [[nodiscard]] std::size_t size() const noexcept { return entries_.size() - gapSize_; }
    [[nodiscard]] TNuDOMNode* at(std::size_t index) noexcept {
        recent_ = index;
        return entry(index);
    }
    /// The index of a member; -1 for any other node.
    [[nodiscard]] std::ptrdiff_t positionOf(const TNuDOMNode& node);

private:
    [[nodiscard]] TNuDOMNode* entry(std::size_t index) const noexcept {
        return entries_[index < gapBegin_ ? index : index + gapSize_];
    }
    [[nodiscard]] std::ptrdiff_t searchNear(const TNuDOMNode& node) noexcept;
    void gatherPositions();
    void openGap(std::size_t index);
    void moveGap(std::size_t index) noexcept;
    void removeLast() noexcept;

    std::vector<TNuDOMNode*> entries_;
    std::size_t gapBegin_ = 0;
    std::size_t gapSize_ = 0;
    /// Where the last change or look was.
    std::size_t recent_ = 0;
    /// Gathered when positions are asked for far from each other and nothing changes between.
    std::unordered_map<const TNuDOMNode*, std::size_t> positions_;
    /// The entries that were passed by searches since the last change.
    std::size_t passed_ = 0;
    bool isValid_ = false;
};

/// A live list: `Base` is the public class that it is one of.
template <class Base, LiveMembers shown> class LiveList final : public Base {
public:
    explicit LiveList(TNuDOMNode& node) : Base(node) {}
    ~LiveList() override = default;

    std::ptrdiff_t Add(TNuDOMNode& node) override;
    std::ptrdiff_t Insert(std::ptrdiff_t index, TNuDOMNode& node) override;
    std::ptrdiff_t Remove(TNuDOMNode& node) override;
    [[nodiscard]] std::ptrdiff_t IndexOf(const TNuDOMNode& node) const override;
    void Clear() override;
    [[nodiscard]] std::size_t Count() const override { return gathered().size(); }

    /// A node came into the list before `next`, at the end when that is null.
    void added(TNuDOMNode& node, const TNuDOMNode* next) noexcept;
    void removed(const TNuDOMNode& node) noexcept { index_.removed(node); }
    /// The order became another.
    void drop() noexcept { index_.drop(); }

protected:
    [[nodiscard]] TNuDOMNode* item(std::ptrdiff_t index) const override;
    void reorder(std::vector<TNuDOMNode*> order) override;

private:
    [[nodiscard]] MemberIndex& gathered() const;
    [[nodiscard]] bool isMember(const TNuDOMNode& node) const noexcept;

    mutable MemberIndex index_;
};

using ChildNodeList = LiveList<TNuDOMNodeList, LiveMembers::childNodes>;
using ChildElementList = LiveList<TNuDOMElementList, LiveMembers::childElements>;
using AttributeMap = LiveList<TNuDOMAttrList, LiveMembers::attributes>;

/// The lists of one node, each made when it is first asked for, and what else only few nodes need.
class NodeLists {
public:
    explicit NodeLists(TNuDOMNode& node) noexcept : node_(node) {}

    [[nodiscard]] ChildNodeList& childNodes();
    [[nodiscard]] ChildElementList& childElements();
    [[nodiscard]] AttributeMap& attributes();
    /// A child or an attribute came, at the end or elsewhere, or leaves.
    void childChanged(TNuDOMNode& child, bool isAdded, bool isAtEnd) noexcept;
    /// The number of lists that are held.
    [[nodiscard]] std::int64_t heldCount() const noexcept;

    /// The child elements in the order of their list where that is another than in the tree.
    std::vector<TNuDOMElement*> elementOrder;
    AttributeIndex attributeIndex;

    /// The other NodeLists of the document.
    NodeLists* previous = nullptr;
    NodeLists* next = nullptr;

private:
    void childAdded(TNuDOMNode& child) noexcept;

    TNuDOMNode& node_;
    std::unique_ptr<ChildNodeList> childNodes_;
    std::unique_ptr<ChildElementList> childElements_;
    std::unique_ptr<AttributeMap> attributes_;
};

} // namespace nu
