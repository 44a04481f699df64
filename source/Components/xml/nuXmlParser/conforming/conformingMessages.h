#pragma once

#include <string_view>

/// The faults that the conforming stage reports. "%s" is the name or text at fault.
namespace nu::messages {

// Limits
inline constexpr std::u16string_view elementsTooDeep =
    u"the elements are nested deeper than %s levels";
inline constexpr std::u16string_view attributesTooMany = u"an element has more than %s attributes";
inline constexpr std::u16string_view nameBeyondLimit = u"a name is longer than %s characters";

// The document
inline constexpr std::u16string_view noRootElement = u"the document has no root element";
inline constexpr std::u16string_view textBeforeRoot =
    u"text is not allowed before the root element";
inline constexpr std::u16string_view onlyMiscAfterRoot =
    u"only comments and processing instructions may follow the root element";
inline constexpr std::u16string_view elementNotClosed = u"the element \"%s\" is not closed";
inline constexpr std::u16string_view endTagWithoutStart = u"an end tag without a start tag";
inline constexpr std::u16string_view endTagMismatch =
    u"the end tag does not match the start tag \"%s\" (line %d)";

inline constexpr std::u16string_view markupTooLong = u"what begins here is longer than %d bytes";

// Constructs that the document ends in
inline constexpr std::u16string_view tagNotClosed = u"the tag is not closed";
inline constexpr std::u16string_view endTagNotClosed = u"the end tag is not closed";
inline constexpr std::u16string_view commentNotClosed = u"the comment is not closed";
inline constexpr std::u16string_view cdataNotClosed = u"the CDATA section is not closed";
inline constexpr std::u16string_view instructionNotClosed =
    u"the processing instruction is not closed";
inline constexpr std::u16string_view valueNotClosed = u"the attribute value is not closed";
inline constexpr std::u16string_view documentTypeNotClosed = u"the document type is not closed";
inline constexpr std::u16string_view subsetNotClosed = u"the internal subset is not closed";
inline constexpr std::u16string_view declarationNotClosed = u"the declaration is not closed";
inline constexpr std::u16string_view literalNotClosed = u"the literal is not closed";
inline constexpr std::u16string_view attributeListNotClosed = u"the attribute list is not closed";
inline constexpr std::u16string_view contentModelNotClosed = u"the content model is not closed";
inline constexpr std::u16string_view xmlDeclarationNotClosed = u"the XML declaration is not closed";

// Names
inline constexpr std::u16string_view notAName = u"this cannot begin the name of %s";
inline constexpr std::u16string_view misplacedColon = u"a colon is misplaced in \"%s\"";
inline constexpr std::u16string_view colonInName = u"a colon is not allowed in the name \"%s\"";

// Tags and attributes
inline constexpr std::u16string_view spaceMissingBefore =
    u"white space is missing before an attribute, after \"%s\"";
inline constexpr std::u16string_view equalMissing =
    u"\"=\" is missing after the name of an attribute, \"%s\"";
inline constexpr std::u16string_view quoteMissing =
    u"the value of an attribute must stand in quotes";
inline constexpr std::u16string_view lessInValue = u"\"<\" is not allowed in an attribute value";
inline constexpr std::u16string_view attributeTwice = u"the attribute \"%s\" stands twice";
inline constexpr std::u16string_view expandedNameTwice =
    u"two attributes have one name and namespace: \"%s\"";
inline constexpr std::u16string_view characterInTag = u"this is not allowed in a tag: \"%s\"";

// Namespaces
inline constexpr std::u16string_view prefixNotDeclared = u"the prefix \"%s\" is not declared";
inline constexpr std::u16string_view prefixMustNotBeDeclared =
    u"the prefix \"%s\" must not be declared";
inline constexpr std::u16string_view prefixCannotBeUndeclared =
    u"the prefix \"%s\" cannot be undeclared";
inline constexpr std::u16string_view prefixBoundElsewhere =
    u"the prefix \"%s\" is bound to another namespace";
inline constexpr std::u16string_view namespaceBoundElsewhere =
    u"the namespace \"%s\" is bound to another prefix";

// Characters and references
inline constexpr std::u16string_view dashesInComment = u"\"--\" is not allowed in a comment";
inline constexpr std::u16string_view cdataEndInText = u"\"]]>\" is not allowed in text";
inline constexpr std::u16string_view characterNotAllowed =
    u"a character that XML does not allow (U+%s)";
inline constexpr std::u16string_view referenceMalformed =
    u"a reference to a character is malformed";
inline constexpr std::u16string_view referenceNotAllowed =
    u"a reference to a character that XML does not allow, \"%s\"";
inline constexpr std::u16string_view semicolonMissing =
    u"\";\" is missing after a reference, \"%s\"";
inline constexpr std::u16string_view bareAmpersand =
    u"\"&\" must be written as \"&amp;\" where it begins no reference";

// Entities
inline constexpr std::u16string_view entityNotDeclared = u"the entity \"%s\" is not declared";
inline constexpr std::u16string_view entityRefersToItself = u"the entity \"%s\" refers to itself";
inline constexpr std::u16string_view entityNotWhole =
    u"the entity \"%s\" does not hold whole elements";
inline constexpr std::u16string_view entityUnparsed = u"the entity \"%s\" is unparsed";
inline constexpr std::u16string_view entityExternalInValue =
    u"the entity \"%s\" is external and stands in an attribute value";
inline constexpr std::u16string_view entitiesTooLarge =
    u"entities expand to more than %d times the document";
inline constexpr std::u16string_view insideEntity = u"%s (in the entity \"%s\")";
inline constexpr std::u16string_view parameterEntityInside =
    u"a parameter entity inside a declaration is not allowed in the internal subset";

inline constexpr std::u16string_view declarationPercent =
    u"\"%\" is not allowed in the value of an entity";

// Document type and other markup
inline constexpr std::u16string_view declarationExpected = u"a declaration is expected";
inline constexpr std::u16string_view secondDocumentType = u"a second document type";
inline constexpr std::u16string_view documentTypeMisplaced =
    u"a document type is not allowed behind the start of the root element";
inline constexpr std::u16string_view unknownMarkup = u"this cannot follow \"<!\"";
inline constexpr std::u16string_view malformedDeclaration = u"the declaration of %s is malformed";
inline constexpr std::u16string_view publicIdCharacter =
    u"a character that is not allowed in a public identifier";
inline constexpr std::u16string_view spaceMissingIn = u"white space is missing in %s";
inline constexpr std::u16string_view reservedTarget =
    u"the target \"xml\" is allowed in the XML declaration only";
inline constexpr std::u16string_view targetSpace =
    u"white space is missing after the target \"%s\"";

// The XML declaration and encodings
inline constexpr std::u16string_view versionFirst =
    u"the XML declaration must begin with the version";
inline constexpr std::u16string_view versionUnknown = u"this version of XML is not known: \"%s\"";
inline constexpr std::u16string_view standaloneValue = u"standalone must be \"yes\" or \"no\"";
inline constexpr std::u16string_view malformedXmlDeclaration = u"the XML declaration is malformed";
inline constexpr std::u16string_view encodingNoName = u"this is no name of an encoding: \"%s\"";
inline constexpr std::u16string_view encodingUnknown = u"unknown encoding \"%s\"";
inline constexpr std::u16string_view encodingContradicts =
    u"the declared encoding \"%s\" contradicts the bytes, which are %s";
/// The byte that begins what is no character, counted from 1 in the whole source.
inline constexpr std::u16string_view encodingInvalid =
    u"the text is not valid in its encoding (byte %d)";

} // namespace nu::messages
