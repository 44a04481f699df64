#include "nuObj2Xml/objectChain.h"

#include <functional>

#include "host/runtime/classInfo.h"
#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "nuObj2Xml/elementPath.h"
#include "nuObj2Xml/messages.h"

namespace nu {

std::size_t ObjectChain::Hash::operator()(const host::Instance& object) const noexcept {
    return std::hash<const void*>()(object.object);
}

/// An object and its first member share an address, but no class.
bool ObjectChain::Same::operator()(const host::Instance& left,
                                   const host::Instance& right) const noexcept {
    return left.object == right.object && left.info->is(*right.info);
}

void ObjectChain::enter(std::u16string_view name, std::size_t index) {
    if (depth_ == places_.size()) {
        places_.emplace_back();
    }
    Place& place = places_[depth_++];
    place.name = name;
    place.index = index;
    place.object = {};
}

void ObjectChain::hold(host::Instance object) {
    if (holds(object)) {
        throw host::Exception(host::formatMessage(messages::alreadyBeingWritten, {path()}));
    }
    if (depth() >= maximumDepth || serializers_ >= maximumSerializers) {
        throw host::Exception(host::formatMessage(messages::nestedTooDeeply, {path()}));
    }
    if (objects_ >= shallow) {
        deep_.insert(object);
    }
    places_[depth_ - 1].object = object;
    ++objects_;
}

void ObjectChain::leave() noexcept {
    const host::Instance object = places_[--depth_].object;
    if (object && --objects_ >= shallow) {
        deep_.erase(object);
    }
}

bool ObjectChain::holds(host::Instance object) const noexcept {
    for (const ObjectChain* chain = this; chain != nullptr; chain = chain->around_) {
        std::size_t seen = 0;
        for (std::size_t index = 0; index < chain->depth_ && seen < shallow; ++index) {
            const host::Instance& held = chain->places_[index].object;
            if (held) {
                ++seen;
                if (Same()(held, object)) {
                    return true;
                }
            }
        }
        if (!chain->deep_.empty() && chain->deep_.contains(object)) {
            return true;
        }
    }
    return false;
}

std::size_t ObjectChain::depth() const noexcept {
    std::size_t count = 0;
    for (const ObjectChain* chain = this; chain != nullptr; chain = chain->around_) {
        count += chain->objects_;
    }
    return count;
}

NuXmlString ObjectChain::path() const {
    ElementPath text;
    std::vector<const ObjectChain*> chains;
    for (const ObjectChain* chain = this; chain != nullptr; chain = chain->around_) {
        chains.push_back(chain);
    }
    for (auto chain = chains.rbegin(); chain != chains.rend(); ++chain) {
        // A serializer that writes on its own starts with the element that it was called for.
        const std::size_t end = (*chain)->depth_ - (chain + 1 != chains.rend() ? 1 : 0);
        for (std::size_t index = 0; index < end; ++index) {
            const Place& place = (*chain)->places_[index];
            // Items may stand right in their object.
            if (!place.name.empty()) {
                text.add(place.name, place.index);
            }
        }
    }
    return text.take();
}

} // namespace nu
