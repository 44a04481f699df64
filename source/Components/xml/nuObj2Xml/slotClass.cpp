#include "nuObj2Xml/slotClass.h"

#include "host/runtime/classRegistry.h"
#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "nuObj2Xml/messages.h"
#include "nuObj2Xml/sameText.h"

namespace nu {

bool isRelated(std::u16string_view className, const host::TClassInfo& info) {
    for (const host::TClassInfo* place = &info; place != nullptr; place = place->base) {
        if (isSameName(className, place->name)) {
            return true;
        }
    }
    const host::TClassInfo* const named = host::FindClass(className);
    return named != nullptr && named->derivesFrom(info);
}

const host::TClassInfo& classForSlot(const host::SlotOperations& slot,
                                     std::u16string_view className) {
    const host::TClassInfo& first = *slot.declaredClass(0);
    if (className.empty()) {
        return first;
    }
    for (std::size_t index = 0; slot.declaredClass(index) != nullptr; ++index) {
        const host::TClassInfo& declared = *slot.declaredClass(index);
        if (isSameName(className, declared.name)) {
            return declared;
        }
    }
    const host::TClassInfo* const named = host::FindClass(className);
    if (named == nullptr) {
        throw host::Exception(host::formatMessage(messages::classNotRegistered, {className}));
    }
    // Alternatives hold objects of exactly their classes, a pointer also those of descendants.
    const bool isPointer = slot.declaredClass(1) == nullptr;
    if (!isPointer || !named->isObject || !named->derivesFrom(first)) {
        throw host::Exception(host::formatMessage(messages::doesNotInherit, {first.name}));
    }
    return *named;
}

const host::TClassInfo& classBelow(const host::TClassInfo& declared,
                                   std::u16string_view className) {
    const bool isDeclared = className.empty() || isSameName(className, declared.name);
    const host::TClassInfo* const info = isDeclared ? &declared : host::FindClass(className);
    if (info == nullptr) {
        throw host::Exception(host::formatMessage(messages::classNotRegistered, {className}));
    }
    if (!info->derivesFrom(declared)) {
        throw host::Exception(host::formatMessage(messages::doesNotInherit, {declared.name}));
    }
    if (info->create == nullptr) {
        throw host::Exception(host::formatMessage(messages::cannotBeMade, {info->name}));
    }
    return *info;
}

} // namespace nu
