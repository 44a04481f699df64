#include "helpOptions.h"

namespace tool::help {

namespace {

constexpr OptionText formatOptions[] = {
    {"--compact", "without line breaks and indentation"},
    white,
    raw,
    force,
    large,
    toFile,
    inPlace,
    progress,
    onlyFiles,
};

constexpr OptionText editOptions[] = {
    {"--set PATH=VALUE", "gives the nodes that text"},
    {"--create PATH=VALUE", "the same, and makes the elements and the attribute that are missing"},
    {"--delete PATH", "takes the nodes away with all that is below them"},
    white,
    raw,
    force,
    large,
    toFile,
    inPlace,
    progress,
    onlyFiles,
};

constexpr OptionText tameOptions[] = {
    {"--white=all|inline|drop",
     "which white space between tags is kept for forgiving readers, as a reference: all, that "
     "without a line break (this is what is done without the option), or none"},
    toFile,
    {"-i", "write to the file that is read"},
    progress,
    onlyFiles,
};

constexpr OptionText textOptions[] = {
    {"--", "what follows is the text, also if it begins with \"-\""},
};

} // namespace

const HelpText format{
    "[OPTION...] [-o FILE | -i] [FILE...]",
    R"(Writes a document with line breaks and two blanks of indentation a level. "-" or no file is
standard input, and standard output unless -o or -i says otherwise.
)",
    formatOptions,
    R"(The content stays what it was for every other reader: elements that hold text stay on their
lines, and so does what an attribute xml:space preserves. Entities are expanded. Elements without
content end with "/>".

Encoding, byte-order mark, document type and the kind of line ends are those of the source, and the
last line ends as well. An encoding that cannot be written, most of those with several bytes a
character, becomes UTF-8, in the declaration as well.

A file is replaced when the new one is complete, otherwise the old one stays. It also stays, and the
exit code is 3, when anything was wrong with the document or its encoding cannot be written.

The whole document is held in memory, that of standard input as well; "nuxml events" shows documents
of any length.
)",
    R"(  nuxml format library.xml
  nuxml format --compact -o small.xml library.xml
  curl --silent https://example.org/feed.xml | nuxml format | less
)"};

const HelpText edit{
    "CHANGE... [OPTION...] [-i | -o FILE] [FILE...]",
    R"(Changes a document and writes it. "-" or no file is standard input, and standard output unless
-o or -i says otherwise. Paths are those of "nuxml select".

The changes are made in the order given, each to all nodes at its path. The first "=" outside of
brackets and quotes ends the path. VALUE is plain text: "<" and "&" are escaped where they are
written.
)",
    editOptions,
    R"(All changes are made or none: when one of them matches nothing, nothing is written, and the exit
code is 1. A file is replaced when the new one is complete. It stays as it is, and the exit code is
3, when anything was wrong with the document or its encoding cannot be written.

A document that was read with line breaks and indentation is written as "nuxml format" does, another
one as with --compact. Encoding, document type and line ends stay.

The whole document is held in memory, that of standard input as well; "nuxml events" shows documents
of any length.
)",
    R"(  nuxml edit -i --set config/server/port=8080 config.xml
  nuxml edit --create "config/log/@level=debug" config.xml
  nuxml edit --delete "//book[@lang='fr']" -o rest.xml library.xml
)"};

const HelpText tame{
    "[OPTION...] [-o FILE | -i] [FILE]",
    R"(Writes a document in a form that strict and forgiving readers take alike: UTF-8, double quotes,
one blank before attributes, no document type, its entities expanded and its defaults put in. "-" or
no file is standard input, and standard output unless -o or -i says otherwise.
)",
    tameOptions,
    R"(A document that is not well-formed ends the work with exit code 3, and a file stays as it is.
)",
    R"(  nuxml tame drawing.svg > plain.svg
  nuxml tame -i config.xml
  nuxml tame legacy.xml | nuxml events --raw
)"};

const HelpText escape{
    "[TEXT]",
    R"(Writes text as XML character data: ' " & < > become references. TEXT is followed by a line feed.
Without TEXT, or with "-", standard input is converted as a whole and nothing is added. Both must be
UTF-8.
)",
    textOptions,
    {},
    R"(  nuxml escape 'Tom & Jerry <tom@home>'
  nuxml escape < notes.txt
  nuxml escape -- '-5 < x'
)"};

const HelpText unescape{
    "[TEXT]",
    R"(Writes XML character data as plain text: the references of XML and HTML 4.01 and numbers such as
"&#233;" and "&#xE9;" become characters. What is no known reference stays as it is. TEXT is followed
by a line feed. Without TEXT, or with "-", standard input is converted as a whole and nothing is
added. Both must be UTF-8.
)",
    textOptions,
    R"(A number gives 16 bits. Two that are the halves of one character are joined, one alone is
written as "\uD83D". A number that cannot be read ends the command with exit code 3.
)",
    R"(  nuxml unescape 'caf&eacute; &amp; bar'
  nuxml unescape '&#xD83D;&#xDE00;'
  nuxml escape < notes.txt | nuxml unescape
)"};

const HelpText completion{
    "bash|zsh|fish|man",
    R"(Writes what completes commands and options in a shell, or the manual page; both are made from
this help.
)",
    {},
    {},
    R"(  . <(nuxml completion bash)
  nuxml completion fish > ~/.config/fish/completions/nuxml.fish
  nuxml completion man | man -l -
)"};

} // namespace tool::help
