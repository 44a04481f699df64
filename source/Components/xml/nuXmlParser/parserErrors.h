#pragma once

#include "host/runtime/exception.h"

/// \file
/// The exceptions that end a parse, and the texts of the character input.

/// The parse cannot go on; the message says why.
class NUXML_API ENuSaxFatalError : public host::Exception {
public:
    using Exception::Exception;
    ~ENuSaxFatalError() override;
};

/// The fault was already reported to the error handler, or a handler wants the parse to stop.
/// The reader swallows it.
class NUXML_API ENuSaxHandledAbort : public host::Exception {
public:
    using Exception::Exception;
    ~ENuSaxHandledAbort() override;
};

namespace nu::messages {

inline constexpr std::u16string_view abort = u"Abort";
inline constexpr std::u16string_view unexpectedEof = u"Unexpected EOF";
inline constexpr std::u16string_view errorHandlerMissing =
    u"You must assign an Errorhandler to the SAX Parser!";
inline constexpr std::u16string_view sourceStreamMissing =
    u"You must assign a SourceStream to the SAX Parser!";
inline constexpr std::u16string_view noXml =
    u"The sourcestream does not contain XML or is not positioned at the beginning of an XML block!";
// Deliberate: "sourcestream" as one word; applications compare these texts.
inline constexpr std::u16string_view invalidUtf8 = u"The sourcestream contains invalid UTF-8 data!";
// Deliberate: "enought", for the same reason.
inline constexpr std::u16string_view bufferTooSmall =
    u"The buffersize is not large enought to hold all the data!";
inline constexpr std::u16string_view invalidEncoding = u"Invalid encoding";
inline constexpr std::u16string_view copyNotAllowed = u"Copy not allowed";

} // namespace nu::messages
