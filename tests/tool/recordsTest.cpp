#include <gtest/gtest.h>

#include "shell.h"

namespace {

const ShellCase forms[] = {
    {"printf '<a xmlns=\"u\"><r i=\"1\">x</r>\n<r><t>y</t></r></a>' >a.xml; nuxml records a/r "
     "a.xml",
     0, "<r xmlns=\"u\" i=\"1\">x</r>\n<r xmlns=\"u\"><t>y</t></r>\n", ""},
    {"nuxml records --json //r <a.xml; nuxml records --count r a.xml a.xml", 0,
     "{\"@i\":\"1\",\"#text\":\"x\"}\n{\"t\":\"y\"}\n4\n", ""},
    {"nuxml records -c @i,t --csv --header r a.xml; nuxml records --columns=t,. r a.xml", 0,
     "@i,t\n1,\n,y\n\tx\ny\t\n", ""},
    {"nuxml records b a.xml", 1, "", ""},
    {"nuxml records 'a[1]' a.xml", 2, "",
     "nuxml: \"a[1]\" is no path of records: a name, or names from the root down with \"/\" "
     "between "
     "them; see \"nuxml help records\"\n"},
    {"printf '<a>\n<r>1</r><r>2</a>' | nuxml records r", 3, "<r>1</r>\n",
     "standard input:2:13: error: the end tag does not match the start tag \"r\" (line 2)\n"},
    {"nuxml records --limit 10 r a.xml", 3, "",
     "a.xml:1:14: error: the record is longer than 10 bytes\n"},
    {"{ printf '<a>\n<r '; head -c 300000 /dev/zero | tr '\\0' x; } | nuxml records --limit 99k r",
     3, "", "standard input:2:1: error: what begins here is longer than 101376 bytes\n"},
    {"printf '<!DOCTYPE a SYSTEM \"x\"><a><r>&eacute;&none;</r></a>' | nuxml records --json r", 0,
     "\"\xC3\xA9&none;\"\n", ""},
};
TEST(RecordsCommand, ShowsRecordsInEveryForm) { expectShell(forms); }

const ShellCase mistakes[] = {
    {"nuxml records; for options in '--part 1/2 --jobs 2' '--plain --index-file=x --jobs 2' "
     "--plain "
     "'--part 3/2' '--part 1' '--limit 3q' '--limit 18014398509481984k' '--jobs 0' '--jobs 1025' "
     "--csv '--json --count' '--index --json' '-c a,,b'; do nuxml records $options r a.xml; done "
     "2>&1 "
     "| cut -d \\; -f 1",
     0,
     "nuxml: --part and --jobs exclude each other\n"
     "nuxml: --plain and --index-file exclude each other\n"
     "nuxml: --plain and --index-file are for --part and --jobs\n"
     "nuxml: --part is I/N, 1/4 to 4/4 for example, not 3/2\n"
     "nuxml: --part is I/N, 1/4 to 4/4 for example, not 1\n"
     "nuxml: --limit is a number of bytes, 512M for example, not 3q\n"
     "nuxml: --limit is a number of bytes, 512M for example, not 18014398509481984k\n"
     "nuxml: --jobs is a number from 1 to 1024, not 0\n"
     "nuxml: --jobs is a number from 1 to 1024, not 1025\n"
     "nuxml: --csv, --tsv and --header are for --columns\n"
     "nuxml: --xml, --json, --columns and --count exclude each other\n"
     "nuxml: --index takes one file, and --index-file\n"
     "nuxml: \"a,,b\" are no columns: names, \"@\" and a name, or \".\", with commas between "
     "them\n",
     "nuxml: a path is missing; see \"nuxml help records\"\n"},
};
TEST(RecordsCommand, TellsMistakes) { expectShell(mistakes); }

const ShellCase parts[] = {
    {R"({ printf '<a>'; seq -f '<r>%g</r><!--<r>-->' 200000; printf '</a>'; } >l.xml;)"
     R"( nuxml records r l.xml >one; nuxml records --jobs 3 r l.xml | cmp - one; sort one >sorted;)"
     R"( nuxml records --jobs 3 --unordered r l.xml | sort | cmp - sorted)",
     0, "", ""},
    {"nuxml records --part 1/3 r l.xml", 2, "",
     "nuxml: a part needs to know where it can begin: make an index by \"nuxml records --index "
     "l.xml\", or promise by --plain that the tag of records stands nowhere else; see \"nuxml help "
     "records\"\n"},
    {"nuxml records --index l.xml; for i in 1 2 3; do nuxml records --part $i/3 r l.xml; done | "
     "cmp "
     "- one; nuxml records --jobs 2 r l.xml | cmp - one",
     0, "", ""},
    {"nuxml records --plain --part 1/3 r l.xml 2>&1 >/dev/null | sed 's/ (at byte.*//'", 0,
     "l.xml: error: \"<r\" stands in a comment, a CDATA section, a record or away from the path: "
     "parts need an index\n",
     ""},
    {"sed 's/<!--<r>-->//' l.xml >p.xml; for i in 1 2 3 4; do nuxml records --plain --part $i/4 r "
     "p.xml; done | cmp - one; nuxml records --plain --jobs 2 r p.xml | cmp - one",
     0, "", ""},
    {"sed 's/150000<.*/&<!--<r>-->/' p.xml >q.xml; for f in p q; do nuxml records --jobs 3 r "
     "$f.xml "
     "| cmp - one; nuxml records --jobs 3 --unordered r $f.xml | sort | cmp - sorted; done",
     0, "", ""},
    {"sed 's/150000/&<x>/' p.xml >g.xml; nuxml records r g.xml >two 2>why; nuxml records --jobs 2 "
     "r "
     "g.xml 2>whyJobs | cmp - two; cmp why whyJobs",
     0, "", ""},
    // A fault ends the output where one pass would end.
    {"sed 's/150000/&<x>/' l.xml >f.xml; nuxml records r f.xml >one 2>why; nuxml records --jobs 2 "
     "r "
     "f.xml 2>whyJobs | cmp - one; cmp why whyJobs",
     0, "", ""},
    {"touch -d '2 days ago' l.xml; nuxml records --part 2/3 r l.xml 2>&1 | cut -c 1-33", 0,
     "nuxml: l.xml was changed behind i\n", ""},
    {"rm l.xml; nuxml records --part 2/3 r l.xml", 4, "",
     "nuxml: cannot open l.xml: No such file or directory\n"},
    {"nuxml records --plain --part 2/3 'a/*' p.xml", 2, "",
     "nuxml: --plain needs the name of the records, the last one of the path; see \"nuxml help "
     "records\"\n"},
    {"nuxml records --jobs 2 r none.xml", 4, "",
     "nuxml: cannot open none.xml: No such file or directory\n"},
    {"nuxml records --jobs 2 r .", 4, "", "nuxml: .: only a regular file can be read in parts\n"},
    {": >empty.xml; nuxml records --jobs 2 r empty.xml", 3, "",
     "empty.xml:1:1: error: the document has no root element\n"},
    {"nuxml records --index --index-file=/nowhere/i a.xml 2>&1 | cut -c 1-30", 0,
     "nuxml: cannot write /nowhere/i\n", ""},
    {"nuxml records --jobs 2 r - <p.xml", 2, "",
     "nuxml: --part and --jobs are for one file; see \"nuxml help records\"\n"},
};
TEST(RecordsCommand, SharesAFile) { expectShell(parts); }

} // namespace
