#include <gtest/gtest.h>

#include "shell.h"

namespace {

const ShellCase changes[] = {
    {R"(printf '<a><b>1</b><b k="x"/><c/></a>' >small.xml; nuxml edit --set 'a/b=<&>' small.xml)",
     0, "<a><b>&lt;&amp;&gt;</b><b k=\"x\">&lt;&amp;&gt;</b><c/></a>", ""},
    // The first "=" outside of brackets and quotes divides.
    {"nuxml edit --set \"a/b[@k='x']=1=2\" small.xml", 0, "<a><b>1</b><b k=\"x\">1=2</b><c/></a>",
     ""},
    {"nuxml edit --set 'a/b/@k=' --set 'a/b[1]/#text=2' small.xml", 0,
     "<a><b>2</b><b k=\"\"/><c/></a>", ""},
    // In the order given, each seeing what those before it did.
    {"nuxml edit --create 'a/d/e=5' --set 'a/d/e=6' --delete a/b --create 'a/b=7' small.xml", 0,
     "<a><c/><d><e>6</e></d><b>7</b></a>", ""},
    {"printf '' | nuxml edit --create a/b=1 small.xml", 0, "<a><b>1</b><b k=\"x\">1</b><c/></a>",
     ""},
    // Attributes are made as well, by the name that is given where there is none of its local name.
    {"nuxml edit --create a/b/@K=5 --create a/new/@p:id=6 --create a/new/@p:id=7 small.xml", 0,
     "<a><b K=\"5\">1</b><b k=\"5\"/><c/><new p:id=\"7\"/></a>", ""},
    {"nuxml edit --delete //b --delete '//@k' small.xml; echo $?; nuxml edit --delete '//@k' "
     "small.xml",
     0, "1\n<a><b>1</b><b/><c/></a>", "nuxml: small.xml: nothing matched //@k\n"},
    // What stands below a deleted node goes with it.
    {"printf '<r><a><a/>x</a><b/></r>' | nuxml edit --delete //a", 0, "<r><b/></r>", ""},
    // Setting the text of an element takes the rest of its texts away.
    {"printf '<r>x<a/>y</r>' | nuxml edit --set 'r | r/#text=z'", 0, "<r>z<a/></r>", ""},
    // The text keeps its lines.
    {R"(printf '<a>\n  <b/>\n</a>\n' | nuxml edit --create a/c=1)", 0,
     "<a>\n  <b/>\n  <c>1</c>\n</a>\n", ""},
    {R"(printf '<a k="\303\251">\n  <b/>\n</a>\n' | nuxml edit --raw --large --create a/c=1)", 0,
     "<a k=\"\xC3\x83\xC2\xA9\">\n  <b/>\n  <c>1</c>\n</a>\n", ""},
    {R"(printf '<a>\r\n<b/>\r\n</a>' | nuxml edit --create a/c=1)", 0,
     "<a>\r\n  <b/>\r\n  <c>1</c>\r\n</a>", ""},
    {R"(printf '<a>\r<b/>\r</a>\r' | nuxml edit --create a/c=1)", 0,
     "<a>\r  <b/>\r  <c>1</c>\r</a>\r", ""},
    // Renamed and moved: each node once, and only where that leads to a document.
    {"nuxml edit -r '//b | //b=d' -m a/d/@k=a/c small.xml", 0, "<a><d>1</d><d/><c k=\"x\"/></a>",
     ""},
    {R"(printf '<a>\n<b/>x <i>y</i>\n z</a>' | nuxml edit --create a/c=1)", 0,
     "<a><b/>x <i>y</i>\n z<c>1</c></a>", ""},
};
TEST(Edit, AppliesChangesInOrder) { expectShell(changes); }

const ShellCase files[] = {
    {"nuxml edit -i --set a/c=8 small.xml; cat small.xml; ls -A | grep -c '^\\.'", 1,
     "<a><b>1</b><b k=\"x\"/><c>8</c></a>0\n", ""},
    {"nuxml edit -o other.xml --delete a/b small.xml; cat other.xml; nuxml edit --set a/c=9 -o - - "
     "<other.xml",
     0, "<a><c>8</c></a><a><c>9</c></a>", ""},
    // All changes or none.
    {"nuxml edit -i --set a/c=9 --set a/missing=1 small.xml; echo $?; nuxml edit -i --set a/c=9 "
     "--set 'a/c[=1' small.xml; echo $?; nuxml select --value a/c small.xml",
     0, "1\n2\n8\n",
     "nuxml: small.xml: nothing matched a/missing; --create makes what is missing\n"
     "nuxml: --set a/c[=1 lacks \"=VALUE\"; see \"nuxml help edit\"\n"},
    // An output that is open is written to where it stands; what is no file is refused.
    {"nuxml edit -o /dev/stdout --delete a/b small.xml | cat; { printf 'first '; nuxml edit -o "
     "/dev/stdout --delete a/b small.xml; printf ' last'; } >whole; cat whole; mkfifo queue; nuxml "
     "edit -o queue --set a/c=9 other.xml; nuxml edit -i --set a/c=9 queue; nuxml tame -i queue",
     4, "<a><c>8</c></a>first <a><c>8</c></a> last",
     "nuxml: cannot write queue: Cannot create file \"queue\". It is a pipe\n"
     "nuxml: queue: only a file can be replaced\nnuxml: queue: only a file can be replaced\n"},
    {"cp library.xml copy; (ulimit -f 0; nuxml edit -o copy --set a/c=9 small.xml 2>&1 || echo $?) "
     "| cat; cmp library.xml copy; ls -A | grep -c '^\\.'",
     1, "nuxml: cannot write copy: Stream write error: File too large\n4\n0\n", ""},
};
TEST(Edit, WritesFilesWholeOrNotAtAll) { expectShell(files); }

// What a file was stays: its encoding, mark, document type, line ends and the blanks of its text.
const ShellCase forms[] = {
    {R"(printf '<?xml version="1.0" encoding="ISO-8859-1"?>\r\n<!--c-->\r\n<!DOCTYPE a SYSTEM "x" [\r\n)"
     R"(<!ENTITY e "v">\r\n]>\r\n<a\r\n  x="&#10;">\r\n <b>\351 <i>1</i> <i>2</i></b>\r\n</a>\r\n)"
     R"(<!--d-->\r\n' >form; nuxml edit -i --set a/@y= form; nuxml edit -i --create a/@y=Ж form;)"
     R"(iconv -f latin1 form)",
     0,
     "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\r\n<!--c-->\r\n<!DOCTYPE a SYSTEM \"x\" "
     "[\r\n<!ENTITY e \"v\">\r\n]>\r\n<a x=\"&#10;\" y=\"&#1046;\">\r\n  <b>\xC3\xA9 <i>1</i> "
     "<i>2</i></b>\r\n</a>\r\n<!--d-->\r\n",
     "nuxml: form: nothing matched a/@y; --create makes what is missing\n"},
    {R"(printf '\357\273\277<a>\n<b/>\n</a>' | nuxml edit --set a/b=1)", 0,
     "\xEF\xBB\xBF<a>\n  <b>1</b>\n</a>", ""},
    {R"(printf '<a>\n<b>x<i xml:space="default">y</i></b>\n</a>' | nuxml edit --create a/@z=1)", 0,
     "<a z=\"1\">\n  <b>x<i xml:space=\"default\">y</i></b>\n</a>", ""},
    {R"(printf '<?xml version="1.0"?>\n<a>1</a>\n' | iconv -t UTF-16 | nuxml edit --set a=2 | )"
     R"(iconv -f UTF-16)",
     0, "<?xml version=\"1.0\"?>\n<a>2</a>\n", ""},
    {R"(printf '<?xml version="1.0" encoding="euc-jp"?><a>\244\242</a>' >jp; nuxml edit -i --set a=x jp; )"
     "echo $?; iconv -f euc-jp jp; nuxml edit -i --force --create a/@b=1 jp; cat jp",
     0,
     "3\n<?xml version=\"1.0\" encoding=\"euc-jp\"?><a>\xE3\x81\x82</a><?xml version=\"1.0\" "
     "encoding=\"UTF-8\"?><a b=\"1\">\xE3\x81\x82</a>",
     "nuxml: jp: the encoding euc-jp cannot be written, so it becomes UTF-8\n"
     "nuxml: jp stays as it is; --force writes it all the same\n"
     "nuxml: jp: the encoding euc-jp cannot be written, so it becomes UTF-8\n"},
};
TEST(Edit, KeepsTheForm) { expectShell(forms); }

const ShellCase mistakes[] = {
    {"printf '<a><b>1</b><c x=\"1\" y=\"2\"/></a>' >two; for change in 'r a/b=b c' 'r "
     "a/b=xmlns:a:b' "
     "'r a/b/#text=c' 'r a/c/@x=y' 'm a/b=a/q' 'm a/q=a/b'; do nuxml edit -${change%% *} "
     "\"${change#* }\" two 2>&1 | cut -d \\; -f 1; done",
     0,
     "nuxml: \"b c\" is no name\nnuxml: \"xmlns:a:b\" is no name\n"
     "nuxml: only elements and attributes are renamed\n"
     "nuxml: there is an attribute \"y\" already\nnuxml: there is no element at a/q to move to\n"
     "nuxml: two: nothing matched a/q\n",
     ""},
    {"nuxml edit small.xml", 2, "",
     "nuxml: there is nothing to do: --set, --create, --rename, --move or --delete is missing; see "
     "\"nuxml help "
     "edit\"\n"},
    {"nuxml edit --set", 2, "", "nuxml: the value of --set is missing; see \"nuxml help edit\"\n"},
    {"nuxml edit --delete '' small.xml", 2, "",
     "nuxml: the path of --delete is empty; see \"nuxml help edit\"\n"},
    {"nuxml edit -i --delete a/b", 2, "", "nuxml: -i needs a file; see \"nuxml help edit\"\n"},
    {"nuxml edit --delete a small.xml", 2, "",
     "nuxml: a document without its document element is none, so --delete a is refused; see "
     "\"nuxml help edit\"\n"},
    {"nuxml edit --delete \"a[contains(b,'x')]\" small.xml", 2, "",
     "nuxml: a[contains(b,'x')]: the path language has no function contains(); see \"nuxml help "
     "edit\"\n"},
    {"nuxml edit --create 'other/x=1' small.xml", 2, "",
     "nuxml: small.xml: the path other/x: A document can only have 1 rootnode\n"},
    {"nuxml edit --create '//x/@y=1' small.xml", 2, "",
     "nuxml: small.xml: the path //x/@y: It is not possible to use the soCreate option in a // "
     "search!\n"},
    {"nuxml edit --set a=1 missing.xml", 4, "",
     "nuxml: cannot open missing.xml: No such file or directory\n"},
    {"nuxml edit --set a=1 -o missing/x.xml small.xml", 4, "",
     "nuxml: cannot write missing/x.xml: Cannot create file \"missing/x.xml\". No such file or "
     "directory\n"},
};
TEST(Edit, TellsMistakes) { expectShell(mistakes); }

} // namespace
