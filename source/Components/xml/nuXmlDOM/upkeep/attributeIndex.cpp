#include "nuXmlDOM/upkeep/attributeIndex.h"

#include <new>
#include <type_traits>

#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/element.h"
#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/core/nodeLinks.h"
#include "nuXmlDOM/upkeep/liveLists.h"
#include "nuXmlDOM/upkeep/treeWalk.h"

namespace nu {

namespace {

std::u16string_view localNameOf(const TNuDOMAttribute& attribute) noexcept {
    const NodeName& name = NodeContext::name(attribute);
    return name.declaresNamespace() && !name.hasPrefix() ? std::u16string_view() : name.local();
}

template <class Key> Key keyOf(const TNuDOMAttribute& attribute) noexcept {
    if constexpr (std::is_pointer_v<Key>) {
        return NodeContext::name(attribute).canonical;
    } else {
        return localNameOf(attribute);
    }
}

} // namespace

// One table

template <class Key, class Hash>
void AttributeIndex::Table<Key, Hash>::enter(TNuDOMAttribute& attribute) {
    const auto [place, isNew] =
        entries_.try_emplace(keyOf<Key>(attribute), Entry{&attribute, true});
    place->second.isOnly = isNew;
}

template <class Key, class Hash>
auto AttributeIndex::Table<Key, Hash>::find(TNuDOMElement& element, Key key) -> const Entry* {
    if (!isMade_) {
        entries_.clear();
        for (TNuDOMAttribute& attribute : element.Attributes()) {
            enter(attribute);
        }
        isMade_ = true;
    }
    const auto found = entries_.find(key);
    return found != entries_.end() ? &found->second : nullptr;
}

template <class Key, class Hash>
void AttributeIndex::Table<Key, Hash>::added(TNuDOMAttribute& attribute, bool isAtEnd) {
    if (!isMade_) {
        return;
    }
    // One that is not at the end may become the first of its name.
    if (!isAtEnd && entries_.count(keyOf<Key>(attribute)) != 0) {
        drop();
        return;
    }
    enter(attribute);
}

template <class Key, class Hash>
void AttributeIndex::Table<Key, Hash>::removed(const TNuDOMAttribute& attribute) noexcept {
    const auto found = entries_.find(keyOf<Key>(attribute));
    if (!isMade_ || found == entries_.end() || found->second.first != &attribute) {
        return;
    }
    if (found->second.isOnly) {
        entries_.erase(found);
    } else {
        drop();
    }
}

template <class Key, class Hash> void AttributeIndex::Table<Key, Hash>::drop() noexcept {
    entries_.clear();
    isMade_ = false;
}

// Both

TNuDOMAttribute* AttributeIndex::find(TNuDOMElement& element, const NodeName* canonical) {
    const auto* entry = names_.find(element, canonical);
    return entry != nullptr ? entry->first : nullptr;
}

TNuDOMAttribute* AttributeIndex::find(TNuDOMElement& element, std::u16string_view localName,
                                      bool& isOnly) {
    const auto* entry = localNames_.find(element, localName);
    isOnly = entry != nullptr && entry->isOnly;
    return entry != nullptr ? entry->first : nullptr;
}

void AttributeIndex::changed(TNuDOMAttribute& attribute, bool isAdded, bool isAtEnd) noexcept {
    if (!isAdded) {
        names_.removed(attribute);
        localNames_.removed(attribute);
        return;
    }
    try {
        names_.added(attribute, isAtEnd);
        localNames_.added(attribute, isAtEnd);
    } catch (...) {
        drop(); // is made again when there is memory
    }
}

void AttributeIndex::drop() noexcept {
    names_.drop();
    localNames_.drop();
    before_.clear();
}

// The way back

TNuDOMNode* AttributeIndex::before(const TNuDOMElement& element, const TNuDOMNode* attribute) {
    if (before_.empty()) {
        std::unordered_map<const TNuDOMNode*, TNuDOMNode*> made;
        TNuDOMNode* last = nullptr;
        for (TNuDOMAttribute& one : attributesOf(element)) {
            made.emplace(&one, last);
            last = &one;
        }
        made.emplace(nullptr, last);
        before_.swap(made);
    }
    return before_.at(attribute);
}

void AttributeIndex::linked(TNuDOMNode* before, const TNuDOMNode& attribute) noexcept {
    if (before_.empty()) {
        return;
    }
    try {
        before_[&attribute] = before;
        before_[NodeLinks::next(attribute)] = const_cast<TNuDOMNode*>(&attribute);
    } catch (...) {
        before_.clear(); // is made again when there is memory
    }
}

void AttributeIndex::unlinked(TNuDOMNode* before, const TNuDOMNode& attribute,
                              const TNuDOMNode* next) noexcept {
    if (!before_.empty()) {
        before_.erase(&attribute);
        before_.find(next)->second = before;
    }
}

TNuDOMNode* attributeBefore(TNuDOMElement& element, const TNuDOMNode* attribute) noexcept {
    // 1. Elements have few attributes as a rule, and they come at the end.
    constexpr int nearby = 64;
    int left = nearby;
    TNuDOMNode* before = nullptr;
    TNuDOMNode* node = firstAttributeOf(element);
    for (; node != attribute && left > 0; --left) {
        before = node;
        node = NodeLinks::next(*node);
    }
    if (node == attribute) {
        return before;
    }
    // 2. The others of many are looked up, so that many changes stay linear.
    try {
        return NodeContext::lists(element).attributeIndex.before(element, attribute);
    } catch (const std::bad_alloc&) {
        // 3. Or searched for all the same, where there is no memory for that.
        for (; node != attribute; node = NodeLinks::next(*node)) {
            before = node;
        }
        return before;
    }
}

// Searches

namespace {

/// The first of the first few attributes for which `test` holds; `isAll` says that there are no
/// more of them.
template <class Test>
TNuDOMAttribute* findAmongFew(const TNuDOMElement& element, bool& isAll, Test&& test) {
    int left = AttributeIndex::few;
    for (TNuDOMAttribute& attribute : attributesOf(element)) {
        if (left-- == 0) {
            return nullptr;
        }
        if (test(attribute)) {
            return &attribute;
        }
    }
    isAll = true;
    return nullptr;
}

} // namespace

TNuDOMAttribute* findAttribute(const TNuDOMElement& element, const NodeName* canonical) {
    bool isAll = canonical == nullptr;
    TNuDOMAttribute* found = nullptr;
    if (!isAll) {
        found = findAmongFew(element, isAll, [canonical](const TNuDOMAttribute& attribute) {
            return NodeContext::name(attribute).canonical == canonical;
        });
    }
    if (found != nullptr || isAll) {
        return found;
    }
    auto& searched = const_cast<TNuDOMElement&>(element);
    return NodeContext::lists(searched).attributeIndex.find(searched, canonical);
}

TNuDOMAttribute* findAttribute(const TNuDOMElement& element, std::u16string_view localName,
                               std::u16string_view namespaceURI) {
    const auto isWanted = [&](const TNuDOMAttribute& attribute) {
        return localNameOf(attribute) == localName && attribute.get_namespaceURI() == namespaceURI;
    };
    bool isAll = false;
    TNuDOMAttribute* found = findAmongFew(element, isAll, isWanted);
    if (found != nullptr || isAll) {
        return found;
    }
    // From the first one of that local name on.
    auto& searched = const_cast<TNuDOMElement&>(element);
    bool isOnly = false;
    found = NodeContext::lists(searched).attributeIndex.find(searched, localName, isOnly);
    while (found != nullptr && !isWanted(*found)) {
        found = isOnly ? nullptr : static_cast<TNuDOMAttribute*>(NodeLinks::next(*found));
    }
    return found;
}

} // namespace nu
