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
    {"nuxml tame -o none/x library.xml; nuxml tame a b; nuxml format --check -i w; printf '<a>' | "
     "nuxml format --check; nuxml tame -o /dev/full library.xml",
     4, "", "nuxml: cannot write /dev/full: Cannot create file \"/dev/full\". It is a device\n"},
    {"script -qec 'printf \"<a>x</a>\" | nuxml format --compact - | nuxml edit --set a=y' "
     "/dev/null "
     "</dev/null",
     0, "<a>y</a>\r\n", ""},
    // A document in one look.
    {R"(printf '<!DOCTYPE a [<!ENTITY e "v">]><!--c--><a><?p i?><![CDATA[x]]>&e;<b k="%060d" l="1"/>)"
     R"(<b l="1"/><b l="2"/><c>&#32;</c></a>' 7 | nuxml tree)",
     0,
     "standard input: 5 elements, 4 attributes, 2 levels\na    1  \"xv\"\n"
     "  b  3  @k=\"0000000000000000000000000000000\xE2\x80\xA6\"  @l=\"1\" \"2\"\n  c  1  \" \"\n",
     ""},
    {R"({ printf '<a'; seq -f ' a%g="1"' 400; echo '>'; seq 30000 | sed 's/.*/<n&><m>x<k\/><\/m><\/n&>/'; )"
     "echo '<n1><m>x</m></n1></a>'; } >m; nuxml tree --lines=4 m | cut -c 1-24; nuxml tree "
     "--lines=2 m",
     2, "m: 90003 elements, 400 a\na     1  @a1=\"1\"  @a2=\"1\n  n1  2  + 1 more name b\n",
     "nuxml: --lines is a number from 3 on, not 2; see"},
    {"script -qec 'stty rows 8 cols 40; nuxml tree library.xml' /dev/null </dev/null | head -n 3 | "
     "tr -d '\\033\\r'",
     0,
     "library.xml: 50 elements, 83 attributes, 4 levels\n[1;34mlibrary[0m    1  [36m@xmlns[0m  "
     "[36m@xmlns:loan[0m\n  [1;34mopening[0m  1[2m  + 1 more name below[0m\n",
     ""},
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
