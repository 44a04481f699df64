#include <gtest/gtest.h>

#include <string_view>

#include "shell.h"

namespace {

/// What people do with XML in a shell, and what the most common tool for it needs to be told.
struct Job {
    const char* name;
    const char* line;
    const char* peer; ///< the same with another tool; null where that cannot do it
    int exitCode;
    const char* output;
    const char* errors;
};

const Job jobs[] = {
    {"list", "nuxml select --value //mail library.xml",
     "xmlstarlet sel -t -v //_:mail -n library.xml", 0, "hall@library.example\n", ""},
    {"count", "nuxml select --count //book library.xml",
     "xmlstarlet sel -t -v 'count(//_:book)' library.xml", 0, "8\n", ""},
    {"columns", "nuxml select -c @id,title,year '//book[@id<9]' rows.xml",
     R"x(xmlstarlet sel -t -m '//book[@id<9]' -v @id -o "$(printf '\t')" -v title -o "$(printf '\t')")x"
     " -v year -n rows.xml",
     0, "1\tA, \"B\"\t1999\n2\tC\t\n", ""},
    {"CSV", "nuxml select --csv --header -c @id,title,year //book rows.xml", nullptr, 0,
     "@id,title,year\n1,\"A, \"\"B\"\"\",1999\n2,C,\n10,D; E,2001\n", ""},
    {"JSON", "nuxml select --json -c @id,title,year //book rows.xml", nullptr, 0,
     "[\n{\"@id\":\"1\",\"title\":\"A, \\\"B\\\"\",\"year\":\"1999\"},\n"
     "{\"@id\":\"2\",\"title\":\"C\",\"year\":null},\n"
     "{\"@id\":\"10\",\"title\":[\"D\",\"E\"],\"year\":\"2001\"}\n]\n",
     ""},
    {"edit in place over many files",
     "nuxml edit -i -s c/p=8080 one.xml bad.xml two.xml; echo $?; cat one.xml bad.xml two.xml",
     "xmlstarlet ed -L -u c/p -v 8080 one.xml bad.xml two.xml; echo $?; cat one.xml bad.xml "
     "two.xml",
     0, "3\n<c><p>8080</p></c><c><p>2</c><c><p>8080</p></c>",
     "bad.xml:1:8: error: the end tag does not match the start tag \"p\" (line 1)\n"},
    {"rename", "nuxml edit -r //b=c -r //@x=y <tiny.xml",
     "xmlstarlet ed -r //b -v c -r //@x -v y <tiny.xml", 0,
     "<a y=\"1\"><c>t<c z=\"2\"/></c><d/></a>", ""},
    {"move", "nuxml edit -m //b/b=a/d <tiny.xml", "xmlstarlet ed -m //b/b a/d <tiny.xml", 0,
     "<a x=\"1\"><b>t</b><d><b z=\"2\"/></d></a>", ""},
    {"delete", "nuxml edit -d a/b <tiny.xml", "xmlstarlet ed -d a/b <tiny.xml", 0,
     "<a x=\"1\"><d/></a>", ""},
    {"namespaces", "nuxml select --count -N //state library.xml",
     "xmlstarlet sel -N s=urn:lindenau:loan -t -v 'count(//s:state)' library.xml", 0, "8\n", ""},
    {"check with place", "nuxml check library.xml bad.xml", "xmlstarlet val -e library.xml bad.xml",
     3, "library.xml: well-formed\n",
     "bad.xml:1:8: error: the end tag does not match the start tag \"p\" (line 1)\n"},
    {"format in place, with line ends as found",
     "nuxml format -i --indent=4 dos.xml; od -c dos.xml | head -n 1; nuxml format --check dos.xml",
     "xmlstarlet fo -s 4 dos.xml > x && mv x dos.xml; od -c dos.xml; xmlstarlet fo dos.xml | cmp "
     "- dos.xml",
     1, "0000000   <   a   >  \\r  \\n                   <   b   /   >  \\r  \\n   <\n",
     "dos.xml: not formatted\n"},
    {"outline", "nuxml tree --lines=5 rows.xml", "xmlstarlet el -u rows.xml | sort | uniq -c", 0,
     "rows.xml: 10 elements, 3 attributes, 3 levels\nrows       1\n"
     "  book     3  @id=\"1\" \"2\" \"10\"  + 1 more name below\n    title  4  \"A, \"B\"\" \"C\" "
     "\"D\"\n",
     ""},
    {"convert", "nuxml convert --compact --numbers tiny.xml", nullptr, 0,
     "{\"a\":{\"@x\":1,\"b\":{\"#\":[\"t\",{\"b\":{\"@z\":2}}]},\"d\":\"\"}}\n", ""},
    {"convert back", "nuxml convert tiny.xml | nuxml convert --compact", nullptr, 0,
     "<?xml version=\"1.0\" encoding=\"UTF-8\"?><a x=\"1\"><b>t<b z=\"2\"/></b><d/></a>\n", ""},
    {"in a pipe", "cat tiny.xml | nuxml edit -d a/b - | nuxml format",
     "cat tiny.xml | xmlstarlet ed -d a/b - | xmlstarlet fo", 0, "<a x=\"1\">\n  <d/>\n</a>\n", ""},
    {"progress of a long job", "{ cat tiny.xml; sleep 1.2; echo; } | nuxml check --progress",
     nullptr, 0, "standard input: well-formed\n", "reading standard input: 0 kB\n"},
    {"typing mistakes", "nuxml slect; nuxml format --compct tiny.xml", nullptr, 2, "",
     "nuxml: there is no command \"slect\" (did you mean select?); see \"nuxml help\"\n"
     "nuxml: unknown option --compct (did you mean --compact?); see \"nuxml help format\"\n"},
    {"what is wrong with a path",
     "nuxml select a/b[ tiny.xml; nuxml explain 'a/b/e[1] | //b' tiny.xml", nullptr, 0,
     "tiny.xml:\na/b/e[1]\n"
     "  a           1  the document element, if it is \"a\"\n"
     "  /b          1  elements \"b\" right below them\n"
     "  /e          0  elements \"e\" right below them; there is b\n"
     "  [1]         0  number 1 of them; behind \"//\" of all, else of each parent\n"
     "//b\n  //b         2  elements \"b\" anywhere\n",
     "nuxml: a/b[: Unterminated Filter!; see \"nuxml help select\"\n"},
    {"missing file, no match",
     "nuxml select //x none.xml; echo $?; nuxml select --json //x tiny.xml",
     "xmlstarlet sel -t -v //x none.xml; echo $?; xmlstarlet sel -t -v //x tiny.xml", 1, "4\n[]\n",
     "nuxml: cannot open none.xml: No such file or directory\n"},
};

// In one line, which is no longer than the other tool's.
TEST(Shell, DoesTheJobsOfEveryDay) {
    runShell(
        R"(printf '<rows><book id="1"><title>A, "B"</title><year>1999</year></book><book id="2">'>rows.xml
printf '<title>C</title></book><book id="10"><title>D</title><title>E</title>' >>rows.xml
printf '<year>2001</year></book></rows>' >>rows.xml
printf '<c><p>1</p></c>' >one.xml; printf '<c><p>2</c>' >bad.xml; printf '<c><p>3</p></c>' >two.xml
printf '<a x="1"><b>t<b z="2"/></b><d/></a>' >tiny.xml; printf '<a><b/>\r\n</a>\r\n' >dos.xml)");
    for (const Job& job : jobs) {
        SCOPED_TRACE(job.name);
        const ShellCase expected[] = {{job.line, job.exitCode, job.output, job.errors}};
        expectShell(expected);
        if (job.peer != nullptr) {
            EXPECT_LE(std::string_view(job.line).size(), std::string_view(job.peer).size());
        }
    }
}

const ShellCase conversions[] = {
    // Everything that a document can hold comes back; text beside elements keeps its order.
    {R"(printf '<?d e?><!--c--><p xmlns="u" n="&lt;\t">t <b>1</b><![CDATA[<]]><!--i--><?d e?>&#65;</p>)"
     R"(<!--z-->' >m.xml; nuxml convert --comments --compact m.xml | tee m.json; nuxml convert --compact )"
     "m.json | tail -n 1 | nuxml convert --comments --compact | cmp - m.json",
     0,
     R"({"#":[{"?d":"e"},{"#comment":"c"},{"p":{"@xmlns":"u","@n":"< ","#":["t ",{"b":"1"},"<",)"
     R"({"#comment":"i"},{"?d":"e"},"A"]}},{"#comment":"z"}]})"
     "\n",
     ""},
    {R"(echo '{"r":{"@a":1.50,"n":null,"l":[true,[1,{"x":"\ud83d\ude00"}],""]}}' | nuxml convert --compact)",
     0,
     "<?xml version=\"1.0\" encoding=\"UTF-8\"?><r a=\"1.50\"><n/><l>true</l><l><item>1</item>"
     "<item><x>\xF0\x9F\x98\x80</x></item></l><l/></r>\n",
     ""},
    {"echo '[1,2]' | nuxml convert --compact --root=l | tail -c 36", 0,
     "<l><item>1</item><item>2</item></l>\n", ""},
    {R"x(for json in '[1]' '{"a b":1}' '{"a":}' '{"a":1' '{"a":01}' '{"a":1.}' '{"a":-1e}' '{"a":"\u0000"}' )x"
     R"x('{"a":"\ufffe"}' '{"a":"\ud83d"}' '{"a":"\q"}' '{"a":"\u12"}' '{"a":"b' '{1:2}' '{"a" 1}' )x"
     R"x('{"a":1} x' '{"a":{"@b":[1]}}' '{"#b":1}' '{"a":{"#":1}}' '{"a":{"#":[[1]]}}' '{"a":{"#comment":"--"}}' )x"
     R"x('{"a":{"?b":"?>"}}' '{"a":1,"b":2}' "$(printf '{"a":"\351"}')" "$(printf '{"a":"\1"}')"; )x"
     "do echo \"$json\" | nuxml convert; done 2>&1 | sed 's/^standard input:\\([0-9:]*\\): "
     "error//'",
     0,
     ": the JSON is no object with one member, the document element; --root=NAME makes one around "
     "it\n: \"a b\" is no name of XML\n: a value is missing\n: a comma or \"}\" is missing\n"
     ": \"01\" is no value of JSON\n: \"1.\" is no value of JSON\n: \"-1e\" is no value of JSON\n"
     ": a string holds a character that XML cannot have\n"
     ": a string holds a character that XML cannot have\n"
     ": a string holds a character that XML cannot have\n: a string holds an unknown escape\n"
     ": a string holds an unknown escape\n: a string has no end\n"
     ": the name of a member in quotation marks is missing\n: a colon is missing\n"
     ": something follows the end of the JSON\n: the member \"@b\" must be a text\n"
     ": there is no member \"#b\"\n: \"#\" must be an array\n: an array cannot stand in \"#\"\n"
     ": a comment cannot hold \"--\" or end with \"-\"\n: an instruction cannot hold \"?>\"\n"
     ": the JSON is no object with one member, the document element; --root=NAME makes one around "
     "it\n: a string is not UTF-8\n: a string holds a control character\n",
     ""},
    {R"x(printf '\357\273\277 \n{"a":\n{"b":tru}}' | nuxml convert; printf '{"a":[-1.5e-3,"\\"\\\\\\/\\b"]}' )x"
     R"x(| nuxml convert; printf '\357\273\277{"a":{"b":[-1.5e-3,"\\"\\\\\\/\\n\\u20ac"]}}' | nuxml convert --compact | )x"
     "tail -c +39; nuxml convert a b; nuxml convert --root='a b' m.xml",
     2, "<a><b>-1.5e-3</b><b>&quot;\\/\n\xE2\x82\xAC</b></a>\n",
     "standard input:3:6: error: \"tru\" is no value of JSON\n"
     "standard input:1:15: error: a string holds a character that XML cannot have\n"
     "nuxml: more than one file; see \"nuxml help convert\"\n"
     "nuxml: \"a b\" is no name; see \"nuxml help convert\"\n"},
    // Depth is no matter.
    {"{ yes '{\"a\":' | head -n 99999; echo '\"x\"'; yes '}' | head -n 99999; } | tr -d '\\n' "
     ">deep.json; "
     "nuxml convert --compact deep.json >d.xml && nuxml convert --compact d.xml | tr -d '\\n' | "
     "cmp - "
     "deep.json",
     0, "", ""},
};
TEST(Shell, ConvertsToJsonAndBack) { expectShell(conversions); }

} // namespace
