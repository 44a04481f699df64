#pragma once

#include <string_view>

#include "host/runtime/classInfo.h"
#include "nuXmlParser/chars.h"

namespace nu {

/// Whether a property is read out of one text, whatever its element tells of itself.
bool isLeaf(const host::TPropInfo& property) noexcept;

/// Reads a property that is a leaf out of unescaped UTF-8. False, and the property unchanged,
/// for a text that is no value of it. Throws what a setter does.
/// \param bytes behind which unescapeReach more can be read
/// \param scratch memory that serves again and again
bool readLeaf(const host::TPropInfo& property, void* self, std::string_view bytes,
              NuXmlString& scratch);
/// The same of text in UTF-16, which may be taken away.
bool readLeaf(const host::TPropInfo& property, void* self, NuXmlString& text);

/// Makes it the text that UTF-8, which is known to be well-formed, stands for.
void assignUtf8(NuXmlString& text, std::string_view bytes);
/// The same with references replaced, of bytes behind which unescapeReach more can be read. Throws
/// host::EConvertError as NuXMLToStr does; the text is unspecified then.
void assignReplaced(NuXmlString& text, std::string_view bytes);

} // namespace nu
