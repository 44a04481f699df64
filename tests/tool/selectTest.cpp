#include <gtest/gtest.h>

#include <random>
#include <string>

#include "shell.h"

namespace {

const ShellCase forms[] = {
    {R"(nuxml select "//book[@lang='en']/title" library.xml)", 0,
     "<title>On the Origin of Species</title>\n<title>Programs for the Evening</title>\n", ""},
    {"nuxml select --xml library/shelf/@label library.xml", 0,
     "label=\"Literature &amp; poetry\"\nlabel=\"Science &amp; technology\"\n", ""},
    {"nuxml select library/shelf/@label --value library.xml", 0,
     "Literature & poetry\nScience & technology\n", ""},
    {"nuxml select --value library/shelf/book/title - <library.xml | tail -n 1", 0, "三体\n", ""},
    {"nuxml select --count //book library.xml", 0, "8\n", ""},
    // One value a line, whatever is in it.
    {R"(printf '<a b="1\n2"><c>x\\y\r\nz</c><c/></a>' | nuxml select --value 'a/@b | a/c')", 0,
     "1 2\nx\\\\y\\nz\n\n", ""},
    // Several files are named where the place is the result.
    {"cp library.xml two.xml; nuxml select --count //poem library.xml two.xml; nuxml select "
     "--path //poem two.xml library.xml; nuxml select --value //poem/@of library.xml two.xml",
     0, "library.xml:1\ntwo.xml:1\ntwo.xml:/library/poem\nlibrary.xml:/library/poem\nb001\nb001\n",
     ""},
    {"printf '<a>\xC3\xA9</a>' | nuxml select --raw --large --value a", 0, "\xC3\x83\xC2\xA9\n",
     ""},
};
TEST(Select, ShowsResultsInFourForms) { expectShell(forms); }

const ShellCase paths[] = {
    {R"(printf '<r xmlns="u"><p:a i="1"/><b>t<!--c--><i/>u</b><p:a I="2" p:i="3"><b/><?b x?></p:a>)"
     R"(</r>' >paths.xml; nuxml select --raw --path 'r | r/p:a | r/b/node() | r/p:a/@* | r/p:a/node())"
     R"( | r/@*' paths.xml 2>warnings)",
     0,
     "/r\n/r/p:a[1]\n/r/p:a[2]\n/r/b/#text[1]\n/r/b/#comment\n/r/b/i\n/r/b/#text[2]\n"
     "/r/p:a[1]/@i\n/r/p:a[2]/@I[1]\n/r/p:a[2]/@i[2]\n/r/p:a[2]/b[1]\n/r/p:a[2]/b[2]\n/r/@\n",
     ""},
    // Each of them selects what it was made for.
    {"nuxml select --raw --xml 'r/b/node() | r/p:a/@* | r/p:a/node()' paths.xml >direct "
     "2>warnings; "
     "nuxml select --raw --path 'r/b/node() | r/p:a/@* | r/p:a/node()' paths.xml 2>warnings | "
     "while read -r path; do nuxml select --raw \"$path\" paths.xml 2>warnings; done | cmp - "
     "direct",
     0, "", ""},
};
TEST(Select, ShowsPathsThatLeadBack) { expectShell(paths); }

/// An element with a few of everything below it; equal names are frequent.
void addRandomElement(std::mt19937& random, std::string& xml, int depth) {
    const auto name = [&] {
        static constexpr const char* names[] = {"a",     "b",      "A",    "p:a",
                                                "x-y.z", "\u00e9", "text", "root"};
        return std::string(names[random() % std::size(names)]);
    };
    const std::string tag = name();
    xml += '<' + tag + " i='1'" + (random() % 2 ? " p:i='2'" : "") +
           (random() % 2 ? " I='3'" : "") + '>';
    for (std::size_t count = random() % 5; depth < 5 && count > 0; --count) {
        switch (random() % 4) {
        case 0:
            xml += "t<!--c-->";
            break;
        case 1:
            xml += "<?a d?><![CDATA[s]]>";
            break;
        default:
            addRandomElement(random, xml, depth + 1);
        }
    }
    xml += "</" + tag + '>';
}

TEST(Select, ShowsPathsThatLeadBackInAnyDocument) {
    for (std::uint32_t seed = 1; seed <= 8; ++seed) {
        std::mt19937 random(seed);
        std::string xml;
        addRandomElement(random, xml, 0);
        const ShellResult result =
            runShell("printf '%s' \"<r xmlns:p='u'>" + xml +
                     "</r>\" >random.xml; nuxml select --path "
                     "'//node() | //@* | //* | r' random.xml | while read -r path; do [ \"$path\" "
                     "= \"$(nuxml "
                     "select --path \"$path\" random.xml)\" ] || echo \"$path\"; done");
        EXPECT_EQ(result.output + result.errors, "") << "seed " << seed << ": " << xml;
    }
}

const ShellCase rows[] = {
    {R"(printf '<a x="1"><b>t<b z="2"/></b><d/></a>' >a.xml; nuxml select --json 'a/@x | a/b/#text | a/d | )"
     "a/..' a.xml; nuxml select --json --numbers -c @x,d,b a a.xml",
     0,
     "[\n\"1\",\n\"t\",\n\"\",\n{\"a\":{\"@x\":\"1\",\"b\":{\"#\":[\"t\",{\"b\":{\"@z\":\"2\"}}]},"
     "\"d\":\"\"}}\n]\n[\n{\"@x\":1,\"d\":\"\",\"b\":\"t\"}\n]\n",
     ""},
    {"nuxml select -c . 'a/@x | //b' a.xml; nuxml select -c a,,b a a.xml", 2, "1\nt\n\n",
     "nuxml: a column without a path; see \"nuxml help select\"\n"},
};
TEST(Select, ShowsNodesOfEveryKind) { expectShell(rows); }

// Each part of a path with its count and its meaning, in three columns.
const ShellCase explanations[] = {
    {"nuxml explain '//node()/@* | text() | */.. | */. | a/#text | //@x | //b[first()]/b[last()] | "
     "a[@x>=1] | a[@x<3] | a[b>\"x\"] | a[string()=\"t\"] | a[d]' a.xml | grep '^ ' | tr -s ' '",
     0,
     " //node() 5 elements, texts, comments and instructions anywhere\n"
     " /@* 2 all attributes of them\n"
     " text() 0 elements that hold text; \"#text\" are the texts; there is a\n"
     " * 1 the document element\n /.. 1 the element that they stand in\n"
     " * 1 the document element\n /. 1 the same\n"
     " a 1 the document element, if it is \"a\"\n"
     " /#text 0 nodes \"#text\" right below them; there is @x, b, d\n"
     " //@x 1 attributes \"x\" with any prefix and in any letter case of elements anywhere\n"
     " //b 2 elements \"b\" anywhere\n [first()] 1 the first of them\n"
     " /b 1 elements \"b\" right below them\n [last()] 1 the last of them\n"
     " a 1 the document element, if it is \"a\"\n"
     " [@x>=1] 1 those whose attribute \"x\" is greater than or equal to the integer 1\n"
     " a 1 the document element, if it is \"a\"\n"
     " [@x<3] 1 those whose attribute \"x\" is less than the integer 3\n"
     " a 1 the document element, if it is \"a\"\n"
     " [b>\"x\"] 0 those whose element at \"b\" is greater than the text \"x\"\n"
     " a 1 the document element, if it is \"a\"\n"
     " [string()=\"t\"] 0 those whose own text is the text \"t\", in any letter case\n"
     " a 1 the document element, if it is \"a\"\n [d] 1 those with an element at \"d\"\n",
     ""},
    {"nuxml explain q a.xml none.xml; nuxml explain 'a[@x=]' a.xml", 2,
     "a.xml:\n  q         0  the document element, if it is \"q\"; there is a\n"
     "a.xml:\n  a             1  the document element, if it is \"a\"\n  [@x=]  \n",
     "nuxml: cannot open none.xml: No such file or directory\n"
     "nuxml: a.xml: the path a[@x=]: '' is not a valid integer value\n"
     "nuxml: a filter compares text when its value stands in quotes: [@name='text']\n"},
};
TEST(Select, ExplainsPaths) { expectShell(explanations); }

const ShellCase failures[] = {
    {"nuxml select", 2, "", "nuxml: a path is missing; see \"nuxml help select\"\n"},
    {"nuxml select --xml --count a library.xml", 2, "",
     "nuxml: --xml, --value, --path, --count, --json, --csv and --tsv exclude each other; see "
     "\"nuxml help select\"\n"},
    // Nothing matched: silently, unless an option would have helped.
    {"nuxml select --count library/missing library.xml", 1, "0\n", ""},
    {"nuxml select library/shelf/state library.xml", 1, "", ""},
    {"nuxml select //state library.xml", 1, "",
     "nuxml: library.xml: nothing matched; without regard to namespaces (-N) 8 nodes would\n"},
    {"nuxml select Library library.xml", 1, "",
     "nuxml: library.xml: nothing matched; without regard to letter case (-I) 1 node would\n"},
    {"nuxml select //STATE library.xml", 1, "",
     "nuxml: library.xml: nothing matched; without regard to namespaces and letter case (-N -I) 8 "
     "nodes would\n"},
    {"nuxml select --count -N -I //STATE library.xml; nuxml select --count --ignore-namespace "
     "--ignore-case //STATE library.xml",
     0, "8\n8\n", ""},
    // One match among the files is a match; faults count more.
    {"printf '<a/>' >small.xml; nuxml select --value //mail small.xml library.xml", 0,
     "hall@library.example\n", ""},
    {"nuxml select --value //mail missing.xml library.xml", 4, "hall@library.example\n",
     "nuxml: cannot open missing.xml: No such file or directory\n"},
    {"printf '<a>&#;</a>' | nuxml select --raw --value a", 3, "",
     "standard input: error: '' is not a valid integer value\n"},
    // Mistakes in the path.
    {"nuxml select \"//book[contains(title,'x')]\" library.xml", 2, "",
     "nuxml: //book[contains(title,'x')]: the path language has no function contains(); see "
     "\"nuxml help select\"\n"},
    {"nuxml select 'none/library[x' library.xml; nuxml explain 'a['", 2, "",
     "nuxml: none/library[x: Unterminated Filter!; see \"nuxml help select\"\n"
     "nuxml: a[: Unterminated Filter!; see \"nuxml help explain\"\n"},
    {"nuxml select '//shelf[@id=1]' library.xml", 2, "",
     "nuxml: library.xml: the path //shelf[@id=1]: 'lit' is not a valid integer value\n"
     "nuxml: a filter compares text when its value stands in quotes: [@name='text']\n"},
    {"nuxml select \"$(printf '\\377')\" library.xml", 2, "",
     "nuxml: the path is not UTF-8; see \"nuxml help select\"\n"},
};
TEST(Select, TellsWhyThereIsNothing) { expectShell(failures); }

// Of input that is read in pieces, 72 MB here, only the tree is held; the sanitizers need more.
TEST(Select, OfLongInputHoldsNothingButTheTree) {
    const std::string limit = std::string_view(NUXML_SANITIZE).empty() ? "ulimit -v 120000; " : "";
    const ShellResult result = runShell(
        "{ printf '<a>'; yes \"$(printf '%65536s' '')<b/>\" | head -n 1100; printf '</a>'; } | "
        "{ " +
        limit + "nuxml select --large --count a/b; }");
    EXPECT_EQ(result.output, "1100\n") << result.errors;
}

} // namespace
