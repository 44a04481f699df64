#pragma once

#include <cstddef>
#include <iterator>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "common/textArgument.h"
#include "nuXmlDOM/core/domObject.h"
#include "nuXmlParser/chars.h"

/// \file
/// Lists of nodes.

class TNuDOMAttribute;
class TNuDOMElement;
class TNuDOMNode;

namespace nu {

class Snapshots;
struct SnapshotVisit;

} // namespace nu

/// For range-based for loops over the members of a list, which are pointers to its kind of node:
/// `for (TNuDOMElement* book : *books)`. Keep the list in a handle as long as the loop runs.
template <class List> class TNuDOMListIterator {
public:
    using iterator_category = std::input_iterator_tag;
    using iterator_concept = std::forward_iterator_tag;
    using value_type = decltype(std::declval<const List&>().GetItem(0));
    using difference_type = std::ptrdiff_t;
    using pointer = const value_type*;
    using reference = value_type;

    TNuDOMListIterator() noexcept = default;
    TNuDOMListIterator(const List& list, std::size_t index) noexcept
        : list_(&list), index_(index) {}
    value_type operator*() const { return list_->GetItem(static_cast<std::ptrdiff_t>(index_)); }
    TNuDOMListIterator& operator++() noexcept {
        ++index_;
        return *this;
    }
    TNuDOMListIterator operator++(int) noexcept {
        TNuDOMListIterator former = *this;
        ++*this;
        return former;
    }
    friend bool operator==(TNuDOMListIterator, TNuDOMListIterator) noexcept = default;

private:
    const List* list_ = nullptr;
    std::size_t index_ = 0;
};

/// Nodes in order.
///
/// There are two kinds. The lists of a node (its children, child elements, attributes) follow the
/// changes of the tree; changing them changes the tree. Lists that are made by Create, or by a
/// selection, are snapshots of nodes that live elsewhere, maybe in another document; an entry whose
/// node has been freed reads as null, one whose node has moved follows it. An index counts from 0;
/// one that is out of range throws host::EListError.
class NUXML_API TNuDOMNodeList : public TNuDOMObject {
public:
    /// An empty list for nodes of `document`, which began at `node`. As long as it is held it keeps
    /// the document. One that owns its items, which Clear frees, stays until the document goes; any
    /// other goes when nobody holds it. Throws host::EAssertionFailed without a document.
    [[nodiscard]] static NuRef<TNuDOMNodeList> Create(TNuDOMNode* node, TNuDOMDocument* document,
                                                      bool ownsItems);

    /// Appends a node; gives its index. A node that is in the list already stays where it is,
    /// unless its document is being loaded.
    virtual std::ptrdiff_t Add(TNuDOMNode& node);
    /// Puts a node at `index`, unless it is in the list already; gives its index.
    virtual std::ptrdiff_t Insert(std::ptrdiff_t index, TNuDOMNode& node);
    /// Takes the first occurrence of a node out; gives the index it had, or -1.
    virtual std::ptrdiff_t Remove(TNuDOMNode& node);
    /// The index of the first occurrence, or -1.
    [[nodiscard]] virtual std::ptrdiff_t IndexOf(const TNuDOMNode& node) const;
    /// Empties the list; frees its members, the last one first, when it owns them. Throws
    /// host::EInvalidPointer before a member that is held, or below which something is.
    virtual void Clear();
    /// How many entries there are now, those that read as null included.
    [[nodiscard]] virtual std::size_t Count() const;
    /// The node at `index`; null when that node was freed.
    [[nodiscard]] TNuDOMNode* GetItem(std::ptrdiff_t index) const { return item(index); }
    /// The last node. Throws host::EListError when the list is empty.
    [[nodiscard]] TNuDOMNode* Last() const;
    /// Orders the members by what SelectSingleNode finds at `path` from each of them: by typed
    /// value when those are elements, else by node value. Throws, and changes nothing, when it
    /// finds no single node from one of them: ENuDomNotSupported where one of several members is
    /// neither an element nor a document, from which alone paths begin.
    void Sort(std::u16string_view path);
    /// The same in UTF-8.
    void Sort(const TNuUtf8Text& path) { Sort(path.view()); }
    /// The node whose list it is, or from which the selection began; null when that was freed.
    [[nodiscard]] TNuDOMNode* Node() const noexcept;

    /// For range-based for loops.
    [[nodiscard]] TNuDOMListIterator<TNuDOMNodeList> begin() const noexcept { return {*this, 0}; }
    /// Behind the last entry; taken anew at each call, as the list may grow.
    [[nodiscard]] TNuDOMListIterator<TNuDOMNodeList> end() const { return {*this, Count()}; }

protected:
    /// A snapshot, which belongs to those who hold it.
    TNuDOMNodeList(TNuDOMNode* node, TNuDOMDocument* document, bool ownsItems);
    /// A list of a node's own.
    explicit TNuDOMNodeList(TNuDOMNode& node);
    virtual ~TNuDOMNodeList();

    void _GC() noexcept override;
    nu::Face& face() override;

    /// The entry at `index`, as GetItem gives it.
    [[nodiscard]] virtual TNuDOMNode* item(std::ptrdiff_t index) const;
    /// The order of the members is to become this one.
    virtual void reorder(std::vector<TNuDOMNode*> order);

private:
    friend class nu::DocumentLifetime;
    friend class nu::Snapshots;

    /// Appends without looking whether the node is there.
    NUXML_LOCAL void append(TNuDOMNode& node);
    /// What an entry holds when everything has gone that is to go.
    [[nodiscard]] NUXML_LOCAL TNuDOMNode* read(TNuDOMNode* const& entry) const noexcept;
    /// A node is about to become a member.
    NUXML_LOCAL void receive(TNuDOMNode& node);
    /// Marks all members, so that one that goes is known to stand in a list. Left until the first
    /// node of the document goes: most lists are read and dropped before that.
    NUXML_LOCAL void markMembers() noexcept;
    /// Empties the entries of a node that goes.
    NUXML_LOCAL void forgetNode(const TNuDOMNode& node) noexcept;
    /// The same for all nodes of another document, which goes.
    NUXML_LOCAL void forgetNodesOf(const TNuDOMDocument& document) noexcept;
    [[nodiscard]] NUXML_LOCAL bool refersTo(const TNuDOMNode& node) noexcept;
    /// Has the places of all members, if there is memory for them.
    NUXML_LOCAL bool findPlaces() noexcept;

    TNuDOMNode* node_;
    std::vector<TNuDOMNode*> items_;
    /// The members with their indexes, ordered by address; made when members go, until the list
    /// changes.
    std::vector<std::pair<const TNuDOMNode*, std::size_t>> places_;
    std::unique_ptr<nu::Face> face_;
    /// The other snapshots of the document.
    TNuDOMNodeList* previous_ = nullptr;
    TNuDOMNodeList* next_ = nullptr;
    /// The other documents that have nodes in it.
    nu::SnapshotVisit* visits_ = nullptr;
    bool ownsItems_;
    bool marksMembers_ = false;
    /// Whether its own document has asked for the marks.
    bool isMarkedHere_ = false;
};

/// A list of elements.
class NUXML_API TNuDOMElementList : public TNuDOMNodeList {
public:
    /// As TNuDOMNodeList::Create, for elements.
    [[nodiscard]] static NuRef<TNuDOMElementList> Create(TNuDOMNode* node, TNuDOMDocument* document,
                                                         bool ownsItems);
    /// The element at `index`; null when that was freed.
    [[nodiscard]] TNuDOMElement* GetItem(std::ptrdiff_t index) const;
    /// For range-based for loops.
    [[nodiscard]] TNuDOMListIterator<TNuDOMElementList> begin() const noexcept {
        return {*this, 0};
    }
    /// Behind the last entry; taken anew at each call, as the list may grow.
    [[nodiscard]] TNuDOMListIterator<TNuDOMElementList> end() const { return {*this, Count()}; }

protected:
    using TNuDOMNodeList::TNuDOMNodeList;
    ~TNuDOMElementList() override = default;
};

/// Attributes by name: the attributes of an element.
class NUXML_API TNuDOMAttrList : public TNuDOMNodeList {
public:
    /// As TNuDOMNodeList::Create, for attributes.
    [[nodiscard]] static NuRef<TNuDOMAttrList> Create(TNuDOMNode* node, TNuDOMDocument* document,
                                                      bool ownsItems);
    /// The attribute at `index`; null when that was freed.
    [[nodiscard]] TNuDOMAttribute* GetItem(std::ptrdiff_t index) const;
    /// For range-based for loops.
    [[nodiscard]] TNuDOMListIterator<TNuDOMAttrList> begin() const noexcept { return {*this, 0}; }
    /// Behind the last entry; taken anew at each call, as the list may grow.
    [[nodiscard]] TNuDOMListIterator<TNuDOMAttrList> end() const { return {*this, Count()}; }

    /// The first attribute of that qualified name, or null.
    [[nodiscard]] TNuDOMAttribute* getNamedItem(std::u16string_view name) const;
    /// The same in UTF-8.
    [[nodiscard]] TNuDOMAttribute* getNamedItem(const TNuUtf8Text& name) const {
        return getNamedItem(name.view());
    }
    /// The first attribute of that namespace and local name, or null.
    [[nodiscard]] TNuDOMAttribute* getNamedItemNS(std::u16string_view namespaceURI,
                                                  std::u16string_view localName) const;
    /// The same in UTF-8.
    [[nodiscard]] TNuDOMAttribute* getNamedItemNS(const TNuUtf8Text& namespaceURI,
                                                  const TNuUtf8Text& localName) const {
        return getNamedItemNS(namespaceURI.view(), localName.view());
    }
    /// Takes the attribute from its element; it goes when the handle is dropped and nobody else
    /// holds it. An empty handle when there is none.
    NuRef<TNuDOMAttribute> removeNamedItem(std::u16string_view name);
    /// The same in UTF-8.
    NuRef<TNuDOMAttribute> removeNamedItem(const TNuUtf8Text& name);
    /// The same by namespace and local name.
    NuRef<TNuDOMAttribute> removeNamedItemNS(std::u16string_view namespaceURI,
                                             std::u16string_view localName);
    /// The same in UTF-8.
    NuRef<TNuDOMAttribute> removeNamedItemNS(const TNuUtf8Text& namespaceURI,
                                             const TNuUtf8Text& localName);
    /// Always throws ENuDomNotSupported ("Not implemented"); see TNuDOMElement::setAttributeNode.
    void setNamedItem(TNuDOMNode& node);
    /// Always throws ENuDomNotSupported; see TNuDOMElement::setAttributeNodeNS.
    void setNamedItemNS(TNuDOMNode& node);

protected:
    using TNuDOMNodeList::TNuDOMNodeList;
    ~TNuDOMAttrList() override = default;

private:
    template <class Test> [[nodiscard]] TNuDOMAttribute* findIf(Test&& test) const;
};
