#include "nuObj2Xml/objectWalk.h"

#include <algorithm>
#include <functional>
#include <unordered_set>

#include "host/runtime/valueAccess.h"
#include "nuObj2Xml/registry.h"

namespace nu {

using host::Instance;
using host::ValueKind;
using host::ValueRef;

namespace {

struct Hash {
    std::size_t operator()(const Instance& object) const noexcept {
        return std::hash<const void*>()(object.object);
    }
};
struct Same {
    bool operator()(const Instance& left, const Instance& right) const noexcept {
        return left.object == right.object && left.info->is(*right.info);
    }
};

} // namespace

std::vector<Instance> ObjectWalk::objectsBelow(Instance root) {
    ObjectWalk walk;
    std::unordered_set<Instance, Hash, Same> seen;
    walk.waiting_.push_back(root);
    while (!walk.waiting_.empty()) {
        const Instance object = walk.waiting_.back();
        walk.waiting_.pop_back();
        if (seen.insert(object).second) {
            walk.found_.push_back(object);
            walk.visit(object);
        }
    }
    return std::move(walk.found_);
}

/// Puts the objects right below in front of those that wait.
void ObjectWalk::visit(Instance object) {
    const auto first = static_cast<std::ptrdiff_t>(waiting_.size());
    addProperties(object);
    addItems(object);
    std::reverse(waiting_.begin() + first, waiting_.end());
}

void ObjectWalk::addProperties(Instance object) {
    for (const host::TPropInfo& property : object.info->properties) {
        const ValueKind kind = property.type->kind;
        if (kind >= ValueKind::Object && kind != ValueKind::Reference &&
            (property.place != nullptr || kind == ValueKind::Slot)) {
            const host::PropertyValue value(property, object.object);
            addValue({const_cast<void*>(value.get()), property.type});
        }
    }
}

void ObjectWalk::addItems(Instance object) {
    if (!object.info->isObject) {
        return;
    }
    const TNuSerializerClass& serializerClass = serializerClassOf(*object.info);
    if (serializerClass.isPlain) {
        return;
    }
    const auto serializer =
        serializerClass.createFromInstance(*static_cast<host::TObject*>(object.object));
    const std::size_t count = serializer->ItemCount();
    for (std::size_t index = 0; index < count; ++index) {
        const TNuSerializerItem item = serializer->GetItem(index);
        if (item.object) {
            waiting_.push_back(item.object);
        } else if (item.value) {
            addValue(item.value);
        }
    }
}

/// Types are nested as deeply as the program text, so this may call itself.
void ObjectWalk::addValue(ValueRef value) {
    const host::ValueType& type = *value.type;
    switch (type.kind) {
    case ValueKind::Object:
    case ValueKind::Slot:
        if (const Instance object = type.slot->get(value.value)) {
            waiting_.push_back(object);
        }
        break;
    case ValueKind::Optional:
        if (const void* const inner = type.optional->get(value.value)) {
            addValue({const_cast<void*>(inner), type.element});
        }
        break;
    case ValueKind::List: {
        host::Cursor cursor;
        type.list->begin(value.value, cursor);
        while (const void* const element = type.list->next(value.value, cursor)) {
            addValue({const_cast<void*>(element), type.element});
        }
        break;
    }
    case ValueKind::Map: {
        host::Cursor cursor;
        type.map->begin(value.value, cursor);
        const void* element = nullptr;
        while (type.map->next(value.value, cursor, element) != nullptr) {
            addValue({const_cast<void*>(element), type.element});
        }
        break;
    }
    default:
        break;
    }
}

} // namespace nu
