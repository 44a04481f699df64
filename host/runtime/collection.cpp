#include "host/runtime/collection.h"

#include "host/runtime/exception.h"
#include "host/runtime/format.h"

namespace host {

namespace {

void checkItemClass(const TClassInfo& given, const TClassInfo& wanted) {
    if (!given.derivesFrom(wanted)) {
        throw EInvalidCast(
            formatMessage(u"Class %s does not derive from %s!", {given.name, wanted.name}));
    }
}

} // namespace

TCollectionItem::~TCollectionItem() = default;

TCollection::TCollection(const TClassInfo& itemClass) : itemClass_(&itemClass) {
    checkItemClass(itemClass, classOf<TCollectionItem>);
}

TCollection::~TCollection() = default;

TCollectionItem& TCollection::Add(const TClassInfo& itemClass) {
    checkItemClass(itemClass, *itemClass_);
    if (itemClass.create == nullptr) {
        throw Exception(
            formatMessage(u"Class %s cannot be made without arguments!", {itemClass.name}));
    }
    std::unique_ptr<TCollectionItem> item(
        static_cast<TCollectionItem*>(static_cast<TObject*>(itemClass.create())));
    item->collection_ = this;
    item->index_ = items_.size();
    return *items_.emplace_back(std::move(item));
}

void TCollection::Delete(std::size_t index) {
    checkListIndex(static_cast<std::int64_t>(index), items_.size());
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(index));
    for (; index < items_.size(); ++index) {
        items_[index]->index_ = index;
    }
}

void TCollection::Clear() noexcept { items_.clear(); }

TCollectionItem& TCollection::operator[](std::size_t index) const {
    checkListIndex(static_cast<std::int64_t>(index), items_.size());
    return *items_[index];
}

} // namespace host
