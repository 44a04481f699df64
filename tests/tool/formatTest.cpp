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
    {"printf '<a> <b x=\"1\"></b><!--c--></a>' | nuxml format", 0,
     "<a>\r\n  <b x=\"1\"/>\r\n  <!--c-->\r\n</a>", ""},
    {"printf '<a>\\n <b>t<![CDATA[<]]></b>\\n</a>\\n' | nuxml format --compact -", 0,
     "<a><b>t<![CDATA[<]]></b></a>", ""},
    // What is formatted stays as it is; what is loaded is written again.
    {"sed /DOCTYPE/d library.xml >plain; nuxml format plain >once; nuxml format once | cmp - once; "
     "nuxml format -o twice once;"
     "cmp once twice; nuxml format --compact once | nuxml format | cmp - once",
     0, "", ""},
    {"nuxml format <library.xml | cmp - once", 0, "",
     "nuxml: standard input: the document type declaration is not kept\n"},
    // UTF-8, with a declaration that says so, whatever it was before and the environment is.
    {"printf '<a>\xE2\x82\xAC</a>' | LC_ALL=de_DE.ISO-8859-1 nuxml format", 0,
     "<a>\xE2\x82\xAC</a>", ""},
    {"printf '<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a>\\351</a>' | nuxml format "
     "--compact",
     0, "<?xml version=\"1.0\" encoding=\"UTF-8\"?><a>\xC3\xA9</a>", ""},
    {"printf '<?xml encoding=\"utf-16\" standalone=\"yes\"?><a/>' | iconv -t utf-16 |"
     "nuxml format --compact",
     0, "<?xml encoding=\"UTF-8\" standalone=\"yes\"?><a/>", ""},
    // In pieces only what is declared or marked as UTF-8 is UTF-8, in files and pipes.
    {"printf '<a>\xC3\xA9</a>' >undeclared; nuxml format --large undeclared; "
     "nuxml format --large <undeclared; cat undeclared | nuxml format --large; "
     "nuxml format --large library.xml | cmp - once",
     0, "<a>\xC3\x83\xC2\xA9</a><a>\xC3\x83\xC2\xA9</a><a>\xC3\x83\xC2\xA9</a>",
     "nuxml: library.xml: the document type declaration is not kept\n"},
    // In place: the file and nothing else, its rights stay, and so does it when there is a fault.
    {"mkdir in; cd in; printf '<a><b/></a>' >x; chmod 600 x; nuxml format -i x; cat x; ls -A;"
     "stat -c %a x",
     0, "<a>\r\n  <b/>\r\n</a>x\n600\n", ""},
    {"cd in; printf '<a>' >x; nuxml format -i x; echo $?; cat x", 0, "3\n<a>",
     "nuxml: x:1:3: Unexpected End Of Document!\n"},
    {"cd in; printf '<!DOCTYPE a []><a/>' >x; nuxml format -i x; echo $?; cat x", 0,
     "3\n<!DOCTYPE a []><a/>", "is not kept; the file stays as it is\n"},
    {"cd in; nuxml format x", 0, "<a/>", "nuxml: x: the document type declaration is not kept\n"},
    {"printf 'no markup' | nuxml format", 3, "", "nuxml: standard input:1:0: "},
    {"printf '<a><b>text\\n' | nuxml format --compact", 0, "<a><b>text</b></a>",
     "nuxml: standard input: the document ends inside of \"b\"\n"},
    // Long text that declares nothing is UTF-8 too.
    {"{ printf '<a>\xC3\xA9'; yes text | head -c 34000000; printf '</a>'; } >long.xml; "
     "nuxml format --compact long.xml | head -n 1; nuxml format --compact <long.xml | head -n 1",
     0, "<a>\xC3\xA9text\n<a>\xC3\xA9text\n", ""},
    {"printf '<a/><b/>' | nuxml format", 3, "", "A document can only have 1 rootnode\n"},
    {"nuxml format missing.xml", 4, "", "nuxml: cannot open missing.xml: "},
    {"nuxml format -o none/x library.xml", 4, "", "nuxml: cannot write none/x: Cannot create file"},
    {"nuxml format library.xml >/dev/full", 4, "", "nuxml: cannot write standard output: "},
    {"nuxml format -i", 2, "", "nuxml: -i needs a file; see"},
    {"nuxml format -i -o x library.xml", 2, "", "nuxml: -i and -o exclude each other; see"},
    {"nuxml format library.xml -o", 2, "", "nuxml: the value of -o is missing; see"},
    {"nuxml format a b", 2, "", "nuxml: more than one file; see"},
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
