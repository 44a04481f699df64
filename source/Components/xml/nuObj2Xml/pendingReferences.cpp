#include "nuObj2Xml/pendingReferences.h"

#include <cstdint>
#include <unordered_map>

#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "host/runtime/propertyValue.h"
#include "nuObj2Xml/messages.h"
#include "nuObj2Xml/objectWalk.h"

namespace nu {

void PendingReferences::move(const void* former, std::size_t size, const void* place) noexcept {
    const auto begin = reinterpret_cast<std::uintptr_t>(former);
    for (Pending& reference : pending_) {
        const auto owner = reinterpret_cast<std::uintptr_t>(reference.owner.object);
        if (owner - begin < size) {
            reference.owner.object =
                reinterpret_cast<void*>(reinterpret_cast<std::uintptr_t>(place) + (owner - begin));
        }
    }
}

void PendingReferences::resolve(host::Instance root, bool isStrict) {
    // 1. The objects by name.
    std::unordered_map<NuXmlString, std::vector<host::Instance>> byName;
    for (const host::Instance& object : ObjectWalk::objectsBelow(root)) {
        NuXmlString name = host::ReferenceName(object);
        if (!name.empty()) {
            byName[std::move(name)].push_back(object);
        }
    }
    // 2. Each reference.
    for (const Pending& reference : pending_) {
        const host::ReferenceOperations& operations = *reference.property->type->reference;
        host::Instance target;
        const auto namesakes = byName.find(reference.name);
        if (namesakes != byName.end()) {
            for (const host::Instance& candidate : namesakes->second) {
                if (candidate.info->derivesFrom(operations.declaredClass())) {
                    target = candidate;
                    break;
                }
            }
        }
        if (!target && isStrict) {
            throw host::Exception(host::formatMessage(messages::noReferenced, {reference.name}) +
                                  reference.place);
        }
        const host::OwnedValue pointer(*reference.property->type);
        operations.set(pointer.get(), target);
        if (reference.property->mutablePlace != nullptr) {
            operations.set(reference.property->mutablePlace(reference.owner.object), target);
        } else {
            reference.property->set(reference.owner.object, pointer.get());
        }
    }
    pending_.clear();
}

} // namespace nu
