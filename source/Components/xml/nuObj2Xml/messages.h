#pragma once

#include <string_view>

/// The texts of reading and writing objects.
namespace nu::messages {

// Deliberate: no full stop where none stands; applications know these texts.
inline constexpr std::u16string_view noSerializer =
    u"There is no serializer registered for class %s";
inline constexpr std::u16string_view classNotRegistered = u"Class %s is not registered!";
inline constexpr std::u16string_view doesNotInherit = u"The given object does not inherit from %s!";

inline constexpr std::u16string_view alreadyBeingWritten =
    u"The object at \"%s\" is already being written!";
inline constexpr std::u16string_view nestedTooDeeply = u"Objects are nested too deeply at \"%s\"!";
inline constexpr std::u16string_view cannotBeMade =
    u"An object of class %s cannot be made, because it has no constructor without arguments!";
inline constexpr std::u16string_view noClass = u"The element does not tell a class!";
inline constexpr std::u16string_view notAnElementName = u"\"%s\" is no name for an element!";
inline constexpr std::u16string_view documentIsClosed = u"The document takes no more objects!";
inline constexpr std::u16string_view documentIsBroken =
    u"An object in the document is not complete!";
inline constexpr std::u16string_view noObject = u"The serializer has no object to read into!";
inline constexpr std::u16string_view noElement = u"The text holds no element!";
inline constexpr std::u16string_view endsInside = u"The text ends inside of an object (at %s)!";

// With the place of what was read, see at
inline constexpr std::u16string_view noProperty = u"There is no property \"%s\" in class %s";
inline constexpr std::u16string_view noPlace = u"There is no place for an element \"%s\"";
inline constexpr std::u16string_view missingProperty =
    u"The property \"%s\" of class %s is missing";
inline constexpr std::u16string_view textBesideElements = u"There is text beside elements";
inline constexpr std::u16string_view elementInValue = u"There is an element in a value";
inline constexpr std::u16string_view noNilAllowed = u"The value cannot be missing";
inline constexpr std::u16string_view noName = u"'%s' is no name of a value";
inline constexpr std::u16string_view listIsFull = u"There are more than %d items";
inline constexpr std::u16string_view itemWithoutKey = u"The item has no key in front of its value";
inline constexpr std::u16string_view noReferenced = u"There is no object called \"%s\"";
inline constexpr std::u16string_view at = u" (at %s)";
inline constexpr std::u16string_view atLine = u" (at line %d, column %d)";
inline constexpr std::u16string_view atWithLine = u" (at %s, line %d, column %d)";

} // namespace nu::messages
