#pragma once

#include <string_view>

/// The texts of the reader. Deliberate: misspellings stay ("Unexptected"), and two product names
/// occur side by side; applications and their users know these texts.
namespace nu::messages {

// Faults of the document
inline constexpr std::u16string_view invalidAfterLessExclamation =
    u"Invalid XML after \"<!\" on line %d and pos %d!";
// Deliberate: names "<!" although the fault follows a bare "<", and opens a quote that never
// closes.
inline constexpr std::u16string_view spaceAfterLess =
    u"The XML document is not wellformed!\r\nA space is not allowed after a \"<!";
// Deliberate: the one text that spells "Unexpected" right.
inline constexpr std::u16string_view endInElementName = u"Unexpected End Of Document!";
inline constexpr std::u16string_view endOfDocument = u"Unexptected End Of Document!";
inline constexpr std::u16string_view noNamespaceForPrefix =
    u"There is no NamespaceURI for the prefix \"%s\"!";
inline constexpr std::u16string_view greaterExpected =
    u"The XML document is not wellformed!\r\nA \">\" was expected.";
inline constexpr std::u16string_view spaceWithoutAttributes =
    u"The XML document is not wellformed!\r\n"
    u"A space after an element indicates that there are attributes.";
inline constexpr std::u16string_view equalAfterAttributeName =
    u"The XML document is not wellformed!\r\nA \"=\" should follow an attributename.";
inline constexpr std::u16string_view endBeforeEqual =
    u"Unexptected End Of Document!\r\nA \"=\" was expected!";
inline constexpr std::u16string_view quoteExpected =
    u"The XML document is not wellformed!\r\n"
    u"A quote to mark the start of the attribute value was expected.";
inline constexpr std::u16string_view endBeforeValue =
    u"Unexptected End Of Document!\r\n"
    u"A quote to mark the start of an attribute value was expected!";
inline constexpr std::u16string_view endInValue =
    u"Unexptected End Of Document!\r\n"
    u"A quote to mark the end of an attribute value was expected!";
inline constexpr std::u16string_view endInElement =
    u"Unexptected End Of Document!\r\nThe element was not closed!";
inline constexpr std::u16string_view commentStart =
    u"The XML document is not wellformed!\r\nAfter <!- should be followed by another - !";
inline constexpr std::u16string_view commentEnd =
    u"The XML document is not wellformed!\r\nA comment should end with -->";
inline constexpr std::u16string_view endInComment =
    u"Unexptected End Of Document!\r\nThe comment was not closed!";
inline constexpr std::u16string_view endInCData =
    u"Unexptected End Of Document!\r\nThe CDATA was not closed!";
inline constexpr std::u16string_view instructionEnd =
    u"The XML document is not wellformed!\r\nThe closing (>) of the processing instruction "
    u"should be placed right after the question mark (?)!";
inline constexpr std::u16string_view documentTypeExpected = u"<!DOCTYPE expected, but %s found!";

// Calls that the reader refuses
inline constexpr std::u16string_view inputSourceNotSupported =
    u"This call is not supported in Velt XML.";
inline constexpr std::u16string_view dtdHandlersNotSupported =
    u"DTDhandlers are not supported in this version of Velt XML.";
inline constexpr std::u16string_view entityResolversNotSupported =
    u"EntityResolvers are not supported in this version of Velt XML.";
inline constexpr std::u16string_view noLexicalHandler = u"The value is no lexical handler";
inline constexpr std::u16string_view notSupported = u"The Keldon SAX parser does not support %s";
// Fatal errors of limits
inline constexpr std::u16string_view tooDeep = u"The elements are nested deeper than %d levels!";
inline constexpr std::u16string_view tooManyEnds = u"There are too many end tags!";
inline constexpr std::u16string_view tooManyAttributes =
    u"The element has more than %d attributes!";
inline constexpr std::u16string_view nameTooLong = u"The name is longer than %d characters!";

inline constexpr std::u16string_view alreadyParsing = u"The reader is already parsing a document.";
inline constexpr std::u16string_view danglingReferences = u"Dangling RefCount %d";
inline constexpr std::u16string_view attributesNotSupported =
    u"The Attributes object does not support IAttributes";

// Exceptions of event handlers.
inline constexpr std::u16string_view eventFailed = u"Error evaluating the %s event!\r\n%s";

} // namespace nu::messages
