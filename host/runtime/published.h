#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <type_traits>
#include <utility>

#include "host/runtime/memberName.h"
#include "host/runtime/object.h"
#include "host/runtime/valueTypeOf.h"

/// \file
/// How a class publishes its properties: it lists them once, with pointers to its members, in a
/// constant. Nothing runs at start-up, and nothing is added to the objects but the pointer that
/// every class with virtual functions has.
/// ```
/// class TAddress : public host::Published<TAddress> {
/// public:
///     std::u16string Street;
///     std::int32_t Number = 0;
///
///     static constexpr auto published = host::publish<TAddress>(u"TAddress",
///         host::prop<&TAddress::Street>(),
///         host::prop<&TAddress::Number>().Default(0));
/// };
/// ```

namespace host {

/// \cond internal
namespace detail {

template <class Type, class Class> std::type_identity<Class> classOfPointer(Type Class::*);
template <auto Member> using MemberClass = typename decltype(classOfPointer(Member))::type;

/// What a member, or a call of it, is as seen from an object.
template <auto Member, class Object> decltype(auto) access(Object& object) {
    if constexpr (std::is_member_function_pointer_v<decltype(Member)>) {
        return (object.*Member)();
    } else {
        return (object.*Member);
    }
}

template <class Type, class Class> constexpr bool isConstMember(Type Class::*) noexcept {
    return std::is_const_v<Type>;
}

template <class Pointer> struct MemberResult;
template <class Type, class Class>
requires(!std::is_function_v<Type>) struct MemberResult<Type Class::*> {
    using type = Type&;
};
template <class Type, class Class> struct MemberResult<Type (Class::*)() const> {
    using type = Type;
};
template <class Type, class Class> struct MemberResult<Type (Class::*)() const noexcept> {
    using type = Type;
};
template <class Type, class Class> struct MemberResult<Type (Class::*)()> { using type = Type; };
template <class Type, class Class> struct MemberResult<Type (Class::*)() noexcept> {
    using type = Type;
};

/// A property through a member or a getter and, perhaps, a setter.
template <auto Get, auto Set> struct PropertyAccess {
    using Class = MemberClass<Get>;
    using Result = typename MemberResult<decltype(Get)>::type;
    using Value = typename KeptAs<std::remove_cvref_t<Result>>::type;
    static constexpr bool hasSetter = !std::is_null_pointer_v<decltype(Set)>;
    /// Whether the result is the value itself and no copy of it.
    static constexpr bool hasPlace =
        std::is_reference_v<Result> && std::is_same_v<std::remove_cvref_t<Result>, Value>;
    static constexpr bool hasMutablePlace =
        hasPlace && !hasSetter && !std::is_const_v<std::remove_reference_t<Result>>;

    /// Getters may be declared without const; reading is asked of objects that may be changed.
    static Class& objectAt(const void* self) noexcept {
        return *fromRoot<Class>(const_cast<void*>(self));
    }
    static const void* place(const void* self) { return &access<Get>(objectAt(self)); }
    static void* mutablePlace(void* self) { return &access<Get>(objectAt(self)); }
    static void get(const void* self, void* value) {
        *static_cast<Value*>(value) = static_cast<Value>(access<Get>(objectAt(self)));
    }
    static void set(void* self, void* value) {
        static_assert(std::is_invocable_v<decltype(Set), Class&, Value>,
                      "the getter and the setter of a property have to agree");
        (objectAt(self).*Set)(std::move(*static_cast<Value*>(value)));
    }
};

template <class Pointer> struct ReferenceType {
    static constexpr ValueType record = [] {
        ValueType reference = scalarRecord<Pointer>(ValueKind::Reference);
        reference.reference = &ReferenceAccess<Pointer>::operations;
        return reference;
    }();
};

template <auto Test> bool isStored(const void* self) {
    using Class = MemberClass<Test>;
    return static_cast<bool>(access<Test>(*fromRoot<Class>(self)));
}

template <class Value>
inline constexpr bool isText = TypeRecord<Value>::record.kind == ValueKind::String;

template <class Value> constexpr DefaultValue defaultValue(const Value& value) {
    constexpr ValueKind kind = TypeRecord<Value>::record.kind;
    static_assert(kind < ValueKind::String, "only values of one piece have a default");
    if constexpr (kind == ValueKind::Single || kind == ValueKind::Double) {
        return {DefaultValue::Kind::Real, 0, static_cast<double>(value), u""};
    } else if constexpr (kind == ValueKind::DateTime) {
        return {DefaultValue::Kind::Real, 0, value.serial, u""};
    } else if constexpr (kind == ValueKind::Currency) {
        return {DefaultValue::Kind::Integer, value.scaled, 0, u""};
    } else if constexpr (requires { value.bits(); }) {
        return {DefaultValue::Kind::Integer, static_cast<std::int64_t>(value.bits()), 0, u""};
    } else {
        return {DefaultValue::Kind::Integer, static_cast<std::int64_t>(value), 0, u""};
    }
}

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

} // namespace detail
/// \endcond

/// One line of a description; host::prop and host::ref make it.
template <class Value> struct Property {
    TPropInfo info; ///< what is known at run time

    /// The value that need not be written, which a fresh object has to have
    /// (host::CheckDefaults). For numbers, booleans, amounts, dates, enumerations, sets and
    /// std::u16string; a text has to be a constant.
    [[nodiscard]] constexpr Property Default(
        const std::conditional_t<detail::isText<Value>, std::u16string_view, Value>& value) const {
        Property changed = *this;
        if constexpr (detail::isText<Value>) {
            changed.info.defaultValue = {DefaultValue::Kind::Text, 0, 0, value};
        } else {
            changed.info.defaultValue = detail::defaultValue<Value>(value);
        }
        return changed;
    }
    /// A further name that is read like the property's own; up to four.
    [[nodiscard]] constexpr Property Alias(std::u16string_view name) const {
        Property changed = *this;
        std::size_t index = 0;
        while (!changed.info.aliases[index].empty()) {
            ++index;
        }
        changed.info.aliases[index] = name;
        return changed;
    }
    /// A member, or a function without arguments, that tells whether the value is written at all.
    template <auto Test> [[nodiscard]] constexpr Property Stored() const {
        Property changed = *this;
        changed.info.isStored = detail::isStored<Test>;
        return changed;
    }
};

/// A property through a data member, or through a getter and a setter. Without a setter a value
/// that a getter gives is written only; an object that it leads to is read in place. The name is
/// that of the member (without "Get") unless one is given.
template <auto Get, auto Set = nullptr>
constexpr auto prop(std::u16string_view name = memberName<Get>) {
    using Access = detail::PropertyAccess<Get, Set>;
    Property<typename Access::Value> property;
    property.info.name = name;
    property.info.type = &valueTypeOf<typename Access::Value>;
    if constexpr (Access::hasPlace) {
        property.info.place = Access::place;
    } else {
        property.info.get = Access::get;
    }
    if constexpr (Access::hasMutablePlace) {
        property.info.mutablePlace = Access::mutablePlace;
    }
    if constexpr (Access::hasSetter) {
        property.info.set = Access::set;
    }
    return property;
}

/// A pointer to an object that is published elsewhere and belongs to somebody else. It is written
/// as the name of that object, which is its published text property "Name", and found again by that
/// name when everything has been read.
template <auto Get, auto Set = nullptr>
constexpr auto ref(std::u16string_view name = memberName<Get>) {
    using Access = detail::PropertyAccess<Get, Set>;
    using Pointer = typename Access::Value;
    static_assert(std::is_pointer_v<Pointer>, "a reference is a raw pointer to an object");
    auto property = prop<Get, Set>(name);
    property.info.type = &detail::ReferenceType<Pointer>::record;
    return property;
}

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

template <class Class> void* createObject() { return toRoot(new Class()); }
template <class Class> void destroyObject(void* object) noexcept { delete fromRoot<Class>(object); }

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

/// \cond internal
template <class Class> const TClassInfo& detail::classInfoOf() noexcept { return classOf<Class>; }
/// \endcond

/// The class that all others derive from has no properties.
template <> inline constexpr auto describe<TObject> = publish<TObject>(u"TObject");

/// What a class with published properties derives from: `class TBoss : public Published<TBoss,
/// TPerson>` has the properties of TPerson and then its own.
template <class Class, class Base> class Published : public Base {
public:
    using Base::Base;

    /// The description of the class itself, also through a pointer to an ancestor.
    [[nodiscard]] const TClassInfo& ClassInfo() const override { return classOf<Class>; }
};

/// The object as what works with every class. Nothing is owned.
template <class Class> Instance instance(const Class& object) noexcept {
    return detail::instanceOf(&object);
}

} // namespace host
