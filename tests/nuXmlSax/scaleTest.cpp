#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>

#include "host/sax/SaxHelpers.h"
#include "nuXmlSax.h"

namespace {

/// Adds up what it is told.
struct Sum final : host::TBufferedDefaultHandler {
    std::size_t elements = 0;
    std::size_t attributes = 0;
    std::size_t text = 0;
    std::size_t uris = 0;
    std::size_t faults = 0;

    void startElement(std::u16string_view uri, std::u16string_view, std::u16string_view,
                      host::IBufferedAttributes& list) override {
        ++elements;
        uris += uri.size();
        attributes += static_cast<std::size_t>(list.getLength());
    }
    void characters(std::u16string_view run) override { text += run.size(); }
    void comment(std::u16string_view run) override { text += run.size(); }
    void warning(host::ISAXParseError&) override { ++faults; }
};

std::string repeated(std::size_t count, const std::function<std::string(std::size_t)>& piece) {
    std::string result;
    for (std::size_t index = 0; index < count; ++index) {
        result += piece(index);
    }
    return result;
}

/// Parses on a thread, whose stack has the usual 8 MiB also where the main thread's has no limit.
void parse(const std::string& document, Sum& sum) {
    std::thread([&] {
        TNuSAXXMLReader reader;
        reader.setContentHandler(host::Ref<host::IBufferedContentHandler>(&sum));
        reader.setLexicalHandler(host::Ref<host::IBufferedLexicalHandler>(&sum));
        reader.setErrorHandler(host::Ref<host::IErrorHandler>(&sum));
        reader.ParseBytes(document);
    }).join();
}

TEST(Scale, takesDocumentsOfAnyShape) {
    using std::to_string;
    constexpr std::size_t many = 100'000;
    constexpr std::size_t million = 1'000'000;
    struct Case {
        std::string_view name;
        std::string document;
        std::size_t elements, attributes, text, uris;
    };
    const std::string longText(20 * million, 'x');
    const auto declaration = [](std::size_t index) {
        return " xmlns:p" + to_string(index) + "=\"u\"";
    };
    for (const Case& item : {
             Case{"deep",
                  repeated(million, [](auto) { return "<a>"; }) + "t" +
                      repeated(million, [](auto) { return "</a>"; }),
                  million, 0, 1, 0},
             Case{"never closed", repeated(million, [](auto) { return "<a>"; }) + "<b/>",
                  million + 1, 0, 0, 0},
             Case{
                 "attributes",
                 "<a" +
                     repeated(many, [](auto index) { return " b" + to_string(index) + "=\"1\""; }) +
                     "/>",
                 1, many, 0, 0},
             Case{"declarations side by side", "<p0:a" + repeated(many, declaration) + "/>", 1,
                  many, 0, 1},
             Case{"declarations nested",
                  repeated(many,
                           [&](auto index) {
                               return "<p" + to_string(index / 2) + ":a" + declaration(index) + ">";
                           }) +
                      "</a>",
                  many, many, 0, many},
             Case{"hidden declarations",
                  repeated(many, [](auto) { return "<p:a xmlns:p=\"u\">"; }) + "<p:b/>", many + 1,
                  many, 0, many + 1},
             Case{"text", "<a>" + longText + "</a>", 1, 0, longText.size(), 0},
             Case{"comment", "<a><!--" + longText + "--></a>", 1, 0, longText.size(), 0},
             Case{"CDATA", "<a><![CDATA[" + longText + "]]></a>", 1, 0, longText.size(), 0},
             Case{"value", "<a b=\"" + longText + "\"/>", 1, 1, 0, 0},
             Case{"name", "<" + longText + "/>", 1, 0, 0, 0},
             // Each of these tags is not plain, which must not cost the rest of the text each time.
             Case{"odd tags", repeated(many, [](auto) { return "<a\n b=\"\n\"\n/>"; }), many, many,
                  0, 0},
         }) {
        const auto sum = host::makeRef<Sum>();
        parse(item.document, *sum);
        EXPECT_EQ(sum->elements, item.elements) << item.name;
        EXPECT_EQ(sum->attributes, item.attributes) << item.name;
        EXPECT_EQ(sum->text, item.text) << item.name;
        EXPECT_EQ(sum->uris, item.uris) << item.name;
        EXPECT_EQ(sum->faults, 0U) << item.name;
    }
}

} // namespace
