#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <type_traits>
#include <typeinfo>

#include "host/runtime/property.h"

/// \file
/// The description of a class: it is checked, and joined with those of its ancestors to the
/// constant that is known at run time. All of it is done while the compiler runs.

namespace host {

/// A description: what host::publish gives.
template <class C, class B, std::size_t count> struct Description {
    /// The described class.
    using Class = C;
    using Base = B;

    std::u16string_view name; ///< as it is written into XML
    std::array<TPropInfo, count>
        own; ///< the properties of the class itself, without those of its base
};

/// Describes a class: its name, which is written into XML, and its own properties. Those of `Base`,
/// which is for classes that are described from outside, come before them.
template <class Class, class Base = void, class... Values>
constexpr Description<Class, Base, sizeof...(Values)> publish(std::u16string_view name,
                                                              const Property<Values>&... list) {
    return {name, {list.info...}};
}

class TPersistent;
template <class Class, class Base = TPersistent> class Published;

/// \cond internal
namespace detail {

/// A name that an element can have: an XML name without a colon.
constexpr bool isElementName(std::u16string_view name) noexcept {
    const auto isStart = [](char16_t unit) {
        return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || unit == u'_' ||
               (unit >= 0xC0 && unit != 0xD7 && unit != 0xF7 && !(unit >= 0x300 && unit < 0x370) &&
                unit != 0x37E &&
                !(unit >= 0x2000 && unit < 0x2070 && unit != 0x200C && unit != 0x200D) &&
                !(unit >= 0x2190 && unit < 0x2C00) && !(unit >= 0x2FF0 && unit < 0x3001) &&
                !(unit >= 0xDC00 && unit < 0xF900) && !(unit >= 0xFDD0 && unit < 0xFDF0) &&
                unit < 0xFFFE);
    };
    if (name.empty() || !isStart(name.front())) {
        return false;
    }
    for (const char16_t unit : name.substr(1)) {
        const bool isPart = isStart(unit) || (unit >= u'0' && unit <= u'9') || unit == u'-' ||
                            unit == u'.' || unit == 0xB7 || (unit >= 0x300 && unit < 0x370) ||
                            unit == 0x203F || unit == 0x2040 || (unit >= 0xDC00 && unit < 0xE000);
        if (!isPart) {
            return false;
        }
    }
    return true;
}

template <class Class, class Base>
std::type_identity<Base> baseOfPublished(const Published<Class, Base>*);

template <class Class> constexpr auto baseType() noexcept {
    using Table = std::remove_cvref_t<decltype(tableOf<Class>())>;
    if constexpr (!std::is_void_v<typename Table::Base>) {
        return std::type_identity<typename Table::Base>();
    } else if constexpr (std::is_base_of_v<TObject, Class> && !std::is_same_v<TObject, Class>) {
        return decltype(baseOfPublished<Class>(static_cast<const Class*>(nullptr)))();
    } else {
        return std::type_identity<void>();
    }
}
template <class Class> using BaseOf = typename decltype(baseType<Class>())::type;

template <class Class> constexpr std::size_t propertyCount() noexcept {
    std::size_t count = tableOf<Class>().own.size();
    if constexpr (!std::is_void_v<BaseOf<Class>>) {
        count += propertyCount<BaseOf<Class>>();
    }
    return count;
}

/// Puts the properties of a class, its ancestors' first, at `place` and gives the place behind.
template <class Class> constexpr TPropInfo* copyProperties(TPropInfo* place) noexcept {
    if constexpr (!std::is_void_v<BaseOf<Class>>) {
        place = copyProperties<BaseOf<Class>>(place);
    }
    for (const TPropInfo& property : tableOf<Class>().own) {
        *place++ = property;
    }
    return place;
}

template <class Class>
inline constexpr auto allProperties = [] {
    std::array<TPropInfo, propertyCount<Class>()> all{};
    copyProperties<Class>(all.data());
    return all;
}();

template <class Class> constexpr bool haveElementNames() noexcept {
    for (const TPropInfo& property : tableOf<Class>().own) {
        if (!isElementName(property.name)) {
            return false;
        }
        for (const std::u16string_view alias : property.aliases) {
            if (!alias.empty() && !isElementName(alias)) {
                return false;
            }
        }
    }
    return true;
}

constexpr bool shareName(const TPropInfo& one, const TPropInfo& other) noexcept {
    for (const std::u16string_view alias : other.aliases) {
        if (one.name == alias) {
            return true;
        }
    }
    return one.name == other.name;
}

template <class Class> constexpr bool areNamesDifferent() noexcept {
    const auto& all = allProperties<Class>;
    for (std::size_t index = 0; index < all.size(); ++index) {
        for (std::size_t other = 0; other < all.size(); ++other) {
            if (index != other && shareName(all[index], all[other])) {
                return false;
            }
        }
    }
    return true;
}

template <class Class, class Ancestor>
concept LeadsBackFrom = requires(Ancestor* ancestor) {
    static_cast<Class*>(ancestor);
};

template <class Class> constexpr void checkDescription() noexcept {
    using Table = std::remove_cvref_t<decltype(tableOf<Class>())>;
    static_assert(std::is_same_v<typename Table::Class, Class>,
                  "the class has no description of its own: its ancestor's would count for it");
    static_assert(LeadsBackFrom<Class, Root<Class>>,
                  "a described class cannot have its ancestor as a virtual or a doubled base");
    static_assert(isElementName(tableOf<Class>().name),
                  "the name of a class has to be an XML name");
    static_assert(haveElementNames<Class>(), "the name of a property has to be an XML name");
    static_assert(areNamesDifferent<Class>(),
                  "a class and its ancestors publish two properties of the same name");
}

template <class Class> struct ClassConstant;

template <class Class> constexpr TClassInfo classInfo() noexcept {
    static_assert(Described<Class>, "the class is not described");
    checkDescription<Class>();
    TClassInfo info;
    info.name = tableOf<Class>().name;
    if constexpr (!std::is_void_v<BaseOf<Class>>) {
        info.base = &ClassConstant<BaseOf<Class>>::info;
    }
    info.type = &typeid(Class);
    info.isObject = std::is_base_of_v<TObject, Class>;
    if constexpr (std::is_default_constructible_v<Class>) {
        info.create = createObject<Class>;
    }
    info.destroy = destroyObject<Class>;
    info.properties = allProperties<Class>;
    return info;
}

template <class Class> struct ClassConstant {
    static constexpr TClassInfo info = classInfo<Class>();
};

} // namespace detail
/// \endcond

/// The class reference of a described class.
template <class Class>
inline constexpr const TClassInfo& classOf = detail::ClassConstant<Class>::info;

} // namespace host
