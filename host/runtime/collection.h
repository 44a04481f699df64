#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "host/runtime/persistent.h"

namespace host {

class TCollection;

/// An object in a collection, which owns it.
class NUXML_API TCollectionItem : public Published<TCollectionItem> {
public:
    TCollectionItem() = default;
    TCollectionItem(const TCollectionItem&) = delete;
    TCollectionItem& operator=(const TCollectionItem&) = delete;
    ~TCollectionItem() override;

    /// Null for an item that was made outside of one.
    [[nodiscard]] TCollection* Collection() const noexcept { return collection_; }
    /// The place in the collection; 0 outside of one.
    [[nodiscard]] std::size_t Index() const noexcept { return index_; }

    static constexpr auto published = publish<TCollectionItem>(u"TCollectionItem");

private:
    friend class TCollection;
    TCollection* collection_ = nullptr;
    std::size_t index_ = 0;
};

/// A list of objects that it makes and owns, all of one class or of its descendants. Indexes count
/// from 0; one outside throws EListError.
///
/// Derive from it for a collection with properties of its own, or use it as it is:
/// ```
/// host::TCollection lines{host::classOf<TLine>};
/// lines.Add<TLine>().Text = u"first";
/// ```
class NUXML_API TCollection : public Published<TCollection> {
public:
    /// A collection of items of that class, which has to derive from TCollectionItem; else
    /// EInvalidCast is thrown.
    explicit TCollection(const TClassInfo& itemClass);
    TCollection(const TCollection&) = delete;
    TCollection& operator=(const TCollection&) = delete;
    ~TCollection() override;

    /// The class of what Add makes.
    [[nodiscard]] const TClassInfo& ItemClass() const noexcept { return *itemClass_; }
    /// How many items there are.
    [[nodiscard]] std::size_t Count() const noexcept { return items_.size(); }
    /// A new item of the collection's class, behind the others. Throws host::Exception when the
    /// class cannot be made without arguments.
    TCollectionItem& Add() { return Add(*itemClass_); }
    /// The same of a descendant of it; EInvalidCast is thrown for any other class.
    TCollectionItem& Add(const TClassInfo& itemClass);
    /// The same, with the item as what it is.
    template <class Item> Item& Add() { return static_cast<Item&>(Add(classOf<Item>)); }
    /// Destroys an item; those behind it move up.
    void Delete(std::size_t index);
    /// Destroys all items.
    void Clear() noexcept;
    [[nodiscard]] TCollectionItem& operator[](std::size_t index) const;

    /// The items; valid until one is added or deleted.
    [[nodiscard]] std::span<const std::unique_ptr<TCollectionItem>> Items() const noexcept {
        return items_;
    }

    static constexpr auto published = publish<TCollection>(u"TCollection");

private:
    const TClassInfo* itemClass_;
    std::vector<std::unique_ptr<TCollectionItem>> items_;
};

} // namespace host
