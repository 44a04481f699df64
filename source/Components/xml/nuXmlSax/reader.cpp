#include "nuXmlSax/reader.h"

#include <algorithm>
#include <exception>
#include <limits>
#include <memory>
#include <typeinfo>
#include <utility>

#include "common/caseFolding.h"
#include "common/stringStream.h"
#include "host/com/implements.h"
#include "host/runtime/fileStream.h"
#include "host/runtime/format.h"
#include "host/runtime/memoryStream.h"
#include "host/sax/SaxHelpers.h"
#include "nuXmlParser/conforming/conformingStream.h"
#include "nuXmlParser/conforming/conformingSupply.h"
#include "nuXmlParser/largeStreamParser.h"
#include "nuXmlParser/parserErrors.h"
#include "nuXmlParser/smallStreamParser.h"
#include "nuXmlSax/eventHandlers.h"
#include "nuXmlSax/messages.h"
#include "nuXmlSax/properties.h"
#include "nuXmlSax/scanAttributes.h"
#include "nuXmlSax/scanDocument.h"
#include "nuXmlSax/scanElement.h"
#include "nuXmlSax/scanMarkup.h"
#include "nuXmlSax/scanPlain.h"

namespace {

constexpr std::u16string_view lexicalHandlerProperty =
    u"http://xml.org/sax/properties/lexical-handler";

/// Frees a character source, with its stream, before anything else happens to the parse.
struct ParserFreer {
    void operator()(TNuXmlBaseParser* parser) const { parser->Free(); }
};
/// Tells that a parse is running, however it ends.
class ParsingMark {
public:
    explicit ParsingMark(bool& isParsing) noexcept : isParsing_(isParsing) { isParsing_ = true; }
    ParsingMark(const ParsingMark&) = delete;
    ParsingMark& operator=(const ParsingMark&) = delete;
    ~ParsingMark() { isParsing_ = false; }

private:
    bool& isParsing_;
};

/// Text that stays in the nearer caches from its decoding to its last use.
constexpr std::size_t windowLength = 32 * 1024;

/// A fault as handlers hear of it, at the place that the source has come to.
host::Ref<host::TSAXParseError> faultAt(TNuXmlBaseParser& source, std::u16string_view message) {
    return host::makeRef<host::TSAXParseError>(message, u"", u"", source.LineNumber(),
                                               source.ColumnNumber());
}

template <class Source> using OwnedParser = std::unique_ptr<Source, ParserFreer>;

} // namespace

TNuSAXXMLReader::TNuSAXXMLReader() = default;
TNuSAXXMLReader::~TNuSAXXMLReader() = default;

host::Ref<TNuSAXXMLReader> TNuSAXXMLReader::CreateCounted() {
    auto* reader = new TNuSAXXMLReader;
    reader->isCounted_ = true;
    return {reader};
}

void TNuSAXXMLReader::SetLimits(const TNuSaxLimits& limits) noexcept {
    constexpr std::size_t shortestAttribute = 4; // a=""
    limits_ = limits;
    const std::size_t harmlessCount =
        std::min(limits.Attributes, std::numeric_limits<std::size_t>::max() / shortestAttribute);
    harmlessLength_ = std::min(limits.NameLength, harmlessCount * shortestAttribute);
}

void TNuSAXXMLReader::Parse(host::TStream* stream, bool ownsStream) {
    parse(std::unique_ptr<host::TStream>(ownsStream ? stream : nullptr), stream, false);
}

void TNuSAXXMLReader::parse(std::unique_ptr<host::TStream> owned, host::TStream* stream,
                            bool isFragment) {
    if (isParsing_) {
        throw host::ESAXException(nu::messages::alreadyParsing);
    }
    // A counted reader stays to the end of the parse, although the last reference may go meanwhile.
    const host::Ref<TNuSAXXMLReader> self(isCounted_ ? this : nullptr);
    const ParsingMark mark(isParsing_);

    // 1. Whoever listens to the start can still set handlers.
    if (OnStart) {
        OnStart(*this);
    }
    namespaces_.Clear();
    installDefaultHandlers();

    // 2. The parse proper. What leaves it is kept until everything is in order again.
    const std::int32_t depthBefore = depth_;
    isFragment_ = isFragment;
    if (isFragment) {
        depth_ = 1;
    }
    std::exception_ptr failure;
    try {
        try {
            parseDocument(std::move(owned), stream);
        } catch (const ENuSaxHandledAbort&) {
            // Deliberate: swallowed here, while a foreign exception leaves as an abort. Whoever
            // raises an abort has already told what there was to tell.
        } catch (const ENuXmlFault& fault) {
            // The stage knows nobody to tell.
            tellFault(fault, &host::IErrorHandler::fatalError);
            throw;
        } catch (const ENuSaxFatalError&) {
            throw;
        } catch (...) {
            reportForeignException();
        }
    } catch (...) {
        failure = std::current_exception();
    }

    // 3. Always: only what the application has set stays, and the depth that documents leave.
    if (isFragment) {
        depth_ = depthBefore;
    }
    finishParse();
    if (failure) {
        std::rethrow_exception(failure);
    }
}

void TNuSAXXMLReader::Parse(std::u16string_view textOrFileName) {
    if (!textOrFileName.starts_with(cNuLt) && host::fileExists(textOrFileName)) {
        auto file = std::make_unique<host::TFileStream>(textOrFileName,
                                                        host::fmOpenRead | host::fmShareDenyNone);
        Parse(file.release(), true);
    } else {
        auto text = std::make_unique<TNuStringStream>(textOrFileName);
        Parse(text.release(), true);
    }
}

void TNuSAXXMLReader::Parse(const host::Ref<host::IInputSource>& /*source*/) {
    throw host::ESAXNotSupportedException(nu::messages::inputSourceNotSupported);
}

void TNuSAXXMLReader::ParseFile(const std::filesystem::path& path) {
    host::TFileStream file(path, host::fmOpenRead | host::fmShareDenyNone);
    Parse(&file);
}

void TNuSAXXMLReader::ParseBytes(std::string_view bytes) {
    host::TMemoryViewStream stream(bytes);
    Parse(&stream);
}

void TNuSAXXMLReader::ParseFragment(std::u16string_view text) {
    // The NUL ends the text: a character that is the last one of the input would be lost.
    auto stream = std::make_unique<TNuStringStream>(NuXmlString(text) + u'\0');
    TNuStringStream* const fragment = stream.get();
    parse(std::move(stream), fragment, true);
}

void TNuSAXXMLReader::parseDocument(std::unique_ptr<host::TStream> owned, host::TStream* stream) {
    if (conforming_ && !isFragment_ && stream != nullptr) {
        parseBehindStage(*stream);
    } else if (isLarge(stream)) {
        scanLarge(std::move(owned), stream);
    } else {
        scanSmall(std::move(owned), stream);
    }
}

bool TNuSAXXMLReader::isLarge(host::TStream* stream) const {
    // Nobody knows the size of what the stage gives.
    if (stream != nullptr && typeid(*stream) == typeid(TNuConformingStream)) {
        return true;
    }
    // A NUL, which ends a fragment, is text to the large-stream parser.
    return !isFragment_ && (parserChoice_ == TNuSaxParserChoice::LargeStream ||
                            (parserChoice_ == TNuSaxParserChoice::BySize && stream != nullptr &&
                             stream->GetSize() >= largeStreamSize));
}

void TNuSAXXMLReader::scanLarge(std::unique_ptr<host::TStream> owned, host::TStream* stream) {
    scan(new TNuXmlLargeStreamParser(stream, false, errorHandler_), std::move(owned));
}

void TNuSAXXMLReader::scanSmall(std::unique_ptr<host::TStream> owned, host::TStream* stream) {
    scan(new TNuXmlSmallStreamParser(stream, false, errorHandler_, windowLength,
                                     directContent_ != nullptr),
         std::move(owned));
}

/// The stage checks what is read as it is read.
void TNuSAXXMLReader::scanChecked(host::TStream& stream, nu::ConformingSupply& stage) {
    scan(new TNuXmlSmallStreamParser(&stream, errorHandler_, windowLength, stage), nullptr);
}

/// The stream goes with the character source, or with the caller's if that could not be made: in
/// any case before anybody is told of a fault in it.
template <class Source>
void TNuSAXXMLReader::scan(Source* newSource, std::unique_ptr<host::TStream> owned) {
    OwnedParser<Source> source(newSource);
    if (owned) {
        source->AdoptStream();
        static_cast<void>(owned.release());
    }
    nu::SaxScanner<Source>(*this, *source).scanDocument();
}

template <class Handler, class Interface>
void TNuSAXXMLReader::installDefault(host::Ref<Interface>& place, host::Ref<TNuSAXHandler>& made) {
    if (!place) {
        const auto handler = host::makeRef<Handler>(*this);
        place = handler.get();
        made = handler.get();
    }
}

void TNuSAXXMLReader::installDefaultHandlers() {
    installDefault<TNuSAXContentHandler>(contentHandler_, defaultContent_);
    installDefault<TNuSAXLexicalHandler>(lexicalHandler_, defaultLexical_);
    installDefault<TNuSaxErrorHandler>(errorHandler_, defaultError_);
}

/// Turns an exception that is none of the reader's into a report and an abort. Call it inside a
/// catch block.
void TNuSAXXMLReader::reportForeignException() {
    const auto error =
        host::makeRef<host::TSAXParseError>(host::currentExceptionMessage(), u"", u"", -1, -1);
    if (errorHandler_) {
        errorHandler_->fatalError(*error);
    }
    throw ENuSaxHandledAbort(u"");
}

/// Deliberate: a handler that the application put in place of a default one during the parse goes
/// too.
template <class Interface>
void TNuSAXXMLReader::takeDefault(host::Ref<Interface>& place,
                                  host::Ref<TNuSAXHandler>& made) noexcept {
    if (made) {
        made->leaveReader();
        made.reset();
        place.reset();
    }
}

void TNuSAXXMLReader::finishParse() {
    namespaces_.Clear();
    leaveStage();
    takeDefault(contentHandler_, defaultContent_);
    takeDefault(lexicalHandler_, defaultLexical_);
    takeDefault(errorHandler_, defaultError_);
    replacedHandlers_.clear();
    if (OnFinished) {
        OnFinished(*this);
    }
}

bool TNuSAXXMLReader::getFeature(std::u16string_view name) {
    const std::optional<bool> value = features_.Get(name);
    if (!value) {
        throw host::ESAXNotSupportedException(
            host::formatMessage(nu::messages::notSupported, {name}));
    }
    return *value;
}

void TNuSAXXMLReader::setFeature(std::u16string_view name, bool value) {
    features_.Set(name, value);
}

host::Ref<host::IProperty> TNuSAXXMLReader::getProperty(std::u16string_view name) {
    if (!NuEqualFolded(name, lexicalHandlerProperty)) {
        throw host::ESAXNotSupportedException(
            host::formatMessage(nu::messages::notSupported, {name}));
    }
    return host::makeRef<TNuSaxIntfProperty>(*this, name, lexicalHandler_);
}

host::Ref<host::IBufferedContentHandler> TNuSAXXMLReader::getContentHandler() {
    return contentHandler_;
}

void TNuSAXXMLReader::setContentHandler(const host::Ref<host::IBufferedContentHandler>& handler) {
    replaceHandler(contentHandler_, handler);
}

host::Ref<host::IBufferedLexicalHandler> TNuSAXXMLReader::getLexicalHandler() {
    return lexicalHandler_;
}

void TNuSAXXMLReader::setLexicalHandler(const host::Ref<host::IBufferedLexicalHandler>& handler) {
    replaceHandler(lexicalHandler_, handler);
}

host::Ref<host::IErrorHandler> TNuSAXXMLReader::getErrorHandler() { return errorHandler_; }

void TNuSAXXMLReader::setErrorHandler(const host::Ref<host::IErrorHandler>& handler) {
    replaceHandler(errorHandler_, handler);
}

void TNuSAXXMLReader::setDTDHandler(const host::Ref<host::IBufferedDTDHandler>& /*handler*/) {
    throw host::ESAXNotSupportedException(nu::messages::dtdHandlersNotSupported);
}

void TNuSAXXMLReader::setEntityResolver(const host::Ref<host::IEntityResolver>& /*resolver*/) {
    throw host::ESAXNotSupportedException(nu::messages::entityResolversNotSupported);
}

template <class Interface>
void TNuSAXXMLReader::replaceHandler(host::Ref<Interface>& place,
                                     const host::Ref<Interface>& handler) {
    const host::Ref<host::IUnknown> former(place);
    if (isParsing_ && former &&
        std::find(replacedHandlers_.begin(), replacedHandlers_.end(), former) ==
            replacedHandlers_.end()) {
        replacedHandlers_.push_back(former);
    }
    place = handler;
}

void TNuSAXXMLReader::Warning(TNuXmlBaseParser& source, std::u16string_view message) {
    if (errorHandler_) {
        errorHandler_->warning(*faultAt(source, message));
    }
}

void TNuSAXXMLReader::Error(TNuXmlBaseParser& source, std::u16string_view message) {
    if (errorHandler_) {
        errorHandler_->error(*faultAt(source, message));
    }
}

void TNuSAXXMLReader::FatalError(TNuXmlBaseParser& source, std::u16string_view message) {
    if (errorHandler_) {
        errorHandler_->fatalError(*faultAt(source, message));
    }
    throw ENuSaxFatalError(message, source.LineNumber(), source.ColumnNumber());
}

void TNuSAXXMLReader::RaiseEOF(TNuXmlBaseParser& source) {
    if (errorHandler_) {
        errorHandler_->fatalError(*faultAt(source, nu::messages::endOfDocument));
    }
    throw ENuSaxFatalError(nu::messages::abort, source.LineNumber(), source.ColumnNumber());
}

host::ResultCode TNuSAXXMLReader::QueryInterface(const host::InterfaceId& id,
                                                 void** object) noexcept {
    *object = host::findInterface<host::IBufferedXMLReader>(this, id);
    if (*object == nullptr) {
        return host::resultNoInterface;
    }
    _AddRef();
    return host::resultOk;
}

std::int32_t TNuSAXXMLReader::_AddRef() noexcept {
    return referenceCount_.fetch_add(1, std::memory_order_relaxed) + 1;
}

std::int32_t TNuSAXXMLReader::_Release() noexcept {
    const std::int32_t left = referenceCount_.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (left == 0 && isCounted_) {
        delete this;
    }
    return left;
}
