#include <libxml/SAX2.h>
#include <libxml/entities.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <memory>
#include <stdexcept>

#include "peers/narrow.h"
#include "peers/peer.h"
#include "peers/textRun.h"

namespace bench {

namespace {

std::size_t lengthOf(const xmlChar* text) {
    return text == nullptr ? 0 : static_cast<std::size_t>(xmlStrlen(text));
}

struct Examination {
    Tally tally;
    TextRun text;

    void endRun() { tally.units += text.finish(); }
};

using Context = std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)>;

[[noreturn]] void raise(const Context& context) {
    const xmlError* const error = xmlCtxtGetLastError(context.get());
    throw std::runtime_error(error != nullptr ? error->message : "libxml2 fails");
}

void parse(std::string_view text, const xmlSAXHandler& handler, void* user) {
    const Context context(xmlCreateMemoryParserCtxt(text.data(), static_cast<int>(text.size())),
                          xmlFreeParserCtxt);
    *context->sax = handler;
    context->sax->initialized = XML_SAX2_MAGIC;
    context->userData = user;
    // Without this option inputs of more than 10 MB may be refused.
    xmlCtxtUseOptions(context.get(), XML_PARSE_HUGE);
    if (xmlParseDocument(context.get()) != 0 || context->wellFormed == 0) {
        raise(context);
    }
}

// Attributes come as five pointers each: local name, prefix, URI, begin and end of the value.
void countStart(void* user, const xmlChar* localName, const xmlChar* prefix, const xmlChar* uri,
                int, const xmlChar**, int attributeCount, int, const xmlChar** attributes) {
    auto& tally = *static_cast<Tally*>(user);
    ++tally.elements;
    tally.units += lengthOf(localName) + lengthOf(prefix) + lengthOf(uri);
    for (int index = 0; index < attributeCount; ++index, attributes += 5) {
        ++tally.attributes;
        tally.units += lengthOf(attributes[0]) + lengthOf(attributes[1]) + lengthOf(attributes[2]) +
                       static_cast<std::size_t>(attributes[4] - attributes[3]);
    }
}

void countEnd(void* user, const xmlChar* localName, const xmlChar* prefix, const xmlChar* uri) {
    static_cast<Tally*>(user)->units += lengthOf(localName) + lengthOf(prefix) + lengthOf(uri);
}

void countText(void* user, const xmlChar*, int length) {
    static_cast<Tally*>(user)->units += static_cast<std::size_t>(length);
}

xmlSAXHandler countingHandler() {
    xmlSAXHandler handler{};
    handler.startElementNs = countStart;
    handler.endElementNs = countEnd;
    handler.characters = countText;
    handler.ignorableWhitespace = countText;
    handler.cdataBlock = countText;
    return handler;
}

xmlSAXHandler examiningHandler() {
    xmlSAXHandler handler{};
    handler.startElementNs = [](void* user, const xmlChar*, const xmlChar*, const xmlChar*,
                                int namespaceCount, const xmlChar**, int attributeCount, int,
                                const xmlChar**) {
        auto& examination = *static_cast<Examination*>(user);
        examination.endRun();
        ++examination.tally.elements;
        examination.tally.attributes += static_cast<std::size_t>(namespaceCount + attributeCount);
    };
    handler.endElementNs = [](void* user, const xmlChar*, const xmlChar*, const xmlChar*) {
        static_cast<Examination*>(user)->endRun();
    };
    handler.characters = [](void* user, const xmlChar* text, int length) {
        static_cast<Examination*>(user)->text.add(std::string_view(
            reinterpret_cast<const char*>(text), static_cast<std::size_t>(length)));
    };
    handler.ignorableWhitespace = handler.characters;
    handler.comment = [](void* user, const xmlChar*) { static_cast<Examination*>(user)->endRun(); };
    handler.processingInstruction = [](void* user, const xmlChar*, const xmlChar*) {
        static_cast<Examination*>(user)->endRun();
    };
    return handler;
}

const bool readerRegistered = addReader({"libxml2",
                                         [](std::string_view text) -> Run {
                                             return [text] {
                                                 Tally tally;
                                                 parse(text, countingHandler(), &tally);
                                                 return tally;
                                             };
                                         },
                                         [](std::string_view text) {
                                             Examination examination;
                                             parse(text, examiningHandler(), &examination);
                                             return examination.tally;
                                         }});

/// The library's own form of text; what a call answers is freed by it.
std::vector<std::string> utf8Of(const Pieces& pieces) {
    std::vector<std::string> result;
    for (const std::u16string& piece : pieces) {
        result.push_back(narrow(piece));
    }
    return result;
}

template <typename Convert>
std::size_t convertEach(const std::vector<std::string>& texts, Convert convert) {
    std::size_t length = 0;
    for (const std::string& text : texts) {
        xmlChar* const result = convert(reinterpret_cast<const xmlChar*>(text.c_str()));
        length += lengthOf(result);
        xmlFree(result);
    }
    return length;
}

Conversion prepareEscape(const Pieces& pieces) {
    return [texts = utf8Of(pieces)] {
        return convertEach(
            texts, [](const xmlChar* text) { return xmlEncodeSpecialChars(nullptr, text); });
    };
}

Conversion prepareUnescape(const Pieces& pieces) {
    return [texts = utf8Of(pieces)] {
        const Context context(xmlNewParserCtxt(), xmlFreeParserCtxt);
        // Without this option many references look like an attack.
        xmlCtxtUseOptions(context.get(), XML_PARSE_HUGE);
        const std::size_t length = convertEach(texts, [&](const xmlChar* text) {
            return xmlStringDecodeEntities(context.get(), text, XML_SUBSTITUTE_REF, 0, 0, 0);
        });
        if (context->errNo != XML_ERR_OK) {
            raise(context);
        }
        return length;
    };
}

const bool converterRegistered = addConverter({"libxml2", prepareEscape, prepareUnescape});

} // namespace

} // namespace bench
