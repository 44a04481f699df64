#pragma once

#include <type_traits>

#include "host/runtime/typeRecord.h"

/// \file
/// Which C++ types can be published, and the constants that describe them. What is a value of its
/// own: bool, integers, enumerations with host::EnumNames, host::Set of them, float, double,
/// host::Currency, host::TDateTime, std::u16string, std::string (UTF-8), host::Variant, and vectors
/// of bytes, of 32-bit integers and of UTF-16 strings. What holds others: objects of described
/// classes; std::unique_ptr, std::shared_ptr and raw pointers to them; std::variant of them;
/// std::optional; std::vector, std::list, std::deque and std::array; std::map and
/// std::unordered_map.
///
/// A raw pointer that is published with host::prop belongs to the object: reading puts a new object
/// there, and the class deletes it. host::ref is for pointers to what others own.

namespace host {

/// The record of a type that can be published.
template <class Type>
inline constexpr const ValueType& valueTypeOf = detail::TypeRecord<Type>::record;

/// A value as a parameter for what works with every type. Nothing is owned.
template <class Type> ValueRef valueRef(Type& value) noexcept {
    return {const_cast<std::remove_const_t<Type>*>(&value),
            &valueTypeOf<std::remove_const_t<Type>>};
}

} // namespace host
