#include <expat.h>

#include <cstring>
#include <memory>
#include <stdexcept>

#include "peers/peer.h"
#include "peers/textRun.h"

namespace bench {

namespace {

struct Examination {
    Tally tally;
    TextRun text;

    void endRun() { tally.units += text.finish(); }
};

void parse(std::string_view text, void* user, void (*setHandlers)(XML_Parser)) {
    const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(
        XML_ParserCreateNS(nullptr, '|'), XML_ParserFree);
    XML_SetUserData(parser.get(), user);
    setHandlers(parser.get());
    if (XML_Parse(parser.get(), text.data(), static_cast<int>(text.size()), 1) != XML_STATUS_OK) {
        throw std::runtime_error(XML_ErrorString(XML_GetErrorCode(parser.get())));
    }
}

void setCountingHandlers(XML_Parser parser) {
    XML_SetElementHandler(
        parser,
        [](void* user, const XML_Char* name, const XML_Char** attributes) {
            auto& tally = *static_cast<Tally*>(user);
            ++tally.elements;
            tally.units += std::strlen(name);
            for (; *attributes != nullptr; attributes += 2) {
                ++tally.attributes;
                tally.units += std::strlen(attributes[0]) + std::strlen(attributes[1]);
            }
        },
        [](void* user, const XML_Char* name) {
            static_cast<Tally*>(user)->units += std::strlen(name);
        });
    XML_SetCharacterDataHandler(parser, [](void* user, const XML_Char*, int length) {
        static_cast<Tally*>(user)->units += static_cast<std::size_t>(length);
    });
}

void setExaminingHandlers(XML_Parser parser) {
    XML_SetElementHandler(
        parser,
        [](void* user, const XML_Char*, const XML_Char** attributes) {
            auto& examination = *static_cast<Examination*>(user);
            examination.endRun();
            ++examination.tally.elements;
            for (; *attributes != nullptr; attributes += 2) {
                ++examination.tally.attributes;
            }
        },
        [](void* user, const XML_Char*) { static_cast<Examination*>(user)->endRun(); });
    XML_SetStartNamespaceDeclHandler(parser, [](void* user, const XML_Char*, const XML_Char*) {
        ++static_cast<Examination*>(user)->tally.attributes;
    });
    XML_SetCharacterDataHandler(parser, [](void* user, const XML_Char* data, int length) {
        static_cast<Examination*>(user)->text.add(
            std::string_view(data, static_cast<std::size_t>(length)));
    });
    XML_SetCommentHandler(
        parser, [](void* user, const XML_Char*) { static_cast<Examination*>(user)->endRun(); });
    XML_SetProcessingInstructionHandler(parser, [](void* user, const XML_Char*, const XML_Char*) {
        static_cast<Examination*>(user)->endRun();
    });
}

const bool registered = addReader({"expat",
                                   [](std::string_view text) -> Run {
                                       return [text] {
                                           Tally tally;
                                           parse(text, &tally, setCountingHandlers);
                                           return tally;
                                       };
                                   },
                                   [](std::string_view text) {
                                       Examination examination;
                                       parse(text, &examination, setExaminingHandlers);
                                       return examination.tally;
                                   },
                                   [](std::string_view text) {
                                       parse(text, nullptr, [](XML_Parser) {});
                                       return text.size();
                                   }});

} // namespace

} // namespace bench
