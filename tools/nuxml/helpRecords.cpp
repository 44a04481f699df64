#include "helpOptions.h"

namespace tool::help {

namespace {

constexpr OptionText recordsOptions[] = {
    {"--xml", "each record as XML that stands alone, with the namespaces declared that are in "
              "scope; this is what is shown without an option"},
    {"--json", "each record as a line of JSON: attributes are members with \"@\" in front, child "
               "elements members or, where a name repeats, arrays, text beside them is \"#text\""},
    {"-c, --columns=PATH,PATH...",
     "each record as a row of what stands at these paths in it: \"title,@id,author/@name\"; \".\" "
     "is "
     "the text of the record itself; several values have \"; \" between them"},
    {"--csv", "rows with commas, quoted where needed"},
    {"--tsv", "rows with tabs, which stand as \\t in values; this is what is shown without an "
              "option"},
    {"--header", "the paths of the columns stand in front; of parts, the first one has them"},
    {"--count", "only how many there are"},
    {"--limit=BYTES", "records that are longer are a fault; 256M without the option"},
    {"--jobs=N", "read the file by N workers; the output is the same"},
    {"--unordered", "with --jobs, records as they come"},
    {"--part=I/N", "only the records that begin in the I-th of N shares of the file"},
    {"--plain", "with --part or --jobs, no index: the tag of records stands nowhere else, not in "
                "comments, CDATA sections or records; where it does, a part ends with a fault"},
    {"--index", "write FILE.nuxidx, which says where parts can begin; no path is given"},
    {"--index-file=NAME", "the index under another name, to write or to use"},
    progress,
    {"--", "what follows is the path and files"},
};

} // namespace

const HelpText records{
    "PATH [OPTION...] [FILE...]",
    R"(Shows the elements at a path one after the other, in the memory of one, however long the
document is. "-" or no file is standard input. A name stands for every element of that name, wherever
it is (inside of a record it belongs to that); names with "/" between them for elements from the root
down, "*" for any name. Prefixes do not matter.
)",
    recordsOptions,
    R"(The document is checked as it is read: what is not well-formed ends the work with 3 when the
records before it were shown.

With --part, workers on many machines share one file, in UTF-8; the outputs of all parts are together
that of one pass, whatever N. With an index this holds for every document. The index is of one state
of its file: of another size, time of change or other ends it is refused. A part that has no records
ends with 0.

The exit code is 0 when there was any record, and 1 when there was none.
)",
    R"(  nuxml records dump/page dump.xml > pages.txt
  nuxml records --columns title,@id --csv //page dump.xml
  nuxml records --json --jobs 8 //page dump.xml
  nuxml records --index dump.xml && nuxml records --part 3/64 --json //page dump.xml
)"};

} // namespace tool::help
