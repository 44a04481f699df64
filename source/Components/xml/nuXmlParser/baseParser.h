#pragma once

#include <atomic>
#include <cstdint>

#include "host/runtime/stream.h"
#include "host/sax/Sax.h"
#include "nuXmlParser/chars.h"

/// The source forms that a character source can decode.
enum TNuXmlBaseParserCharType { ctANSI, ctWIDE, ctUTF8 };

/// The character source of a reader: turns a byte stream into UTF-16 units, hands them out one by
/// one with a look-ahead, and counts lines and columns. It is the SAX locator of the parse.
///
/// Columns count calls: the first character of the input is column 1, a line feed that is read with
/// ReadRawChar is column 1 of the line it opens. Only the line feed ends a line.
///
/// The object counts its references and keeps one to itself, so that handing out the locator never
/// frees it. Free() ends that: the stream and the text are gone at once, the object with its last
/// reference.
class NUXML_API TNuXmlBaseParser : public host::ILocator {
public:
    TNuXmlBaseParser(const TNuXmlBaseParser&) = delete;
    TNuXmlBaseParser& operator=(const TNuXmlBaseParser&) = delete;
    virtual ~TNuXmlBaseParser();

    /// The position in bytes; each parser says in what.
    virtual std::int64_t GetStreamPos();
    /// Text before the current character is no longer needed; gives the start of the buffer.
    virtual PNuXmlChar ResetBuffer() = 0;
    /// Delivers the next character whatever it is.
    /// Throws ENuSaxFatalError "Unexpected EOF" after the last one, as ReadXmlChar does.
    virtual PNuXmlChar ReadRawChar() = 0;
    /// Delivers the next character from U+0020 on and drops all before it.
    virtual PNuXmlChar ReadXmlChar() = 0;
    /// The next character from U+0020 on, without moving.
    virtual PNuXmlChar PeekXmlChar() = 0;
    /// As PeekXmlChar; two units can be read through the pointer where the text has two.
    virtual PNuXmlChar PeekCardinal() = 0;
    /// As PeekXmlChar; one unit can be read through the pointer.
    virtual PNuXmlChar PeekWord() = 0;
    /// The character most recently delivered.
    [[nodiscard]] virtual PNuXmlChar CurrChar() const = 0;

    /// Reports the fault with the current line and column to the error handler and then, unless the
    /// handler itself throws, throws ENuSaxHandledAbort "Abort". Never returns.
    [[noreturn]] void RaiseFatalError(std::u16string_view message);

    /// The stream that characters come from; null once it was released.
    [[nodiscard]] host::TStream* SourceStream() const noexcept { return sourceStream_; }
    /// Whether the stream goes with the parser.
    [[nodiscard]] bool OwnsStream() const noexcept { return ownsStream_; }
    /// Who is told of fatal faults; valid as long as the parser.
    [[nodiscard]] host::IErrorHandler* ErrorHandler() const noexcept { return errorHandler_.get(); }
    /// Whether the last character has been delivered.
    [[nodiscard]] bool Eof() const noexcept { return eof_; }
    /// The current line, 1-based.
    [[nodiscard]] std::int64_t LineNumber();
    /// The current column.
    [[nodiscard]] std::int64_t ColumnNumber();
    /// The number of character reads so far.
    [[nodiscard]] std::int64_t CharCount();

    // host::ILocator
    host::ResultCode QueryInterface(const host::InterfaceId& id, void** object) noexcept override;
    std::int32_t _AddRef() noexcept override;
    std::int32_t _Release() noexcept override;
    host::SAXString getPublicId() override { return {}; }
    host::SAXString getSystemId() override { return {}; }
    std::int64_t getLineNumber() override { return LineNumber(); }
    std::int64_t getColumnNumber() override { return ColumnNumber(); }

    /// From now on the stream belongs to the parser.
    void AdoptStream() noexcept { ownsStream_ = true; }
    /// Releases the text and, if owned, the stream, and drops the object's reference to itself.
    /// Only for parsers made with new.
    void Free();

protected:
    /// Checks and stores its arguments. The most derived constructor calls Initialize.
    /// Throws host::ESAXException when the handler or the stream is missing; the stream then still
    /// belongs to the caller, afterwards it is freed here if owned.
    TNuXmlBaseParser(host::TStream* sourceStream, bool ownsStream,
                     const host::Ref<host::IErrorHandler>& errorHandler);

    /// Sets the counters to the start; each subclass calls it first.
    virtual void Initialize();
    /// Brings the counters up to the current character; a parser that counts as it reads needs
    /// none.
    virtual void updateCounters();
    /// Gives the decoded text back; called once, before the stream goes.
    virtual void releaseText() noexcept = 0;

    /// Throws ENuSaxFatalError "Unexpected EOF", without telling the handler.
    [[noreturn]] void raiseUnexpectedEof();
    /// For subclasses: what the counting getters give from now on.
    void setCounters(std::int64_t line, std::int64_t column, std::int64_t charCount) noexcept;

    bool eof_ = false; ///< for subclasses: the end has been delivered

private:
    NUXML_LOCAL void releaseStream() noexcept;

    host::TStream* sourceStream_;
    bool ownsStream_;
    host::Ref<host::IErrorHandler> errorHandler_;
    std::int64_t lineNumber_ = 1;
    std::int64_t columnNumber_ = 0;
    std::int64_t charCount_ = 0;
    std::atomic<std::int32_t> referenceCount_ = 1;
};
