#include <gtest/gtest.h>

#include "shell.h"

namespace {

struct Case {
    const char* line;
    int exitCode;
    const char* output;
    const char* errors; ///< a part of it; an empty one means none at all
};

const Case cases[] = {
    {"printf '<a> <b x=\"1\"></b><!--c--></a>' | nuxml format --white=drop", 0,
     "<a>\n  <b x=\"1\"/>\n  <!--c-->\n</a>\n", ""},
    {"printf '<a>\\n <b>t<![CDATA[<]]></b>\\n</a>\\n' | nuxml format --compact -", 0,
     "<a><b>t<![CDATA[<]]></b></a>\n", ""},
    // What is formatted stays as it is; what is loaded is written again.
    {"nuxml format library.xml >once; nuxml format once | cmp - once; nuxml format -o twice once;"
     "cmp once twice; nuxml format --compact once | nuxml format | cmp - once; cat library.xml | "
     "nuxml format | cmp - once; nuxml format --large library.xml | cmp - once",
     0, "", ""},
    // Elements that hold text keep it as it is; white space as the option says.
    {R"(printf '<a>\n<p>x <b>1</b> <i>2</i><!--c--><?d e?>\n</p><q><b>1</b> <i>2</i></q>\n</a>' >w; )"
     "nuxml format w; nuxml format --white all --compact w; nuxml format --white=drop w",
     0,
     "<a>\n  <p>x <b>1</b> <i>2</i><!--c--><?d e?></p>\n  <q><b>1</b> <i>2</i></q>\n</a>\n"
     "<a>\n<p>x <b>1</b> <i>2</i><!--c--><?d e?>\n</p><q><b>1</b> <i>2</i></q>\n</a>\n"
     "<a>\n  <p>x <b>1</b><i>2</i><!--c--><?d e?></p>\n  <q>\n    <b>1</b>\n    <i>2</i>\n  "
     "</q>\n</a>\n",
     ""},
    // The encoding that is declared, whatever the environment is.
    {"printf '<a>\xE2\x82\xAC</a>' | LC_ALL=de_DE.ISO-8859-1 nuxml format", 0,
     "<a>\xE2\x82\xAC</a>\n", ""},
    {"printf '<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a>\\351&#1046;</a>' | "
     "LC_ALL=ru_RU.KOI8-R nuxml format --compact",
     0, "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a>\xE9&#1046;</a>\n", ""},
    // In place: the file and nothing else, its rights stay, and so does it when there is a fault.
    {"mkdir in; cd in; printf '<a><b/></a>' >x; chmod 600 x; nuxml format -i x; cat x; ls -A;"
     "stat -c %a x",
     0, "<a>\n  <b/>\n</a>\nx\n600\n", ""},
    {"cd in; printf '<a>\\n<b></a>' >x; nuxml format -i x; echo $?; cat x; nuxml format -o y x; "
     "ls; "
     "nuxml format -i --force x; cat x",
     0, "3\n<a>\n<b></a>x\n<a>\n  <b/>\n</a>\n",
     "x:2:4: error: the end tag does not match the start tag \"b\" (line 2)\n"},
    {"cd in; printf '<a />' >x; nuxml format --raw -i x; echo $?; cat x; nuxml format "
     "--raw "
     "-i --force x; cat x",
     0, "3\n<a /><a/>\n", "x:1:4: warning: "},
    {"printf 'no markup' | nuxml format", 3, "", "standard input:1:1: error: "},
    {"printf '<a><b>text\\n' | nuxml format --raw --compact", 0, "<a><b>text</b></a>\n",
     "standard input: warning: the document ends inside of \"b\"\n"},
    {"nuxml format --white=some library.xml", 2, "",
     "nuxml: --white is all, inline or drop, not some"},
    // What others make of a document, and what they are told.
    {R"(printf "<a\tb='1'/>" >t; nuxml check t library.xml faults.xml; nuxml check --quiet faults.xml)"
     " || nuxml tame t",
     0, "t: well-formed\nlibrary.xml: well-formed\n<a b=\"1\"/>", "faults.xml:5:4: error: "},
    // Long text that declares nothing is UTF-8 too.
    {"{ printf '<a>\xC3\xA9'; yes text | head -c 34000000; printf '</a>'; } >long.xml; "
     "nuxml format --compact long.xml | head -n 1; nuxml format --compact <long.xml | head -n 1",
     0, "<a>\xC3\xA9text\n<a>\xC3\xA9text\n", ""},
    // More than anybody means.
    {"yes '<a>' | head -n 1000001 | nuxml format --raw", 3, "",
     "standard input:1000001:3: error: The elements are nested deeper than 1000000 levels!\n"},
    {"{ printf '<a'; seq -f ' a%g=\"\"' 100001; printf '/>'; } | nuxml format --raw", 3, "",
     ": error: The element has more than 100000 attributes!\n"},
    {"yes '<a>' | head -n 1000001 >deep; nuxml tame deep | tail -n 1; nuxml check deep", 3, "<a>\n",
     "deep:1000001:1: error: the elements are nested deeper than 1000000 levels\n"},
    {"printf '<a%0100000d/>' 0 | nuxml events | tail -n 1", 0,
     "exception              ENuSaxFatalError: The name is longer than 100000 characters!\n",
     ": error: The name is longer than 100000 characters!\n"},
    {"nuxml format missing.xml", 4, "", "nuxml: cannot open missing.xml: "},
    {"nuxml format -o none/x library.xml", 4, "", "nuxml: cannot write none/x: Cannot create file"},
    {"nuxml format library.xml >/dev/full", 4, "", "nuxml: cannot write standard output: "},
    {"nuxml format -i", 2, "", "nuxml: -i needs a file; see"},
    {"nuxml format -i -o x library.xml", 2, "", "nuxml: -i and -o exclude each other; see"},
    {"nuxml format library.xml -o", 2, "", "nuxml: the value of -o is missing; see"},
    {"nuxml format a b", 2, "", "nuxml: more than one file, which needs -i; see"},
};

TEST(Format, WritesDocumentsOfFilesAndStandardInput) {
    for (const Case& expected : cases) {
        SCOPED_TRACE(expected.line);
        const ShellResult result = runShell(expected.line);
        EXPECT_EQ(result.exitCode, expected.exitCode);
        EXPECT_EQ(result.output, expected.output);
        EXPECT_TRUE(result.errors.find(expected.errors) != std::string::npos &&
                    result.errors.empty() == (*expected.errors == '\0'))
            << result.errors;
    }
}

// Two million nodes in 30 MB of address space; a sanitizer alone needs more.
TEST(Format, TellsThatMemoryDoesNotSuffice) {
    if (!std::string_view(NUXML_SANITIZE).empty()) {
        GTEST_SKIP();
    }
    const ShellResult result =
        runShell("{ printf '<a>'; yes '<b>text</b>' | head -n 1000000; printf '</a>'; } >many; "
                 "ulimit -v 30000; nuxml format many >/dev/null");
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_EQ(result.errors, "nuxml: many: there is not enough memory\n");
}

} // namespace
