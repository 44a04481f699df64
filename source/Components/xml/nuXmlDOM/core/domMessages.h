#pragma once

#include <string_view>

/// \file
/// The texts of the tree's exceptions. A %s stands for what host::formatMessage puts there.

namespace nu {

// Assertions
inline constexpr std::u16string_view cDomLocation = u"source\\Components\\xml\\uNuXMLDOM";
/// Deliberate: the wrong article stays, applications compare the text.
inline constexpr std::u16string_view cOwnerRequired = u"A owner document is required!";
inline constexpr std::u16string_view cInvalidOptions = u"Invalid combination of options";
inline constexpr std::u16string_view cRootNodeNotSet =
    u"Setting the parentnode should trigger setting the RootNode!";
inline constexpr std::u16string_view cAssertionFailure = u"Assertion failure";

// ENuDomHierarchyRequest
inline constexpr std::u16string_view cNoParentOf =
    u"Nodes of class %s can't be parents of %s nodes.";
inline constexpr std::u16string_view cNoCopyOfDocument =
    u"A document is copied by its CreateCopy alone.";
inline constexpr std::u16string_view cOneRootNode = u"A document can only have 1 rootnode";

// ENuDomNoModificationAllowed
inline constexpr std::u16string_view cNameIsFixed = u"Modifying a NodeName is not allowed.";
inline constexpr std::u16string_view cNoMakingInConstant =
    u"A path cannot create nodes of a constant node.";
inline constexpr std::u16string_view cRootNodeIsFixed =
    u"It is not possible to replace an existing rootnode by another.";

// ENuDomSyntax
inline constexpr std::u16string_view cEmptyName = u"An empty NodeName is not allowed.";

// ENuDomInvalidCharacter
inline constexpr std::u16string_view cInvalidName = u"Invalid XML Name";
inline constexpr std::u16string_view cInvalidAttributeValue = u"Invalid attribute value";
inline constexpr std::u16string_view cInvalidComment = u"A comment may not contain \"--\"";
inline constexpr std::u16string_view cInvalidCData =
    u"A CDATA element may not contain \"<![\" or \"]]>\"";

// ENuDomNotFound
inline constexpr std::u16string_view cNoAttribute = u"There is no attribute \"%s\"";

// host::EConvertError
inline constexpr std::u16string_view cValueAt = u"%s (%s)";

// ENuDomNotSupported
inline constexpr std::u16string_view cNotSupported = u"Not supported";
inline constexpr std::u16string_view cNotImplemented = u"Not implemented";
inline constexpr std::u16string_view cNoDoctype = u"The doctype functionality is not implemented";

// ENuDomException
inline constexpr std::u16string_view cNoChildElement = u"There is no childelement \"%s\".";
inline constexpr std::u16string_view cNoChildElementNS =
    u"There is no childelement \"%s\" with the namespaceURI \"%s\".";
inline constexpr std::u16string_view cReferenceRequired =
    u"A reference child is required for this operation.";
inline constexpr std::u16string_view cMoreThanOne = u"More than one instance of \"%s\" was found.";
inline constexpr std::u16string_view cNoNodeForPath =
    u"There is no node for the given path \"%s\".";
inline constexpr std::u16string_view cEmptyType =
    u"The type attribute does not contain valid typeinfo.";
inline constexpr std::u16string_view cUnknownType =
    u"The type attribute contains an invalid value.";
inline constexpr std::u16string_view cNoStreamContents =
    u"Failed to get the contents of the stream.";
inline constexpr std::u16string_view cTooMuchOutput = u"The output is longer than %d bytes!";

// host::EConvertError
inline constexpr std::u16string_view cLackingCharacter =
    u"\"%s\" has a character that the encoding of the document does not have.";

// host::EReadError
inline constexpr std::u16string_view cNoFile = u"There is no file \"%s\"";

// host::Exception
inline constexpr std::u16string_view cIncompleteWrite = u"Failed to write all the data!";

// host::EInvalidPointer
inline constexpr std::u16string_view cStillHeld =
    u"The object is still referred to and cannot be destroyed.";
inline constexpr std::u16string_view cNodeRequired = u"A node is required for this operation.";

// host::ESystemError
inline constexpr std::u16string_view cForeignNode = u"The node is one of another library.";

// host::EInvalidCast
inline constexpr std::u16string_view cInvalidCast = u"The node is not a %s.";

} // namespace nu
