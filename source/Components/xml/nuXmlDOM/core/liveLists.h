#pragma once

#include <cstddef>
#include <memory>
#include <unordered_map>
#include <vector>

#include "nuXmlDOM/core/attributeIndex.h"
#include "nuXmlDOM/core/nodeAccess.h"
#include "nuXmlDOM/core/nodeList.h"

class TNuDOMDocument;
class TNuDOMElement;

/// \file
/// The lists of a node that follow the changes of the tree. The tree itself keeps no lists: these
/// are made when somebody asks for them, and from then on they are told of every change.

namespace nu {

/// The nodes of a live list by index, gathered when somebody asks by index.
///
/// Appending and taking the last one away keep what was gathered, so building and emptying a tree
/// from the end stay cheap beside a list in use; other changes make it be gathered again.
class MemberIndex {
public:
    [[nodiscard]] bool isValid() const noexcept { return isValid_; }
    void rebuild(std::vector<TNuDOMNode*> members) noexcept {
        members_ = std::move(members);
        positions_.clear();
        isValid_ = true;
    }
    void drop() noexcept { isValid_ = false; }
    void appended(TNuDOMNode& node);
    void removed(const TNuDOMNode& node) noexcept;
    [[nodiscard]] const std::vector<TNuDOMNode*>& members() const noexcept { return members_; }
    [[nodiscard]] std::ptrdiff_t positionOf(const TNuDOMNode& node);

private:
    std::vector<TNuDOMNode*> members_;
    /// Gathered when the position of a node is asked for.
    std::unordered_map<const TNuDOMNode*, std::size_t> positions_;
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
    [[nodiscard]] std::size_t Count() const override { return members().size(); }

    /// A node came into the list, at its end or elsewhere, or left it.
    void changed(TNuDOMNode& node, bool isAdded, bool isAtEnd) noexcept;

protected:
    [[nodiscard]] TNuDOMNode* item(std::ptrdiff_t index) const override;
    void reorder(std::vector<TNuDOMNode*> order) override;

private:
    [[nodiscard]] const std::vector<TNuDOMNode*>& members() const;
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
    TNuDOMNode& node_;
    std::unique_ptr<ChildNodeList> childNodes_;
    std::unique_ptr<ChildElementList> childElements_;
    std::unique_ptr<AttributeMap> attributes_;
};

} // namespace nu
