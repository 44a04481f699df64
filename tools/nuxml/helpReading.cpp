#include "helpOptions.h"

namespace tool::help {

namespace {

constexpr OptionText generalOptions[] = {
    {"-h, --help", "show this, or behind a command what that does"},
    {"--version", "show the version"},
};

constexpr OptionText eventsOptions[] = {
    {"--json", "each line is an object of JSON"},
    {"--positions", "with the line and the column where the reader stood at the event"},
    white,
    raw,
    {"--large", "read in pieces, as everything from 32 MiB on is: every character counts as a "
                "column, the end as well, and only declared or marked UTF-8 is UTF-8; standard "
                "input is shown as it comes"},
    progress,
    onlyFiles,
};

constexpr OptionText selectOptions[] = {
    {"--xml", "as XML; this is what is shown without an option"},
    {"--value", "the text of each node, of elements that right below them; control characters and "
                "the backslash are escaped, so that each is one line"},
    {"--path", "a path that leads to just this node"},
    {"--count", "only how many there are"},
    {"--json", "an array of the nodes, as \"nuxml convert\" writes them, one a line"},
    {"-c, --columns=PATH,PATH...",
     "a row of texts for each node: what is at these paths from there, \".\" for its own text; "
     "several at one path are separated by \"; \" and an array in JSON"},
    {"--tsv", "columns are separated by tabs, and escaped like --value; without an option"},
    {"--csv", "columns are separated by commas, with quotation marks where they are needed"},
    {"--header", "the paths of the columns stand in front"},
    {"--numbers", "numbers, true and false in JSON without quotation marks"},
    {"-I, --ignore-case", "without regard to letter case in names and values"},
    {"-N, --ignore-namespace", "without regard to prefixes, by local names"},
    white,
    raw,
    large,
    progress,
    {"--", "what follows is the path and files"},
};

constexpr OptionText explainOptions[] = {
    {"-I, --ignore-case", "without regard to letter case in names and values"},
    {"-N, --ignore-namespace", "without regard to prefixes, by local names"},
    white,
    raw,
    large,
    progress,
    {"--", "what follows is the path and files"},
};

constexpr OptionText treeOptions[] = {
    {"--lines=N", "as many lines at most; without the option what the terminal has, else 24"},
    raw,
    large,
    progress,
    onlyFiles,
};

constexpr OptionText checkOptions[] = {
    {"--quiet", "say nothing of documents, only with the exit code"},
    progress,
    onlyFiles,
};

} // namespace

const HelpText general{
    "COMMAND [OPTION...] [ARGUMENT...]", "Shows, searches, changes and converts XML.",
    generalOptions,
    R"(Documents are read as XML 1.0 and its namespaces mean them. A fault is told as
"FILE:LINE:COLUMN: error: MESSAGE". Entities of the document type are expanded, nothing outside of
the document is ever fetched.

Data goes to standard output, everything else to standard error, with colours and progress only
where that is a terminal. NO_COLOR in the environment turns colours off.

The exit code is the highest one of all inputs:

  0  done
  1  nothing matched, or a difference
  2  the command line is wrong
  3  a fault in the XML ended the work on an input, or kept a file from being replaced
  4  an input cannot be read, the output cannot be written, or there is not enough memory
)",
    R"(  nuxml select --value "//book[@lang='en']/title" library.xml
  nuxml edit -i --set config/server/port=8080 config.xml
  nuxml help select                        what a command does, and its options
)"};

const HelpText events{
    "[OPTION...] [FILE...]",
    R"(Shows each event that the SAX2 reader reports, one a line. "-" or no file is standard input. A
fault that does not end the parse is a line "warning" or "error".
)",
    eventsOptions,
    R"(References such as "&amp;" stand as they were written. Without --json, control characters,
unpaired surrogates and the backslash are escaped.

Input of 32 MiB and more is never held in memory as a whole.

With several files the work goes on behind one that fails, and the highest exit code counts: 3 when
a fault ended a parse, 4 when a file could not be read.
)",
    R"(  nuxml events library.xml
  nuxml events --positions --json library.xml | grep '"event":"warning"'
  curl --silent https://example.org/feed.xml | nuxml events
)"};

const HelpText select{
    "PATH [OPTION...] [FILE...]",
    R"(Shows the nodes at a path, one a line. "-" or no file is standard input. The path starts at the
document: "library/shelf" and "/library/shelf" are the same, "//book" is found anywhere.

  shelf/book  *  book/@id  //title  a | b              steps and alternatives
  book[3]  book[last()]  book[note]  book[@id='b1']    filters: position, child, attribute
  book[title='Dune']  shelf[@count>10]                 values: text in quotes, or numbers

"nuxml explain PATH" tells what a path means.
)",
    selectOptions,
    R"(An attribute step finds local names in any letter case: "@id" is also "loan:id". With several
files, --path and --count put the name of the file in front.

The exit code is 0 when anything matched in any of the files, and 1 when nothing did. The work goes
on behind a file that fails with 3 or 4; a mistake in the path ends it with 2.

The whole document is held in memory, that of standard input as well; "nuxml events" shows documents
of any length.
)",
    R"(  nuxml select "//book[@lang='en']/title" library.xml
  nuxml select --value -N //state/@due library.xml
  nuxml select --csv -c @id,title,author //book library.xml
)"};

const HelpText explain{
    "PATH [OPTION...] [FILE...]",
    R"(Tells what each step and filter of a path means. With a file it also tells how many nodes pass
each of them, and what there is instead where nothing is left.
)",
    explainOptions,
    R"(The exit code is that of "nuxml select" with the same path and files, and 0 without a file.
)",
    R"(  nuxml explain "//book[@lang='en']/title"
  nuxml explain "//book[@lang='en']/title" library.xml
  nuxml explain -N //state/@due library.xml
)"};

const HelpText tree{
    "[OPTION...] [FILE...]",
    R"(Shows what is in a document: the names of its elements in their order, how many there are, and a
few of their attributes and texts, on a screen at most. "-" or no file is standard input.
)",
    treeOptions,
    R"(Where the lines do not suffice, what stands near the document element comes first, and of that
what there is most of. Nothing of a document is kept but names, numbers and examples, so it may have
any length.
)",
    R"(  nuxml tree library.xml
  nuxml tree --lines=100 unknown.xml
  curl --silent https://example.org/feed.xml | nuxml tree
)"};

const HelpText check{
    "[OPTION...] [FILE...]",
    R"(Says of each document whether it is well-formed by XML 1.0 and its namespaces, with the first
fault where it is not. "-" or no file is standard input. The exit code is 3 if any of them is not.
)",
    checkOptions,
    R"(Nothing of a document is kept, so it may have any length.
)",
    R"(  nuxml check *.xml
  find . -name '*.svg' -exec nuxml check {} +
  nuxml check --quiet config.xml || echo broken
)"};

} // namespace tool::help
