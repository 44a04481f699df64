#pragma once

#include <memory>
#include <string_view>
#include <type_traits>

#include "host/runtime/classInfo.h"
#include "host/runtime/object.h"

/// \file
/// Serializer classes as values.

class TNuDOMElement;
class TNuSerializer;

/// A class of serializers: how one is made, and what it changes. There is one constant for each
/// class, nu::serializerOf.
struct TNuSerializerClass {
    /// Makes a serializer for an object that is there and stays the caller's.
    std::unique_ptr<TNuSerializer> (*createFromInstance)(host::TObject& instance);
    /// Makes one for a class alone: its pieces can be asked for, and it writes nothing.
    std::unique_ptr<TNuSerializer> (*createFromClass)(const host::TClassInfo& info);
    /// Whether it writes by a Serialize, a GetObject or a DoAfterSerialize of its own.
    bool isCustom;
    /// Whether it is none but TNuSerializer itself.
    bool isStandard;
    /// Whether it has a DoAfterDeserialize of its own, which wants an element.
    bool wantsElement;
};
