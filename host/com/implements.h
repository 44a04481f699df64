#pragma once

#include <atomic>
#include <type_traits>

#include "host/com/ref.h"
#include "host/com/unknown.h"

namespace host {

/// Whether `Interface`, or one that it extends, is named by `id`.
template <class Interface> constexpr bool answersTo(const InterfaceId& id) noexcept {
    if (id == Interface::Id) {
        return true;
    }
    if constexpr (std::is_same_v<Interface, IUnknown>) {
        return false;
    } else {
        return answersTo<typename Interface::Base>(id);
    }
}

/// The place inside `object` of the first of `Interfaces` that answers to `id`, or null. The same
/// order at each call keeps the identity of an object stable.
template <class... Interfaces, class Object>
void* findInterface(Object* object, const InterfaceId& id) noexcept {
    void* found = nullptr;
    ((found == nullptr && answersTo<Interfaces>(id)
          ? static_cast<void>(found = static_cast<Interfaces*>(object))
          : static_cast<void>(0)),
     ...);
    return found;
}

/// A base for counted objects that offer the given interfaces. The count starts at 0: put a new
/// object into a host::Ref at once (host::makeRef does). The last release deletes the object;
/// counts may be touched by several threads.
template <class... Interfaces> class Implements : public Interfaces... {
public:
    Implements() = default;
    Implements(const Implements&) = delete;
    Implements& operator=(const Implements&) = delete;
    virtual ~Implements() = default;

    /// See IUnknown::QueryInterface; offers the interfaces that the template names and those that
    /// they extend.
    ResultCode QueryInterface(const InterfaceId& id, void** object) noexcept override {
        *object = findInterface<Interfaces...>(this, id);
        if (*object == nullptr) {
            return resultNoInterface;
        }
        _AddRef();
        return resultOk;
    }
    /// See IUnknown::_AddRef.
    std::int32_t _AddRef() noexcept override {
        return count_.fetch_add(1, std::memory_order_relaxed) + 1;
    }
    /// See IUnknown::_Release; at 0 the object is deleted.
    std::int32_t _Release() noexcept override {
        const std::int32_t left = count_.fetch_sub(1, std::memory_order_acq_rel) - 1;
        if (left == 0) {
            delete this;
        }
        return left;
    }

private:
    std::atomic<std::int32_t> count_ = 0;
};

} // namespace host
