#include "nuObj2Xml/objectWalk.h"

#include <algorithm>
#include <functional>
#include <unordered_set>

#include "host/runtime/valueAccess.h"
#include "nuObj2Xml/registry.h"

namespace nu {

using host::Instance;
using host::ValueContent;
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
    std::vector<Instance> found;
    std::unordered_set<Instance, Hash, Same> seen;
    walk.waiting_.push_back({root, {}});
    while (!walk.waiting_.empty()) {
        const Waiting next = walk.waiting_.back();
        walk.waiting_.pop_back();
        // What it holds comes before everything else that waits.
        const auto first = static_cast<std::ptrdiff_t>(walk.waiting_.size());
        if (next.value) {
            walk.addContent(next.value);
        } else if (seen.insert(next.object).second) {
            found.push_back(next.object);
            walk.addProperties(next.object);
            walk.addItems(next.object);
        }
        std::reverse(walk.waiting_.begin() + first, walk.waiting_.end());
    }
    return found;
}

void ObjectWalk::addProperties(Instance object) {
    for (const host::TPropInfo& property : object.info->properties) {
        const host::ValueType& type = *property.type;
        if (type.kind < ValueKind::Object || type.kind == ValueKind::Reference) {
            continue;
        }
        if (property.place != nullptr) {
            waiting_.push_back({{}, {const_cast<void*>(property.place(object.object)), &type}});
        } else if (type.kind == ValueKind::Slot) {
            // The pointer is a copy that goes; the object stays.
            const host::PropertyValue value(property, object.object);
            if (const Instance held = type.slot->get(value.get())) {
                waiting_.push_back({held, {}});
            }
        }
    }
}

void ObjectWalk::addItems(Instance object) {
    if (!object.info->isObject) {
        return;
    }
    const TNuSerializerClass& serializerClass = serializerClassOf(*object.info);
    if (serializerClass.isStandard) {
        return;
    }
    const auto serializer =
        serializerClass.createFromInstance(*static_cast<host::TObject*>(object.object));
    const std::size_t count = serializer->ItemCount();
    for (std::size_t index = 0; index < count; ++index) {
        const TNuSerializerItem item = serializer->GetItem(index);
        if (item) {
            waiting_.push_back({item.object, item.value});
        }
    }
}

void ObjectWalk::addContent(ValueRef value) {
    const host::ValueType& type = *value.type;
    const auto add = [&](const void* element) {
        waiting_.push_back({{}, {const_cast<void*>(element), type.element}});
    };
    if (type.element != nullptr && type.element->kind < ValueKind::Object) {
        return; // numbers and texts, perhaps very many
    }
    host::Cursor cursor;
    switch (host::contentOf(type.kind)) {
    case ValueContent::Object:
    case ValueContent::Slot:
        if (const Instance object = type.slot->get(value.value)) {
            waiting_.push_back({object, {}});
        }
        break;
    case ValueContent::Optional:
        if (const void* const inner = type.optional->get(value.value)) {
            add(inner);
        }
        break;
    case ValueContent::List:
        type.list->begin(value.value, cursor);
        while (const void* const element = type.list->next(value.value, cursor)) {
            add(element);
        }
        break;
    case ValueContent::Map: {
        const void* element = nullptr;
        type.map->begin(value.value, cursor);
        while (type.map->next(value.value, cursor, element) != nullptr) {
            add(element);
        }
        break;
    }
    case ValueContent::Text:
    case ValueContent::Reference:
        break;
    }
}

} // namespace nu
