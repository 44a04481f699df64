#pragma once

#include "nuObj2Xml/deserializeOptions.h"
#include "nuObj2Xml/objectRef.h"

class TNuDOMElement;

/// \file
/// The properties of objects as child elements of an element that is there already.

/// Puts an element for each published property behind the children of `element`: the same that
/// stand inside of an object's root element (TNuSerializer), and the items of lists, collections
/// and components with them. Attributes of types have the prefixes that are declared for the
/// namespaces of XML Schema on the element or around it, or none. Nothing happens for null.
///
/// Fails as TNuSerializer::Serialize does, with nothing added.
NUXML_API void NuSerialize(TNuConstObjectRef object, TNuDOMElement& element);

/// Reads the properties of an object from the child elements of `element`, whose name does not
/// matter. Without a type attribute it may be of any class. Fails as TNuSerializer::DeSerialize
/// does, with the path and no line; what was read before stays. Setters must leave the tree alone.
NUXML_API void NuDeserialize(TNuDOMElement& element, TNuObjectRef object,
                             TNuDeserializeOptions options = {});
