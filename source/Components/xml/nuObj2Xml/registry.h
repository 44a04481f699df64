#pragma once

#include <memory>
#include <string_view>

#include "nuObj2Xml/serializer.h"

/// \file
/// Which serializer writes the objects of which class. The registry may be used by several threads.
/// From the start it holds an entry for host::TPersistent, and those of the host's own classes.

/// Enters a class with its serializer, or gives a class that is there already another one. A
/// subclass is found before its ancestors, in whichever order they come. If the class derives from
/// host::TPersistent, it can be found by name afterwards.
///
/// Who unloads a library takes the entries of its classes out before. The entries go when this
/// library is unloaded.
NUXML_API void NuRegisterSerializationClass(const host::TClassInfo& info,
                                            const TNuSerializerClass& serializerClass);
/// Takes an entry out, and the class out of the class registry; one that is not there is no fault.
NUXML_API void NuUnregisterSerializationClass(const host::TClassInfo& info) noexcept;

/// A new serializer for an object, by the entry of its class or the nearest ancestor. Null for
/// null. Throws host::Exception when there is no entry.
[[nodiscard]] NUXML_API std::unique_ptr<TNuSerializer> GetNuSerializer(host::TObject* instance);
/// The same for a class.
[[nodiscard]] NUXML_API std::unique_ptr<TNuSerializer>
GetNuSerializer(const host::TClassInfo& info);
/// The same for the class that the class registry has under that name. Throws host::Exception when
/// there is none.
[[nodiscard]] NUXML_API std::unique_ptr<TNuSerializer>
GetNuSerializer(std::u16string_view className);

namespace nu {

/// The serializer class of the entry that serves a class. Throws host::Exception when there is
/// none.
const TNuSerializerClass& serializerClassOf(const host::TClassInfo& info);

/// Enters the class of an object into the class registry, if it derives from host::TPersistent.
/// What was entered here is taken out again when the library is unloaded.
void registerPersistentClass(const host::TClassInfo& info);

} // namespace nu
