#pragma once

#include <string_view>

/// What goes wrong with records, in words.
namespace nu::messages {

inline constexpr std::u16string_view noRecordPath =
    u"\"%s\" is no path of records: a name, or names from the root down with \"/\" between them";
inline constexpr std::u16string_view noRecordName =
    u"without an index the last name of the path has to be given";
inline constexpr std::u16string_view noColumns =
    u"\"%s\" are no columns: names, \"@\" and a name, or \".\", with commas between them";
inline constexpr std::u16string_view recordTooLong = u"the record is longer than %d bytes";
inline constexpr std::u16string_view noRecord = u"there is no record at hand";
inline constexpr std::u16string_view partEncoding =
    u"only documents in UTF-8 can be read in parts, this one is %s";
inline constexpr std::u16string_view headTooLong =
    u"no record begins in the first %d bytes: parts need an index";
inline constexpr std::u16string_view promiseBroken =
    u"\"<%s\" stands in a comment, a CDATA section, a record or away from the path: parts need an "
    u"index";
inline constexpr std::u16string_view contextDiffers =
    u"the elements around this record are not those around the first one: parts need an index";
inline constexpr std::u16string_view atByte = u"%s (at byte %d)";
inline constexpr std::u16string_view countedFrom = u"%s (line counted from byte %d)";

// The index
inline constexpr std::u16string_view noIndex = u"this is no index of records";
inline constexpr std::u16string_view indexOfAnother =
    u"the index was made of another state of the file: %s";
inline constexpr std::u16string_view indexMarkup = u"markup that an index cannot be made of: %s";

// What is wrong with markup that is walked over
inline constexpr std::u16string_view tagTooLong = u"it is too long";
inline constexpr std::u16string_view endsInsideElement = u"the document ends inside of an element";
inline constexpr std::u16string_view endTagAlone = u"an end tag without a start tag";
inline constexpr std::u16string_view endTagDiffers = u"the end tag does not match the start tag";
inline constexpr std::u16string_view tagStaysOpen = u"the tag is not closed";
inline constexpr std::u16string_view tagWithoutName = u"a tag without a name";
inline constexpr std::u16string_view cannotFollow = u"this cannot follow \"<!\"";
inline constexpr std::u16string_view markupStaysOpen = u"it is not closed";
inline constexpr std::u16string_view typeStaysOpen = u"the document type is not closed";

} // namespace nu::messages
