#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "host/runtime/stream.h"
#include "host/sax/BSax.h"
#include "host/sax/BSaxExt.h"
#include "nuXmlParser/baseParser.h"
#include "nuXmlParser/conforming/conformingOptions.h"
#include "nuXmlParser/conforming/sourceForm.h"
#include "nuXmlParser/limits.h"
#include "nuXmlSax/attributes.h"
#include "nuXmlSax/events.h"
#include "nuXmlSax/features.h"
#include "nuXmlSax/namespaceList.h"
#include "nuXmlSax/spaceStack.h"

class ENuXmlFault;

namespace nu {
class ConformingSupply;
class DirectContent;
class PlainEvents;
template <class Source> class SaxScanner;
} // namespace nu

/// Which character source a reader takes.
enum class TNuSaxParserChoice : std::uint8_t {
    BySize,      ///< the large-stream parser from TNuSAXXMLReader::largeStreamSize bytes on
    SmallStream, ///< always TNuXmlSmallStreamParser
    LargeStream, ///< always TNuXmlLargeStreamParser
};

/// The SAX2 reader: reads an XML document in one pass and reports it to a content, a lexical and an
/// error handler, or, where a handler is not set, to the events of TNuSAXReaderEvents.
///
/// It is namespace-aware, does not validate and forgives much: most faults are warnings and the
/// parse goes on. References are not expanded, a document type is not read beyond its name, end
/// tags are not matched with start tags. Names, values and text reach the handlers as spans of the
/// parse buffer, valid during the call.
///
/// One parse runs at a time, on the caller's thread. A reader can be used again, also after a
/// failed parse. Deliberate: its element depth is not reset, so a parse that stopped inside
/// elements leaves its count for the next one, which then also reports text outside the root.
class NUXML_API TNuSAXXMLReader : public host::IBufferedXMLReader, public TNuSAXReaderEvents {
public:
    /// The size in bytes from which on a stream is read with the large-stream parser.
    static constexpr std::int64_t largeStreamSize = 0x2000000;

    TNuSAXXMLReader();
    TNuSAXXMLReader(const TNuSAXXMLReader&) = delete;
    TNuSAXXMLReader& operator=(const TNuSAXXMLReader&) = delete;
    virtual ~TNuSAXXMLReader();
    /// A reader that lives as long as somebody holds it; one made otherwise belongs to its maker.
    /// It stays to the end of a parse in any case.
    [[nodiscard]] static host::Ref<TNuSAXXMLReader> CreateCounted();
    /// Whether it is one of CreateCounted, which goes with its last reference.
    [[nodiscard]] bool IsCounted() const noexcept { return isCounted_; }

    /// The character source of the next parse. The whole size of a stream decides, wherever it
    /// stands, unless something else is chosen; with a choice the size is not asked for, so that a
    /// stream without one can be read.
    [[nodiscard]] TNuSaxParserChoice ParserChoice() const noexcept { return parserChoice_; }
    /// Takes effect with the next parse. See ParserChoice.
    void SetParserChoice(TNuSaxParserChoice choice) noexcept { parserChoice_ = choice; }

    /// Puts the conforming stage in front of every parse from the next one on: the document is read
    /// as the XML standard means it. A fault of the document is told to the error handler as a
    /// fatal error with its place in the source and thrown as ENuXmlFault, whatever came before it
    /// having been reported; with cfPassOn it is an error and the parse goes on. ParseFragment is
    /// left as it is.
    ///
    /// White space counts as the options say, without regard to xml:space where they say cwAll.
    /// Prefixes are then compared exactly, "xml" needs no declaration, comments and instructions
    /// keep their control characters.
    void SetConforming(const TNuConformingOptions& options) { conforming_ = options; }
    /// Leaves the reader to its own rules again, as it was made.
    void ClearConforming() noexcept { conforming_.reset(); }
    /// The options that SetConforming set; nothing where the reader keeps to its own rules.
    [[nodiscard]] const std::optional<TNuConformingOptions>& Conforming() const noexcept {
        return conforming_;
    }
    /// What the conforming stage found out about the source of the last parse.
    [[nodiscard]] const TNuSourceForm& SourceForm() const noexcept { return sourceForm_; }
    /// Whether what is being parsed comes through the stage that SetConforming asked for.
    [[nodiscard]] bool IsBehindStage() const noexcept { return isBehindStage_; }

    /// What the documents of the next parses may ask for.
    [[nodiscard]] const TNuSaxLimits& Limits() const noexcept { return limits_; }
    /// Sets all limits at once, from the next parse on. A document that asks for more ends with
    /// ENuSaxFatalError.
    void SetLimits(const TNuSaxLimits& limits) noexcept;

    /// Parses the rest of the stream from its position. With `ownsStream` the stream is destroyed
    /// at the end, however the parse ends. A stream in memory is read in
    /// place: it must stay unchanged during the parse. A stream of 32 MiB and more is read in
    /// pieces, by TNuXmlLargeStreamParser, whose differences show in columns and at the end of
    /// faulty documents.
    ///
    /// Throws ENuSaxFatalError for a fatal fault. Any other exception, also of a handler, is told
    /// to the error handler as a fatal error without a place, and ENuSaxHandledAbort with an empty
    /// message is thrown. ENuSaxHandledAbort from a handler ends the parse quietly.
    void Parse(host::TStream* stream, bool ownsStream = false);
    /// The same for a stream that stays the caller's.
    void Parse(host::TStream& stream) { Parse(&stream); }
    /// Parses the file of that name if there is one and the text does not begin with "<"; otherwise
    /// the text itself. Throws host::EFileOpenError for a file that cannot be opened.
    void Parse(std::u16string_view textOrFileName) override;
    /// Always throws host::ESAXNotSupportedException.
    void Parse(const host::Ref<host::IInputSource>& source) override;
    void Parse(std::nullptr_t) = delete;
    /// Parses a file. Throws host::EFileOpenError when it cannot be opened.
    void ParseFile(const std::filesystem::path& path);
    /// Parses bytes in memory, without a copy of them, so they must stay unchanged meanwhile:
    /// UTF-8, UTF-16 with a mark, or 8-bit text.
    void ParseBytes(std::string_view bytes);
    /// Parses what may stand between the tags of an element: text counts from the first character
    /// on. It counts as one level deep whatever came before, and leaves the depth as it was.
    void ParseFragment(std::u16string_view text);

    [[nodiscard]] bool getFeature(std::u16string_view name) override;
    void setFeature(std::u16string_view name, bool value) override;
    /// "http://xml.org/sax/properties/lexical-handler", letter case ignored; its value is an
    /// interface. Throws host::ESAXNotSupportedException for any other name.
    [[nodiscard]] host::Ref<host::IProperty> getProperty(std::u16string_view name) override;

    [[nodiscard]] host::Ref<host::IBufferedContentHandler> getContentHandler() override;
    void setContentHandler(const host::Ref<host::IBufferedContentHandler>& handler) override;
    /// The handler that was set; an empty handle without one.
    [[nodiscard]] host::Ref<host::IBufferedLexicalHandler> getLexicalHandler();
    /// Sets who receives comments, CDATA borders and the document type; an empty handle for the
    /// events of this reader.
    void setLexicalHandler(const host::Ref<host::IBufferedLexicalHandler>& handler);
    [[nodiscard]] host::Ref<host::IErrorHandler> getErrorHandler() override;
    void setErrorHandler(const host::Ref<host::IErrorHandler>& handler) override;
    /// Always empty; setting one throws host::ESAXNotSupportedException.
    [[nodiscard]] host::Ref<host::IBufferedDTDHandler> getDTDHandler() override { return {}; }
    void setDTDHandler(const host::Ref<host::IBufferedDTDHandler>& handler) override;
    [[nodiscard]] host::Ref<host::IEntityResolver> getEntityResolver() override { return {}; }
    void setEntityResolver(const host::Ref<host::IEntityResolver>& resolver) override;

    /// The declarations in scope; what they hold is valid during a parse.
    [[nodiscard]] const TNuSaxNamespaceList& Namespaces() const noexcept { return namespaces_; }

    /// \cond internal
    /// Lets somebody take plain content from the bytes themselves; the handlers get the rest.
    void setDirectContent(nu::DirectContent* content) noexcept { directContent_ = content; }
    /// \endcond

    // Faults, with the line and column of `source`.
    /// Tells the error handler a warning.
    void Warning(TNuXmlBaseParser& source, std::u16string_view message);
    /// Tells the error handler an error; the parse goes on.
    void Error(TNuXmlBaseParser& source, std::u16string_view message);
    /// Reports the fault and throws ENuSaxFatalError with the same message.
    [[noreturn]] void FatalError(TNuXmlBaseParser& source, std::u16string_view message);
    /// Reports the end of the document and throws ENuSaxFatalError "Abort".
    [[noreturn]] void RaiseEOF(TNuXmlBaseParser& source);

    // host::IUnknown
    host::ResultCode QueryInterface(const host::InterfaceId& id, void** object) noexcept override;
    std::int32_t _AddRef() noexcept override;
    std::int32_t _Release() noexcept override;

private:
    friend class nu::PlainEvents;
    template <class Source> friend class nu::SaxScanner;

    NUXML_LOCAL void parse(std::unique_ptr<host::TStream> owned, host::TStream* stream,
                           bool isFragment);
    NUXML_LOCAL void installDefaultHandlers();
    NUXML_LOCAL void parseDocument(std::unique_ptr<host::TStream> owned, host::TStream* stream);
    NUXML_LOCAL void parseBehindStage(host::TStream& stream);
    NUXML_LOCAL void parseInMemory(host::TStream& stream);
    NUXML_LOCAL bool parseInOnePass(host::TStream& stream);
    NUXML_LOCAL bool takeInOnePass(host::TStream& stream);
    NUXML_LOCAL bool tellInOnePass(host::TStream& stream);
    NUXML_LOCAL bool readInOnePass(host::TStream& stream);
    NUXML_LOCAL bool parseWhole(host::TStream& stream);
    NUXML_LOCAL void parseInBlocks(host::TStream& stream);
    NUXML_LOCAL void enterStage();
    NUXML_LOCAL void leaveStage() noexcept;
    NUXML_LOCAL void tellFault(const ENuXmlFault& fault,
                               void (host::IErrorHandler::*tell)(host::ISAXParseError& error));
    [[nodiscard]] NUXML_LOCAL bool isLarge(host::TStream* stream) const;
    NUXML_LOCAL void scanSmall(std::unique_ptr<host::TStream> owned, host::TStream* stream);
    NUXML_LOCAL void scanLarge(std::unique_ptr<host::TStream> owned, host::TStream* stream);
    NUXML_LOCAL void scanChecked(host::TStream& stream, nu::ConformingSupply& stage);
    template <class Source> void scan(Source* newSource, std::unique_ptr<host::TStream> owned);
    [[noreturn]] NUXML_LOCAL void reportForeignException();
    NUXML_LOCAL void finishParse();
    template <class Interface>
    void replaceHandler(host::Ref<Interface>& place, const host::Ref<Interface>& handler);
    template <class Handler, class Interface>
    void installDefault(host::Ref<Interface>& place, host::Ref<TNuSAXHandler>& made);
    template <class Interface>
    static void takeDefault(host::Ref<Interface>& place, host::Ref<TNuSAXHandler>& made) noexcept;
    /// The list of the last tag if nobody else holds it, a new one otherwise.
    [[gnu::always_inline]] TNuSAXAttributes& freshAttributes() {
        if (attributes_ && attributes_->RefCount() == 1) {
            attributes_->Clear();
        } else {
            attributes_ = new TNuSAXAttributes(*this);
        }
        return *attributes_;
    }

    host::Ref<host::IBufferedContentHandler> contentHandler_;
    host::Ref<host::IBufferedLexicalHandler> lexicalHandler_;
    host::Ref<host::IErrorHandler> errorHandler_;
    // Made for the parse that runs, where none was set.
    host::Ref<TNuSAXHandler> defaultContent_;
    host::Ref<TNuSAXHandler> defaultLexical_;
    host::Ref<TNuSAXHandler> defaultError_;

    TNuSaxFeatures features_;
    TNuSaxNamespaceList namespaces_;
    nu::SpaceStack space_;
    std::int32_t depth_ = 0;
    TNuSaxLimits limits_;
    /// Characters of a tag that is too short to exceed the limits of names and attributes.
    std::size_t harmlessLength_ = std::numeric_limits<std::size_t>::max();
    bool isFragment_ = false;
    nu::DirectContent* directContent_ = nullptr;
    TNuSaxParserChoice parserChoice_ = TNuSaxParserChoice::BySize;
    std::optional<TNuConformingOptions> conforming_;
    TNuSourceForm sourceForm_;
    bool isBehindStage_ = false;
    nu::ConformingSupply* stage_ = nullptr; ///< in a parse that checks and takes in one pass
    nu::SpaceStack::Always spaceKept_ = nu::SpaceStack::Always::Nothing;
    host::Ref<TNuSAXAttributes> attributes_;

    bool isParsing_ = false;
    /// Handlers replaced during a parse: one may be replaced by its own callback.
    std::vector<host::Ref<host::IUnknown>> replacedHandlers_;

    std::atomic<std::int32_t> referenceCount_ = 0;
    bool isCounted_ = false;
};
