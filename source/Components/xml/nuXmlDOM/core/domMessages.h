#pragma once

#include <string_view>

/// \file
/// The texts of the tree's exceptions. A %s stands for what host::formatMessage puts there.

namespace nu::messages {

// Assertions
inline constexpr std::u16string_view domLocation = u"source\\Components\\xml\\uNuXMLDOM";
/// Deliberate: the wrong article stays, applications compare the text.
inline constexpr std::u16string_view ownerRequired = u"A owner document is required!";
inline constexpr std::u16string_view invalidOptions = u"Invalid combination of options";
inline constexpr std::u16string_view rootNodeNotSet =
    u"Setting the parentnode should trigger setting the RootNode!";

// ENuDomHierarchyRequest
inline constexpr std::u16string_view noParentOf =
    u"Nodes of class %s can't be parents of %s nodes.";
inline constexpr std::u16string_view noCopyOfDocument =
    u"A document is copied by its CreateCopy alone.";
inline constexpr std::u16string_view oneRootNode = u"A document can only have 1 rootnode";

// ENuDomNoModificationAllowed
inline constexpr std::u16string_view nameIsFixed = u"Modifying a NodeName is not allowed.";
inline constexpr std::u16string_view noMakingInConstant =
    u"A path cannot create nodes of a constant node.";
inline constexpr std::u16string_view rootNodeIsFixed =
    u"It is not possible to replace an existing rootnode by another.";

// ENuDomSyntax
inline constexpr std::u16string_view emptyName = u"An empty NodeName is not allowed.";

// ENuDomInvalidCharacter
inline constexpr std::u16string_view invalidName = u"Invalid XML Name";
inline constexpr std::u16string_view invalidAttributeValue = u"Invalid attribute value";
inline constexpr std::u16string_view invalidComment = u"A comment may not contain \"--\"";
inline constexpr std::u16string_view invalidCData =
    u"A CDATA element may not contain \"<![\" or \"]]>\"";

// ENuDomNotFound
inline constexpr std::u16string_view noAttribute = u"There is no attribute \"%s\"";

// host::EConvertError
inline constexpr std::u16string_view valueAt = u"%s (%s)";

// ENuDomNotSupported
inline constexpr std::u16string_view operationNotSupported = u"Not supported";
inline constexpr std::u16string_view notImplemented = u"Not implemented";
inline constexpr std::u16string_view noDoctype = u"The doctype functionality is not implemented";

// ENuDomException
inline constexpr std::u16string_view noChildElement = u"There is no childelement \"%s\".";
inline constexpr std::u16string_view noChildElementNS =
    u"There is no childelement \"%s\" with the namespaceURI \"%s\".";
inline constexpr std::u16string_view referenceRequired =
    u"A reference child is required for this operation.";
inline constexpr std::u16string_view moreThanOne = u"More than one instance of \"%s\" was found.";
inline constexpr std::u16string_view noNodeForPath = u"There is no node for the given path \"%s\".";
inline constexpr std::u16string_view emptyType =
    u"The type attribute does not contain valid typeinfo.";
inline constexpr std::u16string_view unknownType = u"The type attribute contains an invalid value.";
inline constexpr std::u16string_view noStreamContents =
    u"Failed to get the contents of the stream.";
inline constexpr std::u16string_view tooMuchOutput = u"The output is longer than %d bytes!";

// host::EConvertError
inline constexpr std::u16string_view lackingCharacter =
    u"\"%s\" has a character that the encoding of the document does not have.";

// host::EReadError
inline constexpr std::u16string_view noFile = u"There is no file \"%s\"";

// host::Exception
inline constexpr std::u16string_view incompleteWrite = u"Failed to write all the data!";

// host::EInvalidPointer
inline constexpr std::u16string_view stillHeld =
    u"The object is still referred to and cannot be destroyed.";
inline constexpr std::u16string_view nodeRequired = u"A node is required for this operation.";

// host::ESystemError
inline constexpr std::u16string_view foreignNode = u"The node is one of another library.";

// host::EInvalidCast
inline constexpr std::u16string_view invalidCast = u"The node is not a %s.";

} // namespace nu::messages
