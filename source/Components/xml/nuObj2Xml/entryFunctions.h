#pragma once

#include <filesystem>
#include <memory>
#include <string_view>

#include "host/runtime/stream.h"
#include "host/runtime/windowedControl.h"
#include "nuObj2Xml/deserializeOptions.h"
#include "nuObj2Xml/namespaceOptions.h"
#include "nuObj2Xml/objectRef.h"
#include "nuXmlParser/chars.h"

class TNuDOMDocument;
class TNuDOMElement;

/// \file
/// Objects to XML and back in one call. Objects are written and read by the serializers that are
/// registered for their classes (registry.h); those of a class without host::TObject by none.
///
/// The root element has the given name or, if that is empty, the name of the class without the T
/// that it begins with. A name that no element can have throws host::Exception. For a null object
/// the result is empty and nothing is written or read. Otherwise writing fails as
/// TNuSerializer::Serialize does, with nothing written, and reading as TNuSerializer::DeSerialize.

/// \name Writing
/// @{

/// Writes an object as UTF-16 without a mark, which is for programs that expect it; NuSaveObject
/// and nu::ObjectWriter write UTF-8.
NUXML_API void NuSerializeObject2Stream(TNuConstObjectRef object, host::TStream& stream,
                                        std::u16string_view name = {},
                                        TNuNamespaceOptions options = {});
/// The element as a text.
[[nodiscard]] NUXML_API NuXmlString NuSerializeObject2Xml(TNuConstObjectRef object,
                                                          std::u16string_view name = {},
                                                          TNuNamespaceOptions options = {});
/// Puts the element behind the children of `parent` and gives it.
NUXML_API TNuDOMElement* NuSerializeObject2DOM(TNuConstObjectRef object, TNuDOMElement& parent,
                                               std::u16string_view name = {},
                                               TNuNamespaceOptions options = {});
/// Makes the element the document element. Throws ENuDomHierarchyRequest when there is one.
NUXML_API TNuDOMElement* NuSerializeObject2DOM(TNuConstObjectRef object, TNuDOMDocument& document,
                                               std::u16string_view name = {},
                                               TNuNamespaceOptions options = {});
/// Writes an object into a file: UTF-8, with an XML declaration. The file is replaced when the new
/// one is complete; what fails before leaves the old one. Throws host::EFileOpenError and
/// host::EWriteError beside what writing throws.
NUXML_API void NuSaveObject(const std::filesystem::path& path, TNuConstObjectRef object,
                            std::u16string_view name = {}, TNuNamespaceOptions options = {});
/// @}

/// \name Reading
/// The name of the root element does not matter, its type has to fit the object.
/// @{

/// Reads an object from the first element of a text.
NUXML_API void NuDeSerializeObject(TNuObjectRef object, std::u16string_view xml,
                                   TNuDeserializeOptions options = {});
/// Reads it from the rest of a stream, in any encoding that the reader knows. Its bytes are kept in
/// memory meanwhile unless they are there already; nu::ReadObjects reads documents of any size.
NUXML_API void NuDeSerializeObject(TNuObjectRef object, host::TStream& stream,
                                   TNuDeserializeOptions options = {});
/// Reads it from an element of a tree, which setters must leave alone. Errors tell the path alone,
/// for the tree knows no lines.
NUXML_API void NuDeSerializeObject(TNuObjectRef object, TNuDOMElement& element,
                                   TNuDeserializeOptions options = {});
/// Reads it from a file. Throws host::EFileOpenError as well.
NUXML_API void NuLoadObject(const std::filesystem::path& path, TNuObjectRef object,
                            TNuDeserializeOptions options = {});

/// Makes the component that a text describes, which belongs to `owner`, and to the caller if that
/// is null, and reads it. The class is what the type attribute names: it has to be in the class
/// registry, else host::Exception "Class %s is not registered!" is thrown, and derive from
/// TComponent, else "The given object does not inherit from %s!". If reading fails there is no new
/// component.
NUXML_API host::TComponent* NuDeSerializeComponent(host::TComponent* owner, std::u16string_view xml,
                                                   TNuDeserializeOptions options = {});
/// The same with a control, which has to derive from TWindowedControl and stands in `parent`, or in
/// nothing if that is null.
NUXML_API host::TWindowedControl* NuDeSerializeControl(host::TComponent* owner,
                                                       host::TWindowedControl* parent,
                                                       std::u16string_view xml,
                                                       TNuDeserializeOptions options = {});
/// @}
