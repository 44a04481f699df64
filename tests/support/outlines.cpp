#include "support/outlines.h"

#include <algorithm>
#include <cstring>

#include "common/codePage.h"
#include "host/runtime/unicode.h"
#include "host/sax/SaxHelpers.h"
#include "nuXmlParser.h"

#ifdef NUXML_HAS_EXPAT
#include <expat.h>
#endif

namespace support {

namespace {

/// Writes an outline; text that comes in pieces is one run.
class Writer {
public:
    explicit Writer(Outline& outline) : outline_(outline) {}

    void text(std::string_view piece) { run_ += piece; }
    void line(std::string_view line) {
        if (!run_.empty()) {
            add("T " + run_);
            run_.clear();
        }
        if (!line.empty()) {
            add(line);
        }
    }

private:
    void add(std::string_view line) {
        for (const char c : line) {
            outline_.text += c == '\n' ? std::string("\\n") : std::string(1, c);
        }
        outline_.text += '\n';
    }

    Outline& outline_;
    std::string run_;
};

std::string narrow(std::u16string_view text) { return host::utf16ToUtf8(text); }

class OurHandler final
    : public host::Implements<host::IBufferedContentHandler, host::IBufferedLexicalHandler,
                              host::IErrorHandler> {
public:
    explicit OurHandler(Outline& outline) : outline_(outline), writer_(outline) {}

    void setDocumentLocator(host::ILocator& locator) override { locator_ = &locator; }
    void startDocument() override {}
    void endDocument() override { writer_.line({}); }
    void startPrefixMapping(std::u16string_view, std::u16string_view) override {}
    void endPrefixMapping(std::u16string_view) override {}
    void startElement(std::u16string_view uri, std::u16string_view, std::u16string_view qName,
                      host::IBufferedAttributes& list) override {
        std::string line = "S {" + narrow(NuXMLToStr(uri)) + '}' + narrow(qName);
        const auto strings = host::queryInterface<host::IAttributes>(&list);
        for (host::SAXLength index = 0; index < list.getLength(); ++index) {
            const std::u16string name = strings->getQName(index);
            if (name == u"xmlns" || name.starts_with(u"xmlns:")) {
                continue;
            }
            line += ' ';
            if (name.find(u':') != name.npos) {
                line += '{' + narrow(NuXMLToStr(strings->getURI(index))) + '}';
            }
            line += narrow(name) + '=' + narrow(NuXMLToStr(strings->getValue(index)));
        }
        outline_.startTagLines.push_back(locator_->getLineNumber());
        writer_.line(line);
    }
    void endElement(std::u16string_view, std::u16string_view, std::u16string_view qName) override {
        writer_.line("E " + narrow(qName));
    }
    void characters(std::u16string_view text) override {
        writer_.text(narrow(isCData_ ? std::u16string(text) : NuXMLToStr(text)));
    }
    void ignorableWhitespace(std::u16string_view) override {}
    void processingInstruction(std::u16string_view target, std::u16string_view data) override {
        if (target != u"xml") {
            writer_.line("I " + narrow(target) + ' ' + narrow(data));
        }
    }
    void skippedEntity(std::u16string_view) override {}
    void comment(std::u16string_view text) override { writer_.line("C " + narrow(text)); }
    void startCDATA() override { isCData_ = true; }
    void endCDATA() override { isCData_ = false; }
    void startDTD(std::u16string_view name, std::u16string_view, std::u16string_view) override {
        writer_.line("D " + narrow(name));
    }
    void endDTD() override {}
    void startEntity(std::u16string_view) override {}
    void endEntity(std::u16string_view) override {}
    void warning(host::ISAXParseError& error) override { note(error); }
    void error(host::ISAXParseError& error) override { note(error); }
    void fatalError(host::ISAXParseError& error) override {
        outline_.isWellFormed = false;
        outline_.faultLine = error.getLineNumber();
        outline_.fault = narrow(error.getMessage());
    }

private:
    void note(host::ISAXParseError& error) {
        ++outline_.warnings;
        writer_.line("W " + narrow(error.getMessage()));
    }

    Outline& outline_;
    Writer writer_;
    host::ILocator* locator_ = nullptr;
    bool isCData_ = false;
};

} // namespace

Outline conformingOutline(std::string_view bytes, const TNuConformingOptions& options) {
    Outline outline;
    const auto handler = host::makeRef<OurHandler>(outline);
    TNuSAXXMLReader reader;
    reader.setContentHandler(host::Ref<host::IBufferedContentHandler>(handler.get()));
    reader.setLexicalHandler(host::Ref<host::IBufferedLexicalHandler>(handler.get()));
    reader.setErrorHandler(host::Ref<host::IErrorHandler>(handler.get()));
    reader.SetConforming(options);
    try {
        reader.ParseBytes(bytes);
    } catch (const ENuXmlFault&) {
    } catch (const host::Exception& other) {
        outline.isWellFormed = false;
        outline.fault = std::string("not a fault: ") + other.what();
    }
    return outline;
}

#ifdef NUXML_HAS_EXPAT

namespace {

constexpr char divider = '\x01';

/// "uri\1local\1prefix" as "{uri}prefix:local", the braces for attributes only where there is one.
std::string nameOf(std::string_view triplet, bool isAttribute) {
    const std::size_t first = triplet.find(divider);
    if (first == triplet.npos) {
        return (isAttribute ? "" : "{}") + std::string(triplet);
    }
    const std::string_view rest = triplet.substr(first + 1);
    const std::size_t second = rest.find(divider);
    std::string name = '{' + std::string(triplet.substr(0, first)) + '}';
    if (second != rest.npos) {
        name += std::string(rest.substr(second + 1)) + ':';
    }
    return name + std::string(rest.substr(0, second));
}

struct ExpatRun {
    explicit ExpatRun(Outline& outline) : outline(outline), writer(outline) {}

    Outline& outline;
    Writer writer;
    XML_Parser parser = nullptr;
    bool isUnknownEncoding = false;

    static ExpatRun& of(void* user) { return *static_cast<ExpatRun*>(user); }

    /// A tag in UTF-16 with a byte for each unit, so that no half of one is taken for a line break.
    static std::string narrowed(std::string_view tag) {
        const bool isBigEndian = tag.size() > 1 && tag[0] == '\0';
        if (!isBigEndian && (tag.size() < 2 || tag[1] != '\0')) {
            return std::string(tag);
        }
        std::string units;
        for (std::size_t place = 0; place + 1 < tag.size(); place += 2) {
            const char low = tag[place + (isBigEndian ? 1 : 0)];
            const char high = tag[place + (isBigEndian ? 0 : 1)];
            units += high == '\0' ? low : '?';
        }
        return units;
    }
    /// The line where the tag at hand ends.
    [[nodiscard]] std::int64_t endLine() const {
        int offset = 0;
        int size = 0;
        const char* const context = XML_GetInputContext(parser, &offset, &size);
        const int length = XML_GetCurrentByteCount(parser);
        auto line = static_cast<std::int64_t>(XML_GetCurrentLineNumber(parser));
        if (context == nullptr || offset + length > size) {
            return line;
        }
        const std::string tag = narrowed({context + offset, static_cast<std::size_t>(length)});
        for (std::size_t place = 0; place < tag.size(); ++place) {
            const bool isPair =
                tag[place] == '\r' && place + 1 < tag.size() && tag[place + 1] == '\n';
            line += (tag[place] == '\n' || tag[place] == '\r') && !isPair ? 1 : 0;
        }
        return line;
    }
};

void setHandlers(XML_Parser parser) {
    XML_SetElementHandler(
        parser,
        [](void* user, const char* name, const char** attributes) {
            ExpatRun& run = ExpatRun::of(user);
            std::string line = "S " + nameOf(name, false);
            for (; *attributes != nullptr; attributes += 2) {
                line += ' ' + nameOf(attributes[0], true) + '=' + attributes[1];
            }
            run.outline.startTagLines.push_back(run.endLine());
            run.writer.line(line);
        },
        [](void* user, const char* name) {
            std::string shown = nameOf(name, false);
            ExpatRun::of(user).writer.line("E " + shown.substr(shown.find('}') + 1));
        });
    XML_SetCharacterDataHandler(parser, [](void* user, const char* text, int length) {
        ExpatRun::of(user).writer.text({text, static_cast<std::size_t>(length)});
    });
    XML_SetCommentHandler(parser, [](void* user, const char* text) {
        ExpatRun::of(user).writer.line("C " + std::string(text));
    });
    XML_SetProcessingInstructionHandler(
        parser, [](void* user, const char* target, const char* data) {
            ExpatRun::of(user).writer.line("I " + std::string(target) + ' ' + data);
        });
    XML_SetStartDoctypeDeclHandler(parser,
                                   [](void* user, const char* name, const char*, const char*, int) {
                                       ExpatRun::of(user).writer.line("D " + std::string(name));
                                       // What the subset holds is not told.
                                       ExpatRun& run = ExpatRun::of(user);
                                       XML_SetCommentHandler(run.parser, nullptr);
                                       XML_SetProcessingInstructionHandler(run.parser, nullptr);
                                   });
    XML_SetEndDoctypeDeclHandler(parser,
                                 [](void* user) { setHandlers(ExpatRun::of(user).parser); });
    XML_SetSkippedEntityHandler(parser, [](void* user, const char* name, int isParameter) {
        if (isParameter == 0) {
            const std::u16string reference = host::utf8ToUtf16('&' + std::string(name) + ';');
            ExpatRun::of(user).writer.text(narrow(NuXMLToStr(reference)));
            ++ExpatRun::of(user).outline.warnings;
        }
    });
    XML_SetExternalEntityRefHandler(
        parser,
        [](XML_Parser running, const char* context, const char*, const char*, const char*) -> int {
            // A general entity is referred to as we leave it.
            if (context != nullptr) {
                const std::string_view names(context);
                const std::size_t last = names.rfind('\f');
                std::string name(last == names.npos ? names : names.substr(last + 1));
                const std::u16string reference = host::utf8ToUtf16('&' + name + ';');
                ExpatRun::of(XML_GetUserData(running)).writer.text(narrow(NuXMLToStr(reference)));
            }
            return XML_STATUS_OK;
        });
    XML_SetUnknownEncodingHandler(
        parser,
        [](void* user, const char* name, XML_Encoding* encoding) -> int {
            const std::uint32_t page = NuFindCodePage(name);
            if (page == 0 || page == cNuCodePageUtf8) {
                static_cast<ExpatRun*>(user)->isUnknownEncoding = true;
                return XML_STATUS_ERROR;
            }
            for (int byte = 0; byte < 256; ++byte) {
                const char text = static_cast<char>(byte);
                char16_t unit = 0;
                NuWidenAnsi({&text, 1}, &unit, page);
                encoding->map[byte] = unit == 0xFFFD ? -1 : unit;
            }
            encoding->data = nullptr;
            encoding->convert = nullptr;
            encoding->release = nullptr;
            return XML_STATUS_OK;
        },
        XML_GetUserData(parser));
}

} // namespace

std::optional<Outline> expatOutline(std::string_view bytes, bool hasNamespaces) {
    Outline outline;
    ExpatRun run(outline);
    run.parser = hasNamespaces ? XML_ParserCreateNS(nullptr, divider) : XML_ParserCreate(nullptr);
    XML_SetReturnNSTriplet(run.parser, 1);
    XML_SetUserData(run.parser, &run);
    XML_SetParamEntityParsing(run.parser, XML_PARAM_ENTITY_PARSING_ALWAYS);
    setHandlers(run.parser);
    const bool isGood =
        XML_Parse(run.parser, bytes.data(), static_cast<int>(bytes.size()), 1) == XML_STATUS_OK;
    if (!isGood) {
        outline.isWellFormed = false;
        outline.faultLine = static_cast<std::int64_t>(XML_GetCurrentLineNumber(run.parser));
        outline.fault = XML_ErrorString(XML_GetErrorCode(run.parser));
    }
    run.writer.line({});
    XML_ParserFree(run.parser);
    return run.isUnknownEncoding ? std::nullopt : std::optional(std::move(outline));
}

#endif

} // namespace support
