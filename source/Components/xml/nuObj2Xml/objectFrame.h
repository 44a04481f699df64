#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "host/runtime/exception.h"
#include "nuObj2Xml/objectBuilder.h"

/// \file
/// What the parts of ObjectBuilder share.

namespace nu {

/// An element that has begun, and where its content goes.
struct ObjectBuilder::Frame {
    enum class Kind : std::uint8_t { Object, Items, List, Map, MapItem, Value, Skip };

    Kind kind = Kind::Skip;
    std::u16string_view name;
    NuXmlString ownName; ///< keeps a name that is nobody else's
    std::size_t index = 0;

    /// The property that the content belongs to, and its object: for a value that a setter gets.
    const host::TPropInfo* property = nullptr;
    host::Instance owner;
    host::OwnedValue held; ///< the value before the setter gets it
    host::ValueRef target; ///< a value, a list or a map

    // An object
    host::Instance object;
    TNuSerializer* serializer = nullptr; ///< null for a standard one
    std::unique_ptr<TNuSerializer> owned;
    std::size_t expected = 0;   ///< the property that the next element is likely to be
    std::vector<bool> seen;     ///< by property; only where it matters what is missing
    bool resetsMissing = false; ///< what is missing gets its default
    bool wantsTree = false;

    // A value
    bool isNil = false;
    NuXmlString schemaType; ///< for a variant

    // A list or a map
    std::size_t count = 0; ///< of the elements that came

    // An item of a map
    host::OwnedValue key;
    void* mapped = nullptr; ///< the value of that key, as soon as it is known
};

/// Adds the place to what cannot be converted.
template <class Conversion> void ObjectBuilder::withPlace(Conversion convert) const {
    try {
        convert();
    } catch (const host::EConvertError& error) {
        throw host::EConvertError(error.Message() + place());
    }
}

} // namespace nu
