#include "help.h"

namespace tool::help {

const std::string_view general = R"(usage: nuxml COMMAND [OPTION...] [ARGUMENT...]

Shows and converts XML.

Commands
  events     show documents as the events of the SAX2 reader, one a line
  format     write a document with line breaks and indentation, or on one line
  select     show the nodes at a path, one a line
  edit       set, create and delete nodes at paths, and write the document
  check      say whether documents are well-formed
  tame       write a document without what readers take differently
  escape     turn plain text into XML character data
  unescape   turn XML character data into plain text

Options
  --help     show this, or with a command what it does
  --version  show the version

Examples
  nuxml events library.xml                 what the reader sees in a document
  nuxml events --json - < library.xml      the same for programs, from standard input
  nuxml escape 'Tom & Jerry <tom@home>'    text to put into a document

Documents are read as XML 1.0 and its namespaces mean them. A fault is told as
"FILE:LINE:COLUMN: error: MESSAGE". Entities of the document type are expanded, nothing outside of
the document is ever fetched.

Data goes to standard output, everything else to standard error.

Exit codes
  0  done
  1  nothing matched, or a difference
  2  the command line is wrong
  3  a fault in the XML ended the work on an input, or kept a file from being replaced
  4  an input cannot be read, the output cannot be written, or there is not enough memory
The highest one counts when several inputs end differently.
)";

const std::string_view events =
    R"(usage: nuxml events [--json] [--positions] [--white=WHICH | --raw] [--large] [FILE...]

Shows each event that the SAX2 reader reports, one a line. "-" or no file is standard input. A fault
that does not end the parse is a line "warning" or "error".

Options
  --json       each line is an object of JSON
  --positions  with the line and the column where the reader stood at the event
  --white=all|inline|drop
               which white space between tags is shown: all, that without a line break, or none
  --raw        by the rules of the reader alone, which forgives much and expands no entities
  --large      read in pieces, as everything from 32 MiB on is: every character counts as a
               column, the end as well, and only declared or marked UTF-8 is UTF-8;
               standard input is shown as it comes
  --           everything behind it is a file

References such as "&amp;" stand as they were written. Without --json,
control characters, unpaired surrogates and the backslash are escaped.

Input of 32 MiB and more is never held in memory as a whole.

With several files the work goes on behind one that fails, and the highest exit code counts: 3 when a
fault ended a parse, 4 when a file could not be read.

Examples
  nuxml events library.xml
  nuxml events --positions --json library.xml | grep '"event":"warning"'
  curl --silent https://example.org/feed.xml | nuxml events
)";

const std::string_view format = R"(usage: nuxml format [OPTION...] [-o FILE | -i] [FILE]

Writes a document with line breaks and two blanks of indentation a level. "-" or no file is standard
input, and standard output unless -o or -i says otherwise.

Options
  --compact  without line breaks and indentation
  --white=all|inline|drop
             which white space between tags stays: all, that without a line break (this is what is
             done without the option), or none
  --raw      read by the rules of the reader alone, which forgives much
  --force    replace a file whatever speaks against it, and read on behind faults
  --large    read in pieces, which takes less memory; see "nuxml events --help"
  -o FILE    write to FILE, which may be the one that is read
  -i         write to the file that is read
  --         everything behind it is a file

The content stays what it was for every other reader: elements that hold text stay on their lines, and
so does what an attribute xml:space preserves. Entities are expanded. Elements without content end
with "/>".

Encoding, byte-order mark, document type and the kind of line ends are those of the source, and the last
line ends as well. An encoding that cannot be written, most of those with several bytes a character,
becomes UTF-8, in the declaration as well.

A file is replaced when the new one is complete, otherwise the old one stays. It also stays, and the
exit code is 3, when anything was wrong with the document or its encoding cannot be written.

The whole document is held in memory, that of standard input as well; "nuxml events" shows documents
of any length.

Examples
  nuxml format library.xml
  nuxml format --compact -o small.xml library.xml
  curl --silent https://example.org/feed.xml | nuxml format | less
)";

const std::string_view select =
    R"(usage: nuxml select PATH [OPTION...] [FILE...]

Shows the nodes at a path, one a line. "-" or no file is standard input. The path starts at the
document: "library/shelf" and "/library/shelf" are the same, "//book" is found anywhere.

  shelf/book  *  book/@id  //title  a | b              steps and alternatives
  book[3]  book[last()]  book[note]  book[@id='b1']    filters: position, child, attribute
  book[title='Dune']  shelf[@count>10]                 values: text in quotes, or numbers

Options
  --xml    as XML; this is what is shown without an option
  --value  the text of each node, of elements that right below them; control characters and the
           backslash are escaped, so that each is one line
  --path   a path that leads to just this node
  --count  only how many there are
  -I, --ignore-case       without regard to letter case in names and values
  -N, --ignore-namespace  without regard to prefixes, by local names
  --white=all|inline|drop  which white space between tags is text; "inline": that without line break
  --raw    read by the rules of the reader alone, which forgives much
  --large  read in pieces, which takes less memory; see "nuxml events --help"
  --       what follows is the path and files

An attribute step finds local names in any letter case: "@id" is also "loan:id". With several files,
--path and --count put the name of the file in front.

The exit code is 0 when anything matched in any of the files, and 1 when nothing did. The work goes on
behind a file that fails with 3 or 4; a mistake in the path ends it with 2.

The whole document is held in memory, that of standard input as well; "nuxml events" shows documents
of any length.

Examples
  nuxml select "//book[@lang='en']/title" library.xml
  nuxml select --value -N //state/@due library.xml
  nuxml select --path "//book[note]" library.xml
)";

const std::string_view edit =
    R"(usage: nuxml edit CHANGE... [OPTION...] [-i | -o FILE] [FILE]

Changes a document and writes it. "-" or no file is standard input, and standard output unless -o or
-i says otherwise. Paths are those of "nuxml select".

Changes, made in the order given, each to all nodes at its path
  --set PATH=VALUE     gives the nodes that text
  --create PATH=VALUE  the same, and makes the elements and the attribute that are missing
  --delete PATH        takes the nodes away with all that is below them

The first "=" outside of brackets and quotes ends the path. VALUE is plain text: "<" and "&" are
escaped where they are written.

Options
  --white=all|inline|drop
           which white space between tags stays; see "nuxml format --help"
  --raw    read by the rules of the reader alone, which forgives much
  --force  replace a file whatever speaks against it, and read on behind faults
  --large  read in pieces, which takes less memory; see "nuxml events --help"
  -o FILE  write to FILE, which may be the one that is read
  -i       write to the file that is read
  --       everything behind it is a file

All changes are made or none: when one of them matches nothing, nothing is written, and the exit code
is 1. A file is replaced when the new one is complete. It stays as it is, and the exit code is 3, when
anything was wrong with the document or its encoding cannot be written.

A document that was read with line breaks and indentation is written as "nuxml format" does, another
one as with --compact. Encoding, document type and line ends stay.

The whole document is held in memory, that of standard input as well; "nuxml events" shows documents
of any length.

Examples
  nuxml edit -i --set config/server/port=8080 config.xml
  nuxml edit --create "config/log/@level=debug" config.xml
  nuxml edit --delete "//book[@lang='fr']" -o rest.xml library.xml
)";

const std::string_view check = R"(usage: nuxml check [--quiet] [FILE...]

Says of each document whether it is well-formed by XML 1.0 and its namespaces, with the first fault
where it is not. "-" or no file is standard input. The exit code is 3 if any of them is not.

Options
  --quiet  say nothing of documents, only with the exit code
  --       everything behind it is a file

Nothing of a document is kept, so it may have any length.

Examples
  nuxml check *.xml
  find . -name '*.svg' -exec nuxml check {} +
  nuxml check --quiet config.xml || echo broken
)";

const std::string_view tame = R"(usage: nuxml tame [--white=all|inline|drop] [-o FILE | -i] [FILE]

Writes a document in a form that strict and forgiving readers take alike: UTF-8, double quotes, one
blank before attributes, no document type, its entities expanded and its defaults put in. "-" or no
file is standard input, and standard output unless -o or -i says otherwise.

Options
  --white=all|inline|drop
           which white space between tags is kept for forgiving readers, as a reference: all, that
           without a line break (this is what is done without the option), or none
  -o FILE  write to FILE, which may be the one that is read
  -i       write to the file that is read
  --       everything behind it is a file

A document that is not well-formed ends the work with exit code 3, and a file stays as it is.

Examples
  nuxml tame drawing.svg > plain.svg
  nuxml tame -i config.xml
  nuxml tame legacy.xml | nuxml events --raw
)";

const std::string_view escape = R"(usage: nuxml escape [TEXT]

Writes text as XML character data: ' " & < > become references. TEXT is followed by a line feed.
Without TEXT, or with "-", standard input is converted as a whole and nothing is added. Both must be
UTF-8.

Options
  --  what follows is the text, also if it begins with "-"

Examples
  nuxml escape 'Tom & Jerry <tom@home>'
  nuxml escape < notes.txt
  nuxml escape -- '-5 < x'
)";

const std::string_view unescape = R"(usage: nuxml unescape [TEXT]

Writes XML character data as plain text: the references of XML and HTML 4.01 and numbers such as
"&#233;" and "&#xE9;" become characters. What is no known reference stays as it is. TEXT is followed
by a line feed. Without TEXT, or with "-", standard input is converted as a whole and nothing is
added. Both must be UTF-8.

A number gives 16 bits. Two that are the halves of one character are joined, one alone is written as
"\uD83D". A number that cannot be read ends the command with exit code 3.

Options
  --  what follows is the text, also if it begins with "-"

Examples
  nuxml unescape 'caf&eacute; &amp; bar'
  nuxml unescape '&#xD83D;&#xDE00;'
  nuxml escape < notes.txt | nuxml unescape
)";

} // namespace tool::help
