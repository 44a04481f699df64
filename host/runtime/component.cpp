#include "host/runtime/component.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "host/runtime/asciiCase.h"
#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "host/runtime/windowedControl.h"

namespace host {

namespace {

/// What comes and goes at the end is the usual case.
template <class Object> void eraseLast(std::vector<Object*>& list, const Object* object) noexcept {
    const auto place = std::find(list.rbegin(), list.rend(), object);
    if (place != list.rend()) {
        list.erase(std::next(place).base());
    }
}

} // namespace

std::size_t TComponent::NameHash::operator()(std::u16string_view name) const noexcept {
    // FNV-1a, by units.
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const char16_t unit : name) {
        hash = (hash ^ lowerAscii(unit)) * 0x100000001B3;
    }
    return static_cast<std::size_t>(hash);
}

bool TComponent::NameEqual::operator()(std::u16string_view left,
                                       std::u16string_view right) const noexcept {
    return equalIgnoringCase(left, right);
}

TComponent::TComponent(TComponent* owner) {
    if (owner != nullptr) {
        owner->InsertComponent(*this);
    }
}

TComponent::~TComponent() {
    while (!components_.empty()) {
        TComponent* const last = components_.back();
        RemoveComponent(*last);
        delete last;
    }
    if (owner_ != nullptr) {
        owner_->RemoveComponent(*this);
    }
}

void TComponent::checkName(std::u16string_view name, const TComponent* owner) const {
    if (!name.empty() && !detail::isElementName(name)) {
        throw Exception(formatMessage(u"\"%s\" is no name for a component!", {name}));
    }
    const TComponent* const other = owner != nullptr ? owner->FindComponent(name) : nullptr;
    if (other != nullptr && other != this) {
        throw Exception(formatMessage(u"There is a component \"%s\" already!", {name}));
    }
}

void TComponent::SetName(std::u16string_view name) {
    checkName(name, owner_);
    std::u16string former(name);
    if (owner_ == nullptr) {
        name_.swap(former);
        return;
    }
    auto& byName = owner_->byName_;
    auto entry = byName.extract(name_);
    name_.swap(former);
    if (name_.empty()) {
        return;
    }
    if (!entry.empty()) {
        entry.key() = name_;
        byName.insert(std::move(entry));
        return;
    }
    try {
        byName.emplace(name_, this);
    } catch (...) {
        name_.swap(former);
        throw;
    }
}

TComponent* TComponent::FindComponent(std::u16string_view name) const {
    const auto place = byName_.find(name);
    return place != byName_.end() ? place->second : nullptr;
}

void TComponent::InsertComponent(TComponent& component) {
    for (const TComponent* place = this; place != nullptr; place = place->owner_) {
        if (place == &component) {
            throw Exception(u"A component cannot own itself!");
        }
    }
    if (component.owner_ == this) {
        return;
    }
    component.checkName(component.name_, this);
    components_.push_back(&component);
    if (!component.name_.empty()) {
        try {
            byName_.emplace(component.name_, &component);
        } catch (...) {
            components_.pop_back();
            throw;
        }
    }
    if (component.owner_ != nullptr) {
        component.owner_->RemoveComponent(component);
    }
    component.owner_ = this;
}

void TComponent::RemoveComponent(TComponent& component) noexcept {
    if (component.owner_ == this) {
        byName_.erase(component.name_);
        eraseLast(components_, &component);
        component.owner_ = nullptr;
    }
}

TWindowedControl::~TWindowedControl() {
    for (TWindowedControl* const control : controls_) {
        control->parent_ = nullptr;
    }
    if (parent_ != nullptr) {
        eraseLast(parent_->controls_, this);
    }
}

void TWindowedControl::SetParent(TWindowedControl* parent) {
    for (const TWindowedControl* place = parent; place != nullptr; place = place->parent_) {
        if (place == this) {
            throw Exception(u"A control cannot stand in itself!");
        }
    }
    if (parent == parent_) {
        return;
    }
    if (parent != nullptr) {
        parent->controls_.push_back(this);
    }
    if (parent_ != nullptr) {
        eraseLast(parent_->controls_, this);
    }
    parent_ = parent;
}

} // namespace host
