#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "host/runtime/valueAccess.h"
#include "nuObj2Xml/objectTextWriter.h"

namespace nu {

/// An element that has begun, and how far its content is written.
template <class Unit> struct ObjectTextWriter<Unit>::Frame {
    enum class Kind : std::uint8_t { Object, Items, List, Map };

    Kind kind = Kind::Object;
    NuXmlString name;
    const ElementForm* form = nullptr;   ///< of the element itself
    const ElementForm* inside = nullptr; ///< of the elements in it, but for objects
    std::size_t next = 0;                ///< the property or item to come

    // An object
    host::Instance object;
    const ClassTags<Unit>* tags = nullptr;
    TNuSerializer* serializer = nullptr; ///< knows the items; null for none
    std::unique_ptr<TNuSerializer> owned;
    bool areItemsWritten = false;
    std::size_t itemCount = 0;
    std::u16string_view itemsElement; ///< the one that is open around items

    // A list or a map
    host::ValueRef container;
    host::OwnedValue held; ///< keeps a container that a getter made
    host::Cursor cursor;
    bool isItemOpen = false; ///< of a map: its value is being written
    struct ElementTags {
        const host::ValueType* type = nullptr;
        PropertyTags<Unit> tags;
    };
    std::array<ElementTags, 2> elementTags; ///< of items, or keys and values
};

} // namespace nu
