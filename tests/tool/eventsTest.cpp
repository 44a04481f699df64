#include <gtest/gtest.h>

#include "shell.h"

namespace {

struct Case {
    const char* options;
    const char* document; ///< as printf writes it between apostrophes
    int exitCode;
    const char* output;
};

/// Every event that the reader has, faults aside.
constexpr const char* everything =
    R"(<?pi  data ?><!DOCTYPE a ><a xmlns="d" xmlns:p="u" p:x="1" y=""><!--c--><![CDATA[<]]>t &amp;</a>)";

const Case cases[] = {
    {"--json", everything, 0,
     R"({"event":"startDocument"}
{"event":"processingInstruction","target":"pi","data":" data "}
{"event":"startDTD","name":"a","publicId":"","systemId":""}
{"event":"endProlog"}
{"event":"startPrefixMapping","prefix":"p","uri":"u"}
{"event":"startElement","uri":"d","localName":"a","qName":"a","attributes":[{"qName":"xmlns","localName":"","uri":"","value":"d"},{"qName":"xmlns:p","localName":"p","uri":"","value":"u"},{"qName":"p:x","localName":"x","uri":"u","value":"1"},{"qName":"y","localName":"y","uri":"d","value":""}]}
{"event":"comment","text":"c"}
{"event":"startCDATA"}
{"event":"characters","text":"<"}
{"event":"endCDATA"}
{"event":"characters","text":"t &amp;"}
{"event":"endElement","uri":"d","localName":"a","qName":"a"}
{"event":"endDocument"}
)"},
    {"", everything, 0,
     R"(startDocument
processingInstruction  pi  data 
startDTD               a
endProlog
startPrefixMapping     p u
startElement           a xmlns="d" xmlns:p="u" p:x="1" y="" {d}
comment                "c"
startCDATA
characters             "<"
endCDATA
characters             "t &amp;"
endElement             a {d}
endDocument
)"},
    // Positions; a fault that does not end the parse is no failure.
    {"--json --positions", "<a>\\n <p:b/>x</a>", 0,
     R"({"event":"startDocument","line":1,"column":1}
{"event":"endProlog","line":1,"column":1}
{"event":"startElement","uri":"","localName":"a","qName":"a","attributes":[],"line":1,"column":3}
{"event":"warning","message":"There is no NamespaceURI for the prefix \"p\"!","line":2,"column":7}
{"event":"startElement","uri":"","localName":"b","qName":"p:b","attributes":[],"line":2,"column":7}
{"event":"endElement","uri":"","localName":"b","qName":"p:b","line":2,"column":7}
{"event":"characters","text":"x","line":2,"column":10}
{"event":"endElement","uri":"","localName":"a","qName":"a","line":2,"column":13}
{"event":"endDocument","line":2,"column":13}
)"},
    {"--positions", "<a><b />", 0,
     R"(      1:1     startDocument
      1:1     endProlog
      1:3     startElement           a
      1:7     warning                The XML document is not wellformed! A space after an element indicates that there are attributes.
      1:7     startElement           b
      1:7     endElement             b
      1:8     endDocument
)"},
    // In pieces every character is a column, what is looked at counts twice, and the end is one
    // more.
    {"--large --positions", "<a>\\n<b/></a>", 0,
     R"(      1:1     startDocument
      1:2     endProlog
      1:4     startElement           a
      2:5     startElement           b
      2:5     endElement             b
      2:10    endElement             a
      2:11    endDocument
)"},
    // The last line where the parse ends with an exception.
    {"--json", "<!ELEMENT x ><p:a b=\"", 3,
     R"({"event":"startDocument"}
{"event":"error","message":"<!DOCTYPE expected, but <!DLEMENT found!","line":1,"column":9}
{"event":"startDTD","name":"x","publicId":"","systemId":""}
{"event":"endProlog"}
{"event":"exception","class":"ENuSaxFatalError","message":"Unexpected EOF"}
)"},
    {"", "<r><a b=\"1", 3,
     R"(startDocument
endProlog
startElement           r
fatalError             1:10: Unexptected End Of Document! A quote to mark the start of an attribute value was expected!
exception              ENuSaxFatalError: Unexptected End Of Document! A quote to mark the start of an attribute value was expected!
)"},
    // A fatal error counts although the reader returns, and one of the decoder has no place.
    {"--json", "no markup", 3,
     R"({"event":"fatalError","message":"The sourcestream does not contain XML or is not positioned at the beginning of an XML block!","line":1,"column":0}
)"},
    {"--json --positions", R"(\376\377\0<\0a\0>)", 3,
     R"({"event":"fatalError","message":"Invalid encoding","line":-1,"column":-1}
{"event":"exception","class":"ENuSaxHandledAbort","message":""}
)"},
    // What cannot stand in a string of JSON or in a line for people; a pair of surrogates and
    // halves of one.
    {"--json", R"(<?xml utf-8?><a>"\\\t\001\b\f\r\n/\177\302\205é漢😀</a>)", 0,
     "{\"event\":\"startDocument\"}\n"
     "{\"event\":\"processingInstruction\",\"target\":\"xml\",\"data\":\"utf-8\"}\n"
     "{\"event\":\"endProlog\"}\n"
     "{\"event\":\"startElement\",\"uri\":\"\",\"localName\":\"a\",\"qName\":\"a\",\"attributes\":["
     "]}\n"
     "{\"event\":\"characters\",\"text\":\"\\\"\\\\\\t\\u0001\\b\\f\\r\\n/\x7F\xC2\x85é漢😀\"}\n"
     "{\"event\":\"endElement\",\"uri\":\"\",\"localName\":\"a\",\"qName\":\"a\"}\n"
     "{\"event\":\"endDocument\"}\n"},
    {"", R"(<?xml utf-8?><a>"\\\t\001\r\n/\177\302\205\342\200\256é漢😀</a>)", 0,
     R"(startDocument
processingInstruction  xml utf-8
endProlog
startElement           a
characters             ""\\\t\u0001\r\n/\u007F\u0085\u202Eé漢😀"
endElement             a
endDocument
)"},
    {"--json", R"(\377\376<\0a\0>\0=\330x\0=\330\0\336\0\336<\0/\0a\0>\0)", 0,
     R"({"event":"startDocument"}
{"event":"endProlog"}
{"event":"startElement","uri":"","localName":"a","qName":"a","attributes":[]}
{"event":"characters","text":"\uD83Dx😀\uDE00"}
{"event":"endElement","uri":"","localName":"a","qName":"a"}
{"event":"endDocument"}
)"},
};

TEST(Events, AreWrittenOneALine) {
    for (const Case& expected : cases) {
        const std::string line = "printf '" + std::string(expected.document) +
                                 "' | nuxml events --raw " + expected.options;
        SCOPED_TRACE(line);
        const ShellResult result = runShell(line);
        EXPECT_EQ(result.exitCode, expected.exitCode);
        EXPECT_EQ(result.output, expected.output);
        EXPECT_EQ(result.errors.empty(), expected.exitCode == 0) << result.errors;
    }
}

// A pair that falls between two batches of the writer, and text longer than its buffer.
TEST(Events, KeepLongText) {
    const ShellResult result = runShell(
        "{ printf '<a utf-8=\"\">'; for i in 1 2 3; do printf %s . ; head -c 90000 /dev/zero | "
        "sed 's/\\x00/😀é/g'; done; printf '</a>'; } >long.xml; sed 's/<[^>]*>//g' long.xml "
        ">text; nuxml events --json long.xml | sed -n '4{s/.*text\":\"//;s/\"}$//;p}' | "
        "head -c -1 | cmp - text && echo same");
    EXPECT_EQ(result.output, "same\n") << result.errors;
}

// Input without a size, 72 MB of it, in less memory than that; the sanitizers need more.
TEST(Events, OfLongInputNeedLittleMemory) {
    const std::string limit = std::string_view(NUXML_SANITIZE).empty() ? "ulimit -v 120000; " : "";
    const ShellResult result = runShell(
        "{ printf '<a>'; yes \"$(printf '%065536d' 0)<b/>\" | head -n 1100; printf '</a>'; } | "
        "{ " +
        limit + "nuxml events; } | tail -n 2");
    EXPECT_EQ(result.output, "endElement             a\nendDocument\n") << result.errors;
}

TEST(Events, OfTheExampleDrawNoFault) {
    EXPECT_EQ(runShell("nuxml events library.xml | grep -E '^(warning|error|fatal)'").output, "");
}

} // namespace
