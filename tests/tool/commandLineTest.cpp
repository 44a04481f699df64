#include <gtest/gtest.h>

#include "shell.h"

namespace {

struct Case {
    const char* line;
    int exitCode;
    const char* output; ///< a part of it; an empty one means none at all
    const char* errors; ///< the same
};

class CommandLine : public testing::TestWithParam<Case> {};

void expectPart(const std::string& text, const std::string& part) {
    if (part.empty()) {
        EXPECT_EQ(text, "");
    } else {
        EXPECT_NE(text.find(part), text.npos) << "\"" << part << "\" is not in \"" << text << "\"";
    }
}

TEST_P(CommandLine, GivesOutputErrorsAndExitCode) {
    const Case& expected = GetParam();
    SCOPED_TRACE(expected.line);
    const ShellResult result = runShell(expected.line);
    EXPECT_EQ(result.exitCode, expected.exitCode);
    expectPart(result.output, expected.output);
    expectPart(result.errors, expected.errors);
}

const Case usage[] = {
    {"nuxml", 2, "", "nuxml: a command is missing; see \"nuxml help\"\n"},
    {"nuxml evnts", 2, "",
     "nuxml: there is no command \"evnts\" (did you mean events?); see \"nuxml help\"\n"},
    {"nuxml --help", 0, "usage: nuxml COMMAND", ""},
    {"nuxml --version", 0, "nuxml 0.", ""},
    {"nuxml events library.xml --help", 0, "usage: nuxml events", ""},
    {"nuxml escape --help", 0, "usage: nuxml escape", ""},
    {"nuxml unescape --help", 0, "usage: nuxml unescape", ""},
    {"nuxml escape -- --help", 0, "--help\n", ""},
    {"nuxml events --jsn library.xml", 2, "",
     "nuxml: unknown option --jsn (did you mean --json?); see \"nuxml help events\"\n"},
    {"nuxml -h >a; nuxml help version >b; nuxml --help | cmp - a && cmp a b && nuxml help selec", 2,
     "", "nuxml: there is no command \"selec\" (did you mean select?); see \"nuxml help\"\n"},
    // What help, manual page and completions tell of is what is taken.
    {"for command in $(nuxml help | sed -n '/^Commands/,/^$/s/^  \\([a-z]*\\) .*/\\1/p'); do for "
     "option "
     "in $(nuxml completion fish | sed -n \"s/.*_from $command' -\\([ls]\\) \\([^ ]*\\) "
     ".*/\\1\\2/p\" | sed "
     "'s/^l/--/; s/^s/-/'); do nuxml $command $option all </dev/null 2>&1 >unused | grep unknown; "
     "nuxml completion man | grep -q \"$(echo $option | sed 's/-/.-/g')\" || echo $option; done; "
     "done",
     0, "", ""},
    {R"x(options() { sed 's/ *$//' | sort -u; }; nuxml completion fish | sed -n "s/.*_from \([a-z]*\)' -\([ls]\) )x"
     R"x(\([^ ]*\)\( *-[rx]\)*.*/\1 \2 \3\4/p" | sed 's/ l / --/; s/ s / -/; s/ -[rx]$/ value/' | options )x"
     R"x(>inFish; nuxml completion zsh | tee z | sed -n "s/^    \([a-z]*\))$/c \1/p; s/^ *'\*\(-[^[+=]*\))x"
     R"x(\([+=]*\).*/\1 \2/p" | sed 's/ [+=]$/ value/' | awk '$1 == "c" {c = $2; next} {print c, $0}' | )x"
     R"x(options | cmp - inFish && bash -n z && grep -c '^edit -[smc] value' inFish)x",
     0, "3\n", ""},
    {"nuxml completion fihs", 2, "",
     "nuxml: one of bash, zsh, fish and man is needed (did you mean fish?); see"},
    {"nuxml completion bash | bash -n && nuxml completion man | man -l --warnings - 2>&1 >page && "
     "grep -q 'nuxml tame' page",
     0, "", ""},
    {"nuxml escape a b", 2, "", "more than one text"},
    // Each help shows three examples, and what they show works.
    {"for command in '' events format select edit check tame escape unescape completion; do nuxml "
     "$command "
     "--help |"
     "sed '1,/^Examples/d; /^$/,$d' | grep -c '^  .*nuxml'; done | tr '\\n' ' '",
     0, "3 3 3 3 3 3 3 3 3 3 ", ""},
};
INSTANTIATE_TEST_SUITE_P(Usage, CommandLine, testing::ValuesIn(usage));

const Case inputs[] = {
    {"nuxml events missing.xml", 4, "",
     "nuxml: cannot open missing.xml: No such file or directory\n"},
    {"nuxml events .", 4, "", "nuxml: cannot open .: Is a directory\n"},
    {"nuxml events <&-", 4, "", "nuxml: cannot read standard input: "},
    {"nuxml events library.xml - <&- >all", 4, "", "nuxml: cannot read standard input: "},
    {"nuxml format -o small library.xml 2>&-; head -c 6 small", 0, "<?xml ", ""},
    {"nuxml events /proc/self/mem", 4, "", "nuxml: cannot read /proc/self/mem: "},
    {"nuxml events /proc/self/status", 3, "fatalError", "/proc/self/status:1:1: error: "},
    // Whatever one input does, the next is shown, and the highest code counts.
    {"nuxml events missing.xml faults.xml library.xml | tail -n 1; nuxml events faults.xml . "
     "library.xml >all; echo $?; grep ^startDoc all",
     0, "endDocument\n4\nstartDocument          faults.xml\nstartDocument          library.xml\n",
     "faults.xml:5:4: error: the prefix \"lent\" is not declared"},
    {"nuxml events library.xml faults.xml library.xml >all", 3, "", "faults.xml:5:"},
    {"printf '<a>x</a>' | nuxml events --json - library.xml | grep -c startDocument", 0, "2\n", ""},
    // A file, standard input as a file and as a pipe, a named pipe: always the same.
    {"nuxml events library.xml >file; nuxml events <library.xml >redirected; cat library.xml | "
     "nuxml "
     "events >piped; mkfifo pipe; cat library.xml >pipe & nuxml events pipe >named; nuxml events "
     "/dev/fd/3 3<library.xml >numbered; for other in redirected piped named numbered; do cmp file "
     "$other && echo same; done",
     0, "same\nsame\nsame\nsame\n", ""},
};
INSTANTIATE_TEST_SUITE_P(Inputs, CommandLine, testing::ValuesIn(inputs));

const Case outputs[] = {
    {"nuxml events library.xml >/dev/full", 4, "", "nuxml: cannot write standard output: "},
    {"nuxml events library.xml >&-", 4, "", "nuxml: cannot write standard output: "},
    // More than the pipe and the buffer hold, so that the tool meets the closed pipe.
    {"{ printf '<a>'; yes '<b>text</b>' | head -n 200000; printf '</a>'; } >big.xml; "
     "{ nuxml events big.xml big.xml; echo $? >&2; } | head -n 1",
     0, "startDocument", "0\n"},
    // What is left may be without end: here it would be 20 GB.
    {"{ yes '<a>' | head -n 100000; yes '</a>' | head -n 100000; } >deep.xml; for command in "
     "format "
     "'select //a' 'select --path //a'; do { nuxml $command deep.xml; echo $? >&2; } | head -n 1; "
     "done; nuxml format deep.xml >/dev/full",
     4, "<a>\n<a><a><a>", "0\n0\n0\nnuxml: cannot write standard output: "},
    {"{ nuxml escape <big.xml; echo $? >&2; } | head -c 2", 0, "&l", "0\n"},
    // Colour only for eyes.
    {"nuxml events library.xml | grep -c '\x1B'", 1, "0\n", ""},
    {"script -qec 'nuxml events library.xml' /dev/null </dev/null", 0,
     "\x1B[1;34mstartElement\x1B[0m", ""},
    {"NO_COLOR=1 script -qec 'nuxml events library.xml' /dev/null </dev/null | grep -c '\x1B'", 1,
     "0\n", ""},
    {"script -qec 'nuxml events --json library.xml' /dev/null </dev/null | grep -c '\x1B'", 1,
     "0\n", ""},
    // Progress: after a second, on a terminal, and gone at the end.
    {"script -qec '{ printf \"<a>\"; sleep 1.2; printf x; sleep 0.1; printf \"</a>\"; } | nuxml "
     "events >quiet' /dev/null </dev/null",
     0, "\r\x1B[Kreading standard input: 0 kB\r\x1B[K", ""},
    {"script -qec '{ printf \"<a>\"; sleep 1.2; printf \"</a>\"; } | nuxml format --large >quiet' "
     "/dev/null </dev/null",
     0, "\r\x1B[Kreading standard input: 0 kB\r\x1B[K", ""},
    {"{ printf '<a>'; sleep 1.2; printf '</a>'; } | nuxml events >quiet", 0, "", ""},
};
INSTANTIATE_TEST_SUITE_P(Outputs, CommandLine, testing::ValuesIn(outputs));

} // namespace
