#include <gtest/gtest.h>

#include "shell.h"

namespace {

const ShellCase cases[] = {
    {R"(nuxml escape "Tom & Jerry's <\"x\">")", 0, "Tom &amp; Jerry&apos;s &lt;&quot;x&quot;&gt;\n",
     ""},
    {"nuxml escape ''", 0, "\n", ""},
    {"nuxml escape -- -1; nuxml escape -- -", 0, "-1\n-\n", ""},
    {"nuxml escape 'é 漢 😀'", 0, "é 漢 😀\n", ""},
    // Standard input keeps its end, with or without a line feed, and every byte.
    {"printf 'a<b' | nuxml escape", 0, "a&lt;b", ""},
    {"printf 'a<b\\r\\n' | nuxml escape -", 0, "a&lt;b\r\n", ""},
    {R"(printf '\357\273\277\0<\t\0' >bytes; nuxml escape <bytes | nuxml unescape | cmp - bytes)",
     0, "", ""},
    {"nuxml escape <library.xml | nuxml unescape | cmp - library.xml", 0, "", ""},
    {"nuxml unescape '&lt;&eacute;&#8364;&#x416;&unknown;'", 0, "<é€Ж&unknown;\n", ""},
    // Halves beside each other are one character, others show as what they are.
    {"nuxml unescape '&#xD83D;&#xDE00; &#xD83D; &#xDE00;'", 0, "😀 \\uD83D \\uDE00\n", ""},
    {"nuxml unescape '&#xDE00;&#xD83D;'", 0, "\\uDE00\\uD83D\n", ""},
    {"nuxml unescape 'a&#;b'", 3, "", "nuxml: cannot unescape: '' is not a valid integer value\n"},
    {"nuxml escape \"$(printf 'a\\377')\"", 4, "", "nuxml: the text is not UTF-8\n"},
    {R"(printf 'a\355\240\275' | nuxml unescape)", 4, "", "nuxml: standard input is not UTF-8\n"},
};

TEST(Escape, ConvertsTextAndStandardInput) { expectShell(cases); }

} // namespace
