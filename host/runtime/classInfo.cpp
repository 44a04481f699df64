#include "host/runtime/classInfo.h"

#include <algorithm>
#include <iterator>

#include "host/runtime/asciiCase.h"

namespace host {

namespace {

template <class Equal>
const TPropInfo* find(std::span<const TPropInfo> properties, Equal equal) noexcept {
    // Names come before aliases, so that a renamed property cannot hide another.
    for (const TPropInfo& property : properties) {
        if (equal(property.name)) {
            return &property;
        }
    }
    for (const TPropInfo& property : properties) {
        if (std::any_of(
                std::begin(property.aliases), std::end(property.aliases),
                [&](std::u16string_view alias) { return !alias.empty() && equal(alias); })) {
            return &property;
        }
    }
    return nullptr;
}

} // namespace

bool TClassInfo::derivesFrom(const TClassInfo& ancestor) const noexcept {
    for (const TClassInfo* place = this; place != nullptr; place = place->base) {
        if (place->is(ancestor)) {
            return true;
        }
    }
    return false;
}

const TPropInfo* TClassInfo::findProperty(std::u16string_view propertyName) const noexcept {
    const TPropInfo* const exact =
        find(properties, [&](std::u16string_view candidate) { return candidate == propertyName; });
    return exact != nullptr ? exact : find(properties, [&](std::u16string_view candidate) {
        return equalIgnoringCase(candidate, propertyName);
    });
}

} // namespace host
