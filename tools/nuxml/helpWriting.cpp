#include "helpOptions.h"

namespace tool::help {

namespace {

constexpr OptionText formatOptions[] = {
    {"--compact", "without line breaks and indentation"},
    {"--indent=N", "so many blanks a level, 0 to 32; without the option 2"},
    {"--check", "write nothing, but say which files would be written otherwise; the exit code is "
                "then 1"},
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
    {"-s, --set PATH=VALUE", "gives the nodes that text"},
    {"-c, --create PATH=VALUE",
     "the same, and makes the elements and the attribute that are missing"},
    {"-r, --rename PATH=NAME", "gives the elements and attributes another name"},
    {"-m, --move PATH=PATH",
     "puts the nodes into the one element at the second path, as its last ones"},
    {"-d, --delete PATH", "takes the nodes away with all that is below them"},
    white,
    raw,
    force,
    large,
    toFile,
    inPlace,
    progress,
    onlyFiles,
};

constexpr OptionText convertOptions[] = {
    {"--compact", "without line breaks and indentation"},
    {"--numbers", "JSON has numbers, true and false without quotation marks where the text is one"},
    {"--comments", "comments and instructions stand in the JSON, too"},
    {"--root=NAME", "XML has this document element around everything"},
    white,
    raw,
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
    R"(Writes a document with line breaks and indentation. "-" or no file is
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
  nuxml format -i --indent=4 *.xml
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
  nuxml edit --rename //book/@lang=language --move //poem=library/shelf[1] library.xml
  nuxml edit --delete "//book[@lang='fr']" -o rest.xml library.xml
)"};

const HelpText convert{
    "[OPTION...] [FILE]",
    R"(Writes XML as JSON and JSON as XML; which of them it is shows in its first character. "-" or no
file is standard input.

  <a>t</a>                    {"a": "t"}                     an element with text alone
  <a x="1"><b/></a>           {"a": {"@x": "1", "b": ""}}    attributes and child elements
  <a x="1">t</a>              {"a": {"@x": "1", "#text": "t"}}
  <a><b>1</b><b>2</b></a>     {"a": {"b": ["1", "2"]}}       several of a name
  <a>t<b/>u<!--c--><?d e?></a>
                              {"a": {"#": ["t", {"b": ""}, "u", {"#comment": "c"}, {"?d": "e"}]}}

The last form is taken where text stands beside elements and where a name comes again behind another
one, so that what comes back from JSON is what went in.
)",
    convertOptions,
    R"(Names have their prefixes, and declarations of namespaces are attributes ("@xmlns"). Comments and
instructions are left out without --comments, the document type always is, its entities are
expanded; CDATA sections are text. An array can have a single element only by other hands: from XML
it is none, as nothing tells that more could be there.

In JSON that was not made here, null is an empty element, arrays in arrays are elements "item", and a
member whose name is none of XML is a fault. Where the JSON is no object with one member, --root
gives the element that is around it.
)",
    R"(  nuxml convert library.xml
  nuxml convert --numbers feed.xml | jq .rss.channel.title
  curl --silent https://example.org/list.json | nuxml convert --root=list
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
