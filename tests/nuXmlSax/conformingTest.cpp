#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "common/utf8.h"
#include "host/runtime/memoryStream.h"
#include "nuXmlParser.h"
#include "nuXmlSax.h"
#include "support/eventTrace.h"
#include "support/outlines.h"

using namespace std::string_literals;

namespace {

/// Gives at most so many bytes at once, and claims whatever size it likes.
class Trickle final : public host::TStream {
public:
    Trickle(std::string bytes, std::size_t step) : bytes_(std::move(bytes)), step_(step) {}
    std::int64_t claimedSize = 0;
    std::size_t failsAt = static_cast<std::size_t>(-1);

    std::size_t Read(void* buffer, std::size_t count) override {
        if (place_ >= failsAt) {
            throw host::EReadError(u"broken source");
        }
        const std::size_t got =
            bytes_.copy(static_cast<char*>(buffer), std::min(count, step_), place_);
        place_ += got;
        return got;
    }
    std::size_t Write(const void*, std::size_t) override { return 0; }
    std::int64_t Seek(std::int64_t offset, host::SeekOrigin origin) override {
        if (origin == host::SeekOrigin::End) {
            return claimedSize;
        }
        place_ = static_cast<std::size_t>(origin == host::SeekOrigin::Current
                                              ? static_cast<std::int64_t>(place_) + offset
                                              : offset);
        return static_cast<std::int64_t>(place_);
    }

private:
    std::string bytes_;
    std::size_t step_;
    std::size_t place_ = 0;
};

/// What a stage gives, without its mark, or "LINE:COLUMN message".
std::string drain(host::TStream& source, const TNuConformingOptions& options = {}) {
    std::string text;
    try {
        TNuConformingStream stage(source, options);
        char block[1000];
        while (const std::size_t got = stage.Read(block, sizeof block)) {
            text.append(block, got);
        }
    } catch (const ENuXmlFault& fault) {
        return std::to_string(fault.Line()) + ':' + std::to_string(fault.Column()) + ' ' +
               NuToUtf8(fault.Message());
    }
    return text.substr(3);
}

std::string staged(const std::string& bytes, const TNuConformingOptions& options = {}) {
    host::TMemoryViewStream source{std::string_view(bytes)};
    return drain(source, options);
}

struct Row {
    std::string document;
    std::string result;
};

constexpr auto subset = [](std::string_view declarations, std::string_view root) {
    return "<!DOCTYPE a [" + std::string(declarations) + "]>" + std::string(root);
};

TEST(Conforming, writesWhatTheReaderReadsAsItIsMeant) {
    const std::vector<Row> rows = {
        // Tags
        {"<a b='1'/>", "<a b=\"1\"/>"},
        {"<a b='\"'/>", "<a b=\"&quot;\"/>"},
        {"<a b = \"1\" />", "<a b=\"1\" />"},
        {"<a\nb\r\n=\n\"1\"/>", "<a \nb=\"1\"\n\n/>"},
        {"<a\tb=\"1\"/>", "<a b=\"1\"/>"},
        {"<a b=\"1\"\n\tc=\"2\"\r/>", "<a b=\"1\"\n\tc=\"2\"\n/>"},
        {"<a ></a >", "<a></a>"},
        {"<a\n></a\r\n>", "<\na><\n/a>"},
        {"<a b='x\ny\tz\r\n'/>", "<a b=\"x y z \"\n\n/>"},
        // References
        {"<a b=\"&#128512;&#65;&#32;\">&#128512;&#65;&lt;</a>", "<a b=\"😀&#65; \">😀&#65;&lt;</a>"},
        // Text
        {"<a>>x</a>", "<a>&gt;x</a>"},
        {"<a>x\r\ny\rz</a>", "<a>x\ny\nz</a>"},
        {"<a> <b/>\n\t<c/>\n</a>", "<a>&#32;<b/>\n&#9;<c/>&#10;<\n/a>"},
        // Other markup
        {"<a><!-- -\n->x--></a>", "<a><!-- - ->x--><\n/a>"},
        {"<a><?p\n \td?></a>", "<a><?p d?><\n/a>"},
        {"<a><![CDATA[x]\n]>]]></a>", "<a><![CDATA[x]]]><![CDATA[\n]>]]></a>"},
        {"<?xml version='1.0'\nencoding='utf-8'?><a/>",
         "<?xml version=\"1.0\" encoding=\"utf-8\"?><\na/>"},
        {"<!DOCTYPE a><a/>", "<!DOCTYPE a ><a/>"},
        {"<!DOCTYPE\na\nSYSTEM\n'<'><a/>", "<!DOCTYPE a >\n\n\n<a/>"},
        // Declarations
        {subset("\n<!ENTITY e 'x<b>y\n</b>&#38;#60;'>\n", "<a>&e;</a>"),
         "<!DOCTYPE a >\n\n\n<a>x<b>y&#10;</b>&#60;</a>"},
        {subset("<!ENTITY e '&#34;\t'>", "<a b='&e;'/>"), "<!DOCTYPE a ><a b=\"&quot; \"/>"},
        {subset("<!ATTLIST a b NMTOKENS ' x  y ' c CDATA #IMPLIED>", "<a c=' z '/>"),
         "<!DOCTYPE a ><a c=\" z \" b=\"x y\"/>"},
        {subset("<!ATTLIST a xmlnsfoo CDATA '&#65;' xmlns CDATA '&#65;'>", "<a/>"),
         "<!DOCTYPE a ><a xmlnsfoo=\"&#65;\" xmlns=\"A\"/>"},
        {subset("<!ATTLIST a b ID #IMPLIED>", "<a b='  1 &#32; 2 '/>"),
         "<!DOCTYPE a ><a b=\"1 2\"/>"},
        {subset("<!ENTITY % p '<!ENTITY e \"1\"><!ENTITY e \"2\">'>%p;", "<a>&e;&f;</a>"),
         "<!DOCTYPE a ><a>1&f;</a>"},
        {subset("<!ENTITY % p SYSTEM 'x'>%p;<!ENTITY e '1'>", "<a>&e;</a>"),
         "<!DOCTYPE a ><a>&e;</a>"},
        {"<!DOCTYPE a SYSTEM 'x'><a>&nbsp;</a>", "<!DOCTYPE a SYSTEM 'x'><a>&nbsp;</a>"},
        // Encodings
        {"<?xml version=\"1.0\" encoding=\"windows-1251\"?><a>\xE4</a>",
         "<?xml version=\"1.0\" encoding=\"UTF-8\"?><a>д</a>"},
        {"<?xml version=\"1.0\" encoding=\"EUC-JP\"?><a>\xB4\xC1</a>",
         "<?xml version=\"1.0\" encoding=\"UTF-8\"?><a>漢</a>"},
        {"\xFE\xFF\0<\0a\0/\0>"s, "<a/>"},
        {"<\0a\0/\0>\0"s, "<a/>"},
        {"\0\0\xFE\xFF\0\0\0<\0\0\0a\0\0\0/\0\0\0>"s, "<a/>"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(staged(row.document), row.result) << row.document;
    }
}

TEST(Conforming, refusesWithAPlace) {
    const std::vector<Row> rows = {
        {"", "1:1 the document has no root element"},
        {"x<a/>", "1:1 text is not allowed before the root element"},
        {"<a/><b/>", "1:5 only comments and processing instructions may follow the root element"},
        {"<a>\n<b>", "2:4 the element \"b\" is not closed"},
        {"<a>\r\r\n</b>", "3:1 the end tag does not match the start tag \"a\" (line 1)"},
        {"<a x=\"1\" x=\"2\"/>", "1:10 the attribute \"x\" stands twice"},
        {"<a x=\"1\"y=\"2\"/>", "1:9 white space is missing before an attribute, after \"x\""},
        {"<a x=1/>", "1:6 the value of an attribute must stand in quotes"},
        {"<a x=\"<\"/>", "1:7 \"<\" is not allowed in an attribute value"},
        {"<é ü=\"1\"", "1:9 the tag is not closed"},
        {"<a>😀]]></a>", "1:6 \"]]>\" is not allowed in text"},
        {"<a><!-- -- --></a>", "1:9 \"--\" is not allowed in a comment"},
        {"<a>&x;</a>", "1:4 the entity \"x\" is not declared"},
        {"<a>& </a>", "1:4 \"&\" must be written as \"&amp;\" where it begins no reference"},
        {"<a>&#0;</a>", "1:4 a reference to a character that XML does not allow, \"&#0;\""},
        {"<a>\x01</a>", "1:4 a character that XML does not allow (U+0001)"},
        {"<a>\xEF\xBF\xBF</a>", "1:4 a character that XML does not allow (U+FFFF)"},
        {"<a>\n\xE4</a>", "2:1 the text is not valid in its encoding (byte 5)"},
        {"<a><![FOO[x]]></a>", "1:4 this cannot follow \"<!\""},
        {"<!doctype a><a/>", "1:1 this cannot follow \"<!\""},
        {"<p:a/>", "1:2 the prefix \"p\" is not declared"},
        {"<a xmlns:p=\"u\" xmlns:q=\"u\" p:x=\"1\" q:x=\"2\"/>",
         "1:36 two attributes have one name and namespace: \"q:x\""},
        {"<?xml version=\"1.0\" encoding=\"nope\"?><a/>", "1:31 unknown encoding \"nope\""},
        {"<?xml version=\"1.0\" encoding=\"UTF-8//TRANSLIT\"?><a/>",
         "1:31 this is no name of an encoding: \"UTF-8//TRANSLIT\""},
        {"\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"latin1\"?><a/>",
         "1:31 the declared encoding \"latin1\" contradicts the bytes, which are marked as UTF-8"},
        {"<?xml version=\"1.0\" encoding=\"EUC-JP\"?><a>\xB4\xC1\xB4</a>",
         "1:44 the text is not valid in its encoding (byte 45)"},
        {subset("<!ENTITY e '&f;'><!ENTITY f '&e;'>", "<a>&e;</a>"),
         "1:53 the entity \"e\" refers to itself (in the entity \"f\")"},
        {subset("<!ENTITY e '<b>'>", "<a>&e;</a>"),
         "1:36 the entity \"e\" does not hold whole elements"},
        {subset("<!ENTITY e '<'>", "<a b='&e;'/>"),
         "1:37 \"<\" is not allowed in an attribute value (in the entity \"e\")"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(staged(row.document), row.result) << row.document;
    }
}

/// Documents that between them have everything in which text can be cut.
const std::vector<std::string>& manifold() {
    static const std::vector<std::string> documents = {
        "<?xml version='1.0' encoding='utf-8'?>\r\n<!-- - x -->\r<!DOCTYPE a [<!ENTITY e \"<b "
        "c='1'>é"
        "</b>\">\r\n<!-- ]> --><?p ]> ?><!ATTLIST a d NMTOKEN ' 1 '><!ENTITY % p '<!ELEMENT a "
        "ANY>'> "
        "%p; ]  >\n<a\r\nb = '&lt;\t\r\n&e2;'\rxmlns:q='u'>&e; ]] ] &#128512;\r\n<q:x />"
        "<![CDATA[]]]\n]>\r]]><?t \r\n d? ?><!--\t-\t-> - --></a >\r\n"s,
        "\xFF\xFE<\0a\0>\0=\xD8\x00\xDE\r\0\n\0<\0/\0a\0>\0"s,
        "<?xml version=\"1.0\" encoding=\"ISO-2022-JP\"?><a>\x1B$B4A;z\x1B(B</a>"s,
        "<?xml version=\"1.0\" encoding=\"GB18030\"?><a>\x81\x30\x81\x30\xB0\xA1</a>"s,
    };
    return documents;
}

std::string whole(std::string document) {
    const std::size_t unknown = document.find("&e2;");
    return unknown == std::string::npos ? document : document.erase(unknown, 4);
}

TEST(Conforming, isTheSameInBlocksOfAnySize) {
    for (const std::string& document : manifold()) {
        for (const std::string& text : {document, whole(document)}) {
            const std::string expected = staged(text);
            for (const std::size_t step : {1U, 2U, 3U, 7U, 64U * 1024}) {
                Trickle source(text, step);
                EXPECT_EQ(drain(source), expected) << text << " in blocks of " << step;
            }
        }
    }
}

/// A block of one byte never has a tag at hand, so everything goes step by step; as a whole, what
/// is plain goes the short way.
TEST(Conforming, passesPlainTextAsItDoesStepByStep) {
    static constexpr std::string_view pieces[] = {
        "<a>",
        "</a>",
        "<b/>",
        "</b>",
        "<b c=\"1\" d=\"2\">",
        "<a x=\"é\"/>",
        "<b c='",
        "'/>",
        "<a ",
        " y=\"1\"",
        "z=\"2\"",
        "\"",
        "x",
        "\n",
        " ",
        ">",
        "]]",
        "]]>",
        "&lt;",
        "&",
        "\r\n",
        "\r",
        "<p:q xmlns:p=\"u\"/>",
        "<p:q xmlns:p=\"u\">",
        "<p:q/>",
        "<b p:c=\"1\" q:c=\"1\" xmlns:q=\"v\"/>",
        "</p:q>",
        "<b c=\"1  2\"/>",
        "<a b=\"2 3\" z=\"4  5\">",
        "<a b=\" 2\"  />",
        "<!-- -->",
        "<![CDATA[",
        "<?t d?>",
        "xmlns=\"u\"",
        "/>",
        "<a\n\tb=\"1\"/>",
        "-",
    };
    std::mt19937 random(4711);
    TNuConformingOptions options;
    options.whiteSpace = cwReader;
    for (int round = 0; round < 10'000; ++round) {
        std::string document = random() % 3 == 0 ? "<!DOCTYPE a[<!ATTLIST b c NMTOKENS #IMPLIED>"
                                                   "<!ATTLIST a y CDATA '&lt;' b ID #IMPLIED>]><a>"
                                                 : "<a>";
        for (auto count = random() % 24; count > 0; --count) {
            document += pieces[random() % std::size(pieces)];
        }
        document += "</a>";
        // Nothing is taken as a whole near the end of the text.
        document.append(random() % 2 * 100, ' ');
        options.namespaces = random() % 4 != 0;
        Trickle source(document, 1);
        ASSERT_EQ(staged(document, options), drain(source, options)) << document;
    }
}

TEST(Conforming, refusesADocumentThatIsCutAnywhere) {
    for (const std::string& each : manifold()) {
        const std::string document = whole(each);
        const std::size_t rootEnd = document.rfind('>');
        ASSERT_TRUE(support::conformingOutline(document).isWellFormed) << document;
        for (std::size_t length = 0; length < rootEnd; ++length) {
            EXPECT_FALSE(support::conformingOutline(document.substr(0, length)).isWellFormed)
                << length << " of " << document;
        }
    }
}

TEST(Conforming, changesNothingInWhatItGaveAsADocument) {
    TNuConformingOptions options;
    options.keepLines = false;
    for (const std::string& each : manifold()) {
        const std::string once = staged(whole(each), options);
        host::TMemoryViewStream again{std::string_view(once)};
        TNuConformingStream stage(again, options);
        std::string twice(once.size() + 100, '\0');
        twice.resize(stage.Read(twice.data(), twice.size()));
        EXPECT_EQ(twice.substr(3), once);
        EXPECT_FALSE(stage.Form().isChanged) << once;
    }
}

TEST(Conforming, passesOnWhatTheSourceThrowsAndEndsWhereItEnds) {
    const std::string document = "<a>" + std::string(200'000, 'x') + "</a>";
    Trickle broken(document, 1000);
    broken.failsAt = 100'000;
    EXPECT_THROW(drain(broken), host::EReadError);
    Trickle lying(document, 1000);
    lying.claimedSize = 1'000'000'000;
    EXPECT_EQ(drain(lying).size(), document.size());
    TNuSAXXMLReader reader;
    reader.SetConforming({});
    Trickle tooLong(document, 1000);
    tooLong.claimedSize = static_cast<std::int64_t>(document.size()) + 1;
    EXPECT_THROW(reader.Parse(tooLong), ENuSaxHandledAbort);
}

TEST(Conforming, keepsTheWhiteSpaceThatIsAskedFor) {
    const std::string document = "<a>\n <b>x</b> <c xml:space=\"default\"> </c><d>\n</d></a>";
    const auto texts = [&](TNuConformingWhiteSpace whiteSpace) {
        TNuConformingOptions options;
        options.whiteSpace = whiteSpace;
        std::string found;
        const auto trace = host::makeRef<support::EventTrace>();
        TNuSAXXMLReader reader;
        reader.SetConforming(options);
        trace->attachTo(reader);
        reader.ParseBytes(document);
        for (const std::string& line : trace->lines()) {
            found += line.starts_with('T') ? line.substr(1) : "";
        }
        return found;
    };
    EXPECT_EQ(texts(cwReader), R"("x")");
    EXPECT_EQ(texts(cwInline), R"("x"" "" ")");
    EXPECT_EQ(texts(cwAll), R"("\n ""x"" "" ""\n")");
}

TEST(Conforming, passesOnAFaultWhereThatIsAskedFor) {
    TNuConformingOptions options;
    options.onFault = cfPassOn;
    EXPECT_EQ(staged("<a b='1'><c></a>", options), "<a b=\"1\"><c></a>");
    EXPECT_EQ(staged("<a>\xE4\x80</a>", options), "<a>ä€</a>");
    const support::Outline outline = support::conformingOutline("<a b='1'>\n<c></a>", options);
    EXPECT_TRUE(outline.isWellFormed) << outline.fault;
    EXPECT_EQ(outline.warnings, 1);
}

TEST(Conforming, refusesEntitiesThatGrowWithoutBound) {
    std::string laughs = "<!ENTITY l0 \"0123456789\">";
    for (int level = 1; level < 12; ++level) {
        const std::string below = "&l" + std::to_string(level - 1) + ";";
        laughs += "<!ENTITY l" + std::to_string(level) + " \"";
        for (int count = 0; count < 10; ++count) {
            laughs += below;
        }
        laughs += "\">";
    }
    std::string quadratic = "<a>";
    std::string defaults = "<a>";
    for (int count = 0; count < 20'000; ++count) {
        quadratic += "&e;";
        defaults += "<b/>";
    }
    const std::string large(100'000, 'x');
    const std::string message = "entities expand to more than 100 times the document";
    for (const std::string& bomb :
         {subset(laughs, "<a>&l11;</a>"), subset(laughs, "<a b=\"&l11;\"/>"),
          subset(laughs + "<!ATTLIST a b CDATA \"&l11;\">", "<a/>"),
          subset("<!ENTITY e '" + large + "'>", quadratic + "</a>"),
          subset("<!ATTLIST b c CDATA '" + large + "'>", defaults + "</a>")}) {
        EXPECT_NE(staged(bomb).find(message), std::string::npos);
        EXPECT_NE(support::conformingOutline(bomb).fault.find(message), std::string::npos);
    }
}

TEST(Conforming, countsTheDefaultsOfEachTagOnce) {
    // Tags that are first looked at as a whole beside others of the same length that never are.
    const std::vector<std::pair<std::string, std::string>> tags = {
        {"<b c=\"\"/>", "<b c=''/>"},
        {"<b c=\"\"></b>", "<b c=''></b>"},
        {"<b p:x=\"\" q:x=\"\"/>", "<b p:x='' q:x=''/>"},
        {"<b xmlns=\"u\"/>", "<b xmlns='u'/>"},
        {"<b xmlns:r=\"u\" r:x=\"\" p:x=\"\"/>", "<b xmlns:r='u' r:x='' p:x=''/>"},
    };
    TNuConformingOptions options;
    options.amplification = 3;
    options.amplificationFrom = 1000;
    for (const auto& [asWhole, bySteps] : tags) {
        const auto fault = [&options](const std::string& tag, auto&& read) {
            std::string document =
                subset("<!ATTLIST b d CDATA '" + std::string(200, 'x') + "'>",
                       "<a xmlns:p=\"1\" xmlns:q=\"2\"><p:c x=\"\"/><q:c x=\"\"/>");
            for (int count = 0; count < 500; ++count) {
                document += "\n" + tag;
            }
            return read(document + "</a>", options);
        };
        const auto inTwoPasses = [](const auto& document, const auto& limited) {
            return staged(document, limited);
        };
        const auto inOnePass = [](const auto& document, const auto& limited) {
            const support::Outline outline = support::conformingOutline(document, limited);
            return std::to_string(outline.faultLine) + ' ' + outline.fault;
        };
        EXPECT_EQ(fault(asWhole, inTwoPasses), fault(bySteps, inTwoPasses)) << asWhole;
        EXPECT_EQ(fault(asWhole, inOnePass), fault(bySteps, inOnePass)) << asWhole;
        EXPECT_NE(fault(asWhole, inOnePass).find("3 times"), std::string::npos) << asWhole;
    }
}

#ifdef NUXML_HAS_EXPAT

TEST(Conforming, tellsWhatExpatTells) {
    for (const std::string& each : manifold()) {
        const auto expected = support::expatOutline(whole(each));
        const support::Outline outline = support::conformingOutline(whole(each));
        if (expected) {
            EXPECT_EQ(outline.text, expected->text);
            EXPECT_EQ(outline.isWellFormed, expected->isWellFormed) << expected->fault;
        }
    }
}

#endif

TEST(Conforming, keepsToItsLimits) {
    struct Case {
        std::u16string_view document;
        std::string_view refusal; ///< with its place; empty where the limits allow it
    };
    // Each once in the form in which tags are passed at one go, and once in another.
    for (const Case& item : {
             Case{u"<abcd><b><c/></b><b><c/></b><c b=\"123456789\" c=\"\" d=\"\"/></abcd>", ""},
             Case{u"<a><b><b><c/></b></b></a>",
                  "1:10 the elements are nested deeper than 3 levels"},
             Case{u"<a><a><a><a/></a></a></a>",
                  "1:10 the elements are nested deeper than 3 levels"},
             Case{u"<a b='' c='' d='' e=''/>", "1:19 an element has more than 3 attributes"},
             Case{u"<r><a b=\"\" c=\"\" d=\"\"/><a b=\"\" c=\"\"/><a e=\"\"/>"
                  u"<a b=\"\" c=\"\" d=\"\"/><a b=\"\" c=\"\" d=\"\" e=\"\"/></r>",
                  "1:83 an element has more than 3 attributes"},
             Case{u"<!DOCTYPE a [<!ATTLIST a b CDATA ''>]><a c='' d='' e=''/>",
                  "1:39 an element has more than 3 attributes"},
             Case{u"<abcde/>", "1:2 a name is longer than 4 characters"},
             Case{u"<a\u20AC\u20AC\u20AC/>", ""},
             Case{u"<a b=\"\" abcde=\"\"/>", "1:9 a name is longer than 4 characters"},
             Case{u"<a><?abcde?></a>", "1:6 a name is longer than 4 characters"},
             Case{u"<!DOCTYPE abcde><a/>", "1:11 a name is longer than 4 characters"},
         }) {
        TNuConformingOptions options;
        options.limits = {3, 3, 4};
        TNuStringStream stream(std::u16string(item.document) + std::u16string(200, u'\n'));
        std::string refusal;
        try {
            NuCheckXML(stream, options);
        } catch (const ENuXmlFault& fault) {
            refusal = std::to_string(fault.Line()) + ':' + std::to_string(fault.Column()) + ' ' +
                      support::readable(fault.Message());
        }
        EXPECT_EQ(refusal, item.refusal) << support::readable(item.document);
    }
}

} // namespace
