#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "common/utf8.h"
#include "host/runtime/unicode.h"
#include "host/sax/SaxHelpers.h"
#include "nuXmlParser/unescape.h"
#include "nuXmlSax.h"

#ifdef NUXML_HAS_EXPAT
#include <expat.h>
#endif
#ifdef NUXML_HAS_LIBXML2
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#endif

namespace {

/// What any parser tells of a document, in a form that they share: text between tags that is all
/// white space is left out, and white space in comments and instructions.
class Outline {
public:
    void text(std::string_view piece) { run_ += piece; }
    void line(const std::string& line) {
        if (isCData_ || run_.find_first_not_of(" \t\n") != run_.npos) {
            lines_ += "T " + run_ + '\n';
        }
        run_.clear();
        isCData_ = line == "CDATA";
        lines_ += line + '\n';
    }
    void squeezed(std::string line) {
        std::erase_if(line, [](char unit) { return unit == ' ' || unit == '\n' || unit == '\t'; });
        this->line(line);
    }
    [[nodiscard]] const std::string& lines() const { return lines_; }

private:
    std::string lines_;
    std::string run_;
    bool isCData_ = false;
};

/// Ours; with namespaces elements show their URI and declarations come before other attributes.
class OurOutline final : public host::TBufferedDefaultHandler {
public:
    explicit OurOutline(bool withNamespaces) : withNamespaces_(withNamespaces) {}
    Outline outline;

    void startElement(std::u16string_view uri, std::u16string_view, std::u16string_view qName,
                      host::IBufferedAttributes& list) override {
        std::string declarations;
        std::string others;
        const auto strings = host::queryInterface<host::IAttributes>(&list);
        for (host::SAXLength index = 0; index < list.getLength(); ++index) {
            const std::u16string name = strings->getQName(index);
            const std::string value = host::utf16ToUtf8(NuXMLToStr(strings->getValue(index)));
            (withNamespaces_ && name.starts_with(u"xmlns") ? declarations : others) +=
                ' ' + host::utf16ToUtf8(name) + '=' + value;
        }
        outline.line("S " + name(uri, qName) + declarations + others);
    }
    void endElement(std::u16string_view uri, std::u16string_view,
                    std::u16string_view qName) override {
        outline.line("E " + name(uri, qName));
    }
    void characters(std::u16string_view text) override {
        outline.text(host::utf16ToUtf8(isCData_ ? std::u16string(text) : NuXMLToStr(text)));
    }
    void processingInstruction(std::u16string_view target, std::u16string_view data) override {
        if (target != u"xml") {
            outline.squeezed("I " + host::utf16ToUtf8(target) + host::utf16ToUtf8(data));
        }
    }
    void comment(std::u16string_view text) override {
        outline.squeezed("C " + host::utf16ToUtf8(text));
    }
    void startCDATA() override {
        isCData_ = true;
        outline.line("CDATA");
    }
    void endCDATA() override {
        isCData_ = false;
        outline.line("end");
    }

private:
    [[nodiscard]] std::string name(std::u16string_view uri, std::u16string_view qName) const {
        return (withNamespaces_ ? '{' + host::utf16ToUtf8(uri) + '}' : "") +
               host::utf16ToUtf8(qName);
    }
    bool withNamespaces_;
    bool isCData_ = false;
};

std::string ourLines(const std::string& document, bool withNamespaces) {
    const auto handler = host::makeRef<OurOutline>(withNamespaces);
    TNuSAXXMLReader reader;
    reader.setContentHandler(host::Ref<host::IBufferedContentHandler>(handler.get()));
    reader.setLexicalHandler(host::Ref<host::IBufferedLexicalHandler>(handler.get()));
    reader.ParseBytes(document);
    return handler->outline.lines();
}

#ifdef NUXML_HAS_EXPAT

/// Without namespaces; empty for a document that is rejected.
std::string expatLines(const std::string& document) {
    Outline outline;
    static constexpr auto self = [](void* user) -> Outline& {
        return *static_cast<Outline*>(user);
    };
    XML_Parser parser = XML_ParserCreate(nullptr);
    XML_SetUserData(parser, &outline);
    XML_SetElementHandler(
        parser,
        [](void* user, const char* name, const char** attributes) {
            std::string line = "S " + std::string(name);
            for (; *attributes != nullptr; attributes += 2) {
                line += ' ' + std::string(attributes[0]) + '=' + attributes[1];
            }
            self(user).line(line);
        },
        [](void* user, const char* name) { self(user).line("E " + std::string(name)); });
    XML_SetCharacterDataHandler(parser, [](void* user, const char* text, int length) {
        self(user).text({text, static_cast<std::size_t>(length)});
    });
    XML_SetCdataSectionHandler(
        parser, [](void* user) { self(user).line("CDATA"); },
        [](void* user) { self(user).line("end"); });
    XML_SetCommentHandler(parser, [](void* user, const char* text) {
        self(user).squeezed("C " + std::string(text));
    });
    XML_SetProcessingInstructionHandler(parser,
                                        [](void* user, const char* target, const char* data) {
                                            self(user).squeezed("I " + std::string(target) + data);
                                        });
    const auto size = static_cast<int>(document.size());
    const bool isGood = XML_Parse(parser, document.data(), size, 1) == XML_STATUS_OK;
    XML_ParserFree(parser);
    return isGood ? outline.lines() : "";
}

#endif
#ifdef NUXML_HAS_LIBXML2

std::string narrow(const xmlChar* text) {
    return text == nullptr ? "" : reinterpret_cast<const char*>(text);
}

std::string nameOf(const xmlChar* prefix, const xmlChar* localName) {
    return (prefix == nullptr ? "" : narrow(prefix) + ':') + narrow(localName);
}

/// With namespaces; empty for a document that is rejected.
std::string libxml2Lines(const std::string& document) {
    Outline outline;
    static constexpr auto self = [](void* user) -> Outline& {
        return *static_cast<Outline*>(user);
    };
    xmlSAXHandler handler{};
    handler.initialized = XML_SAX2_MAGIC;
    handler.startElementNs = [](void* user, const xmlChar* localName, const xmlChar* prefix,
                                const xmlChar* uri, int declared, const xmlChar** declarations,
                                int count, int, const xmlChar** attributes) {
        std::string line = "S {" + narrow(uri) + '}' + nameOf(prefix, localName);
        for (; declared > 0; --declared, declarations += 2) {
            line += " xmlns" + (declarations[0] == nullptr ? "" : ':' + narrow(declarations[0])) +
                    '=' + narrow(declarations[1]);
        }
        for (; count > 0; --count, attributes += 5) {
            line += ' ' + nameOf(attributes[1], attributes[0]) + '=' +
                    std::string(attributes[3], attributes[4]);
        }
        self(user).line(line);
    };
    handler.endElementNs = [](void* user, const xmlChar* localName, const xmlChar* prefix,
                              const xmlChar* uri) {
        self(user).line("E {" + narrow(uri) + '}' + nameOf(prefix, localName));
    };
    handler.characters = [](void* user, const xmlChar* text, int length) {
        self(user).text({reinterpret_cast<const char*>(text), static_cast<std::size_t>(length)});
    };
    handler.ignorableWhitespace = handler.characters;
    handler.cdataBlock = [](void* user, const xmlChar* text, int length) {
        self(user).line("CDATA");
        self(user).text({reinterpret_cast<const char*>(text), static_cast<std::size_t>(length)});
        self(user).line("end");
    };
    handler.comment = [](void* user, const xmlChar* text) {
        self(user).squeezed("C " + narrow(text));
    };
    handler.processingInstruction = [](void* user, const xmlChar* target, const xmlChar* data) {
        self(user).squeezed("I " + narrow(target) + narrow(data));
    };
    xmlParserCtxtPtr context =
        xmlCreateMemoryParserCtxt(document.data(), static_cast<int>(document.size()));
    *context->sax = handler;
    context->userData = &outline;
    xmlCtxtUseOptions(context, XML_PARSE_NOENT | XML_PARSE_NONET | XML_PARSE_HUGE);
    const bool isGood = xmlParseDocument(context) == 0;
    xmlFreeParserCtxt(context);
    return isGood ? outline.lines() : "";
}

#endif

bool isBreak(char unit) { return unit == '\n' || unit == '\t'; }

/// The length of the comment, CDATA section, instruction or document type that `text` begins with;
/// 0 where it begins with none, `npos` where it is one that is read in another way.
std::size_t lengthOfOther(std::string_view text) {
    static constexpr std::array<std::array<std::string_view, 2>, 4> forms = {
        {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}, {"<!DOCTYPE ", ">"}}};
    for (const auto& [open, close] : forms) {
        if (text.starts_with(open)) {
            const std::size_t end = text.find(close, open.size());
            const std::string_view body = text.substr(open.size(), end - open.size());
            const std::size_t nameEnd = body.find_first_of(" \n\t");
            const bool isOddType =
                body.find('[') != body.npos || nameEnd == body.npos || isBreak(body[nameEnd]);
            const bool isOdd = (open == "<?" && body.find('?') != body.npos) ||
                               (open == "<!DOCTYPE " && isOddType);
            return isOdd ? text.npos : end + close.size();
        }
    }
    return 0;
}

/// Whether a well-formed document avoids what this reader deliberately reads in another way:
/// apostrophes around values, line breaks in names and values, spaces around "=" and in end tags,
/// references that only a document type explains, and a ">" right behind a tag.
bool isComparable(std::string_view text) {
    for (const std::string_view unwanted : {"\r", ">>", "xml:space", "ISO-"}) {
        if (text.find(unwanted) != text.npos) {
            return false;
        }
    }
    bool isTag = false;
    bool isValue = false;
    for (std::size_t place = 0; place < text.size(); ++place) {
        const std::string_view rest = text.substr(place);
        const char unit = rest[0];
        const char before = place == 0 ? ' ' : text[place - 1];
        if (unit == '&') {
            const std::string_view name = rest.substr(0, rest.find(';') + 1);
            if (name != "&amp;" && name != "&lt;" && name != "&gt;" && name != "&quot;" &&
                name != "&apos;") {
                return false;
            }
        }
        if (isValue) {
            isValue = unit != '"';
            if (isBreak(unit)) {
                return false;
            }
        } else if (isTag) {
            const bool isInName =
                isBreak(unit) && before != '"' && before != ' ' && !isBreak(before);
            const bool isLoose = unit == '=' && (before == ' ' || !rest.starts_with("=\""));
            if (unit == '\'' || isInName || isLoose) {
                return false;
            }
            isValue = unit == '"';
            isTag = unit != '>';
        } else if (unit == '<') {
            const std::size_t other = lengthOfOther(rest);
            if (other == rest.npos || (rest.starts_with("</") && rest.find(' ') < rest.find('>'))) {
                return false;
            }
            isTag = other == 0;
            place += isTag ? 0 : other - 1;
        }
    }
    return true;
}

/// All documents of a folder, up to a number and a size.
std::vector<std::filesystem::path> documentsIn(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> found;
    std::error_code failure;
    for (std::filesystem::recursive_directory_iterator
             place(folder, std::filesystem::directory_options::skip_permission_denied, failure),
         end;
         !failure && place != end && found.size() < 1000; place.increment(failure)) {
        std::error_code unreadable;
        if (place->path().extension() == ".xml" && place->is_regular_file(unreadable) &&
            place->file_size(unreadable) < 2'000'000) {
            found.push_back(place->path());
        }
    }
    std::sort(found.begin(), found.end());
    return found;
}

/// Compares the documents of a folder and gives the number of comparisons.
int compareDocuments(const std::filesystem::path& folder) {
    int compared = 0;
    const auto compare = [&](auto& path, const std::string& actual, const std::string& expected) {
        if (!expected.empty()) {
            EXPECT_EQ(actual, expected) << path;
            ++compared;
        }
    };
    for (const std::filesystem::path& path : documentsIn(folder)) {
        std::ifstream file(path, std::ios::binary);
        const std::string document{std::istreambuf_iterator<char>(file), {}};
        if (!document.empty() && NuIsUtf8(document) && isComparable(document)) {
#ifdef NUXML_HAS_EXPAT
            compare(path, ourLines(document, false), expatLines(document));
#endif
#ifdef NUXML_HAS_LIBXML2
            compare(path, ourLines(document, true), libxml2Lines(document));
#endif
        }
    }
    return compared;
}

TEST(Reader, tellsWhatOtherParsersTell) {
#if !defined(NUXML_HAS_EXPAT) && !defined(NUXML_HAS_LIBXML2)
    GTEST_SKIP() << "neither expat nor libxml2 is installed";
#endif
    EXPECT_GE(compareDocuments(NUXML_TEST_DATA), 2);
    static_cast<void>(compareDocuments(NUXML_EXAMPLES_DATA));
}

TEST(Reader, tellsWhatOtherParsersTellOfTheMachinesDocuments) {
    const int compared = compareDocuments("/usr/share");
    if (compared == 0) {
        GTEST_SKIP() << "no document to compare in /usr/share";
    }
    std::printf("%d comparisons\n", compared);
}

} // namespace
