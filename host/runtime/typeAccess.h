#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "host/runtime/classInfo.h"
#include "host/runtime/described.h"
#include "host/runtime/object.h"

/// \file
/// How values of a published type are reached while a program runs: one class of operations for
/// each kind of place for an object and for each kind of container.

/// \cond internal
namespace host::detail {

/// host::classOf, which comes later.
template <class Class> const TClassInfo& classInfoOf() noexcept;

template <class Class> void* toRoot(const Class* object) noexcept {
    return const_cast<Root<Class>*>(static_cast<const Root<Class>*>(object));
}
template <class Class> Class* fromRoot(void* object) noexcept {
    return static_cast<Class*>(static_cast<Root<Class>*>(object));
}
template <class Class> const Class* fromRoot(const void* object) noexcept {
    return static_cast<const Class*>(static_cast<const Root<Class>*>(object));
}

/// The object with its own class.
template <class Class> Instance instanceOf(const Class* object) noexcept {
    static_assert(Described<Class>, "the class of a published object has to be described");
    if (object == nullptr) {
        return {};
    }
    if constexpr (std::is_base_of_v<TObject, Class>) {
        return {toRoot(object), &object->ClassInfo()};
    } else {
        return {toRoot(object), &classInfoOf<Class>()};
    }
}

template <class Type> void* makeValue() {
    if constexpr (std::is_default_constructible_v<Type>) {
        return new Type();
    } else {
        return nullptr;
    }
}
template <class Type> void destroyValue(void* value) noexcept { delete static_cast<Type*>(value); }

// Objects and places for them

template <class Class> void* createObject() { return toRoot(new Class()); }
template <class Class> void destroyObject(void* object) noexcept { delete fromRoot<Class>(object); }

template <class Class> struct ObjectAccess {
    static const TClassInfo* declaredClass(std::size_t index) {
        static_assert(Described<Class>, "the class of a published object has to be described");
        return index == 0 ? &classInfoOf<Class>() : nullptr;
    }
    static Instance get(const void* slot) {
        // What is held by value is of that class whatever it says of itself.
        return {toRoot(static_cast<const Class*>(slot)), &classInfoOf<Class>()};
    }
    static Instance create(void* slot, const TClassInfo& /*info*/) { return get(slot); }
    static void clear(void* /*slot*/) {}

    static constexpr SlotOperations operations{declaredClass, get, create, clear};
};

template <class Pointer> struct PointerAccess {
    using Class = typename std::pointer_traits<Pointer>::element_type;

    static Instance get(const void* slot) {
        return instanceOf<Class>(std::to_address(*static_cast<const Pointer*>(slot)));
    }
    static Instance create(void* slot, const TClassInfo& info) {
        const TClassInfo& made = std::is_base_of_v<TObject, Class> ? info : classInfoOf<Class>();
        if (made.create == nullptr) {
            return {};
        }
        auto* const object = fromRoot<Class>(made.create());
        auto& pointer = *static_cast<Pointer*>(slot);
        if constexpr (std::is_pointer_v<Pointer>) {
            delete std::exchange(pointer, object);
        } else {
            pointer.reset(object);
        }
        return get(slot);
    }
    static void clear(void* slot) {
        auto& pointer = *static_cast<Pointer*>(slot);
        if constexpr (std::is_pointer_v<Pointer>) {
            delete std::exchange(pointer, nullptr);
        } else {
            pointer = nullptr;
        }
    }

    static constexpr SlotOperations operations{ObjectAccess<Class>::declaredClass, get, create,
                                               clear};
};

template <class... Classes> struct AlternativesAccess {
    using Slot = std::variant<Classes...>;

    static const TClassInfo* declaredClass(std::size_t index) {
        const TClassInfo* found = nullptr;
        (step<Classes>(index, [&](const TClassInfo& info) { found = &info; }), ...);
        return found;
    }
    static Instance get(const void* slot) {
        return std::visit(
            []<class Class>(const Class& object) -> Instance {
                if constexpr (std::is_same_v<Class, std::monostate>) {
                    return {};
                } else {
                    return ObjectAccess<Class>::get(&object);
                }
            },
            *static_cast<const Slot*>(slot));
    }
    static Instance create(void* slot, const TClassInfo& info) {
        Instance made;
        (createIf<Classes>(*static_cast<Slot*>(slot), info, made), ...);
        return made;
    }
    static void clear(void* slot) {
        if constexpr (std::is_default_constructible_v<Slot>) {
            *static_cast<Slot*>(slot) = Slot();
        }
    }

    static constexpr SlotOperations operations{declaredClass, get, create, clear};

private:
    template <class Class, class Found> static void step(std::size_t& index, Found found) {
        if constexpr (!std::is_same_v<Class, std::monostate>) {
            static_assert(Described<Class>, "the class of a published object has to be described");
            if (index-- == 0) {
                found(classInfoOf<Class>());
            }
        }
    }
    template <class Class>
    static void createIf(Slot& slot, const TClassInfo& info, Instance& made) {
        if constexpr (!std::is_same_v<Class, std::monostate>) {
            if (!made && info.is(classInfoOf<Class>())) {
                made = ObjectAccess<Class>::get(&slot.template emplace<Class>());
            }
        }
    }
};

template <class Pointer> struct ReferenceAccess {
    using Class = std::remove_pointer_t<Pointer>;

    static const TClassInfo& declaredClass() {
        static_assert(Described<Class>, "the class of a published object has to be described");
        return classInfoOf<Class>();
    }
    static Instance get(const void* reference) {
        return instanceOf<Class>(*static_cast<const Pointer*>(reference));
    }
    static void set(void* reference, Instance target) {
        *static_cast<Pointer*>(reference) = target ? fromRoot<Class>(target.object) : nullptr;
    }

    static constexpr ReferenceOperations operations{declaredClass, get, set};
};

// What holds several values

template <class Container> using Iterator = typename Container::const_iterator;

template <class Container> Iterator<Container>& iteratorAt(Cursor& cursor) noexcept {
    static_assert(sizeof(Iterator<Container>) <= sizeof(Cursor) &&
                  std::is_trivially_destructible_v<Iterator<Container>>);
    return *std::launder(reinterpret_cast<Iterator<Container>*>(cursor.place));
}

template <class Container> struct ContainerAccess {
    static std::size_t size(const void* container) {
        return static_cast<const Container*>(container)->size();
    }
    static void begin(const void* container, Cursor& cursor) {
        new (cursor.place) Iterator<Container>(static_cast<const Container*>(container)->begin());
    }
    static void clear(void* container) { static_cast<Container*>(container)->clear(); }
};

template <class List> inline constexpr bool isVector = false;
template <class Element> inline constexpr bool isVector<std::vector<Element>> = true;

template <class List> struct ListAccess : ContainerAccess<List> {
    static const void* next(const void* list, Cursor& cursor) {
        auto& place = iteratorAt<List>(cursor);
        return place == static_cast<const List*>(list)->end() ? nullptr : &*place++;
    }
    static void* append(void* list, std::size_t /*count*/) {
        static_assert(std::is_default_constructible_v<typename List::value_type>,
                      "the elements of a published list need a constructor without arguments");
        return &static_cast<List*>(list)->emplace_back();
    }
    static std::size_t movedSize() {
        return isVector<List> ? sizeof(typename List::value_type) : 0;
    }

    static constexpr ListOperations operations{ContainerAccess<List>::size,
                                               ContainerAccess<List>::begin,
                                               next,
                                               ContainerAccess<List>::clear,
                                               append,
                                               movedSize};
};

template <class Array> struct ArrayAccess : ContainerAccess<Array> {
    static void clear(void* list) { *static_cast<Array*>(list) = Array{}; }
    static void* append(void* list, std::size_t count) {
        auto& array = *static_cast<Array*>(list);
        return count < array.size() ? &array[count] : nullptr;
    }

    static constexpr ListOperations operations{ContainerAccess<Array>::size,
                                               ContainerAccess<Array>::begin,
                                               ListAccess<Array>::next,
                                               clear,
                                               append,
                                               [] { return std::size_t{0}; }};
};

template <class Map> struct MapAccess : ContainerAccess<Map> {
    static const void* next(const void* map, Cursor& cursor, const void*& value) {
        auto& place = iteratorAt<Map>(cursor);
        if (place == static_cast<const Map*>(map)->end()) {
            return nullptr;
        }
        const auto& item = *place++;
        value = &item.second;
        return &item.first;
    }
    static void* at(void* map, void* key) {
        static_assert(std::is_default_constructible_v<typename Map::mapped_type>,
                      "the values of a published map need a constructor without arguments");
        return &(*static_cast<Map*>(map))[std::move(*static_cast<typename Map::key_type*>(key))];
    }

    static constexpr MapOperations operations{ContainerAccess<Map>::size,
                                              ContainerAccess<Map>::begin, next,
                                              ContainerAccess<Map>::clear, at};
};

template <class Optional> struct OptionalAccess {
    static const void* get(const void* optional) {
        const auto& held = *static_cast<const Optional*>(optional);
        return held ? &*held : nullptr;
    }
    static void* emplace(void* optional) { return &static_cast<Optional*>(optional)->emplace(); }
    static void reset(void* optional) { static_cast<Optional*>(optional)->reset(); }

    static constexpr OptionalOperations operations{get, emplace, reset};
};

} // namespace host::detail
/// \endcond
