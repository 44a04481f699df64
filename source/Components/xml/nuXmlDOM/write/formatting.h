#pragma once

#include <string_view>

#include "host/dom/document.h"
#include "host/runtime/export.h"
#include "nuXmlParser/chars.h"

/// \file
/// XML text with line breaks and indentation.

/// An XML text with line breaks ("\r\n") and two blanks of indentation a level, where that changes
/// no text: white space between tags goes, elements of text alone and elements that preserve space
/// (xml:space) stay on one line. Throws as TNuDOMNode::set_innerxml does when `xml` cannot be read.
NUXML_API NuXmlString NuGetFormattedXML(std::u16string_view xml);

/// The same of a document of this library. Throws host::EInvalidPointer for null and
/// host::ESystemError with the code host::resultNoInterface for a document of another one.
NUXML_API NuXmlString NuGetFormattedXML(host::IDOMDocument* document);
