#pragma once

#include <string_view>

#include "host/runtime/published.h"
#include "host/runtime/variant.h"

/// \file
/// Properties as variants, for tools that know a class by its description only.

namespace host {

/// The value of a property: an integer by its width; an enumeration as its name; a set as its names
/// with "," between them; text as a UTF-16 string; a reference as the name of the object that it
/// leads to; an optional as what it holds. What is no single value, such as an object or a list,
/// and an optional or a reference that holds nothing, give an empty variant.
NUXML_API Variant GetProperty(Instance object, const TPropInfo& property);

/// Gives a property a value, converted as host::Variant converts. Enumerations and sets take names
/// and numbers. An empty variant or null makes an optional empty. Throws host::EConvertError for
/// what is no value of the property, host::Exception for a property that cannot be written this
/// way, and whatever the setter throws.
NUXML_API void SetProperty(Instance object, const TPropInfo& property, const Variant& value);

/// The same by name. Throw host::Exception when the class has no such property.
/// @{
template <class Class> Variant GetProperty(const Class& object, std::u16string_view name);
template <class Class>
void SetProperty(Class& object, std::u16string_view name, const Variant& value);
/// @}

/// Whether the property has its declared default.
NUXML_API bool HasDefault(Instance object, const TPropInfo& property);
/// Gives a property its declared default; nothing happens where there is none or it is read-only.
NUXML_API void ResetToDefault(Instance object, const TPropInfo& property);

/// The name of the first property whose declared default is not what a new object has, so that an
/// object would not come back as it was; empty if all is well. For tests.
template <class Class> std::u16string_view CheckDefaults() {
    const Class fresh;
    for (const TPropInfo& property : classOf<Class>.properties) {
        if (property.hasDefault() && !HasDefault(instance(fresh), property)) {
            return property.name;
        }
    }
    return {};
}

/// The name by which references find an object: its published text property "Name"; empty if it has
/// none.
NUXML_API std::u16string ReferenceName(Instance object);

/// The property of a class, or host::Exception that names both.
NUXML_API const TPropInfo& PropertyOf(const TClassInfo& info, std::u16string_view name);

template <class Class> Variant GetProperty(const Class& object, std::u16string_view name) {
    const Instance held = instance(object);
    return GetProperty(held, PropertyOf(*held.info, name));
}

/// Sets the published property of that name from a variant. Throws host::Exception for a name that
/// is none and what the conversion throws.
template <class Class>
void SetProperty(Class& object, std::u16string_view name, const Variant& value) {
    const Instance held = instance(object);
    SetProperty(held, PropertyOf(*held.info, name), value);
}

} // namespace host
