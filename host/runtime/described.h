#pragma once

#include <type_traits>

#include "host/runtime/object.h"

/// \file
/// Where the description of a class stands, and which of its ancestors stands for the object. All
/// of it is done while the compiler runs.

namespace host {

/// What host::describe holds for a class that nobody described.
struct NotDescribed {};

/// The description of a class that cannot be changed: specialize it with what host::publish gives.
/// ```
/// template <> inline constexpr auto host::describe<Point> = host::publish<Point>(u"Point", ...);
/// ```
template <class Class> inline constexpr NotDescribed describe{};

/// \cond internal
namespace detail {

template <class Class>
concept FreelyDescribed =
    !std::is_same_v<std::remove_const_t<decltype(describe<Class>)>, NotDescribed>;

template <class Class> constexpr const auto& tableOf() noexcept {
    if constexpr (FreelyDescribed<Class>) {
        return describe<Class>;
    } else {
        return Class::published;
    }
}

template <class Class>
concept Described = FreelyDescribed<Class> || requires {
    Class::published;
};

/// The uppermost class, whose address stands for that of the object.
template <class Class> constexpr auto rootType() noexcept {
    if constexpr (std::is_base_of_v<TObject, Class>) {
        return std::type_identity<TObject>();
    } else {
        using Base = typename std::remove_cvref_t<decltype(tableOf<Class>())>::Base;
        if constexpr (std::is_void_v<Base>) {
            return std::type_identity<Class>();
        } else {
            return rootType<Base>();
        }
    }
}
template <class Class> using Root = typename decltype(rootType<Class>())::type;

} // namespace detail
/// \endcond

} // namespace host
