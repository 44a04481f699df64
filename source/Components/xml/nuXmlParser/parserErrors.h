#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/runtime/exception.h"

/// \file
/// The exceptions that end a parse, and the texts of the character input.

/// The parse cannot go on; the message says why, the rest where.
class NUXML_API ENuSaxFatalError : public host::Exception {
public:
    /// \param line,column from 1; 0 where it is not known
    explicit ENuSaxFatalError(std::u16string_view message, std::int64_t line = 0,
                              std::int64_t column = 0);
    ENuSaxFatalError(const ENuSaxFatalError&) = default;
    ENuSaxFatalError& operator=(const ENuSaxFatalError&) = default;
    ~ENuSaxFatalError() override;

    /// Where the reader stood, from 1; 0 where that is not known.
    [[nodiscard]] std::int64_t Line() const noexcept { return line_; }
    /// The column to Line, as the parser counts it; -1 where there is none.
    [[nodiscard]] std::int64_t Column() const noexcept { return column_; }
    /// The name of the file as it was opened; empty where it was none.
    [[nodiscard]] const std::u16string& File() const noexcept { return file_; }
    /// For who has opened the file; an exception that has a name keeps it.
    void SetFile(std::u16string_view name);
    /// All of it, as much as is known: "FILE:LINE:COLUMN: MESSAGE", as UTF-8.
    [[nodiscard]] const std::string& Text() const noexcept { return text_; }

private:
    NUXML_LOCAL void makeText();

    std::u16string file_;
    std::int64_t line_;
    std::int64_t column_;
    std::string text_;
};

/// The fault was already reported to the error handler, or a handler wants the parse to stop.
/// The reader swallows it.
class NUXML_API ENuSaxHandledAbort : public host::Exception {
public:
    using Exception::Exception;
    ~ENuSaxHandledAbort() override;
};

namespace nu {

/// "FILE:LINE:COLUMN: ", without what is empty or below 1; nothing if that is all.
[[nodiscard]] NUXML_API std::u16string placeText(std::u16string_view file, std::int64_t line,
                                                 std::int64_t column);

} // namespace nu

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
