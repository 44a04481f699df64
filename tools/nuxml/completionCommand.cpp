#include "completionCommand.h"

#include <string>
#include <vector>

#include "arguments.h"
#include "closestWord.h"
#include "manualPage.h"

namespace tool {

namespace {

/// One way to write an option: "--white", and what stands behind it.
struct OptionName {
    std::string_view name;
    std::string_view value; ///< "FILE", "all|inline|drop"; empty for an option without one
};

/// The names in the form of an option, "-I, --ignore-case" or "--white=all|inline|drop".
std::vector<OptionName> namesOf(const OptionText& option) {
    std::vector<OptionName> names;
    std::string_view form = option.form;
    while (!form.empty()) {
        const std::size_t comma = form.find(", ");
        const std::string_view part = form.substr(0, comma);
        const std::size_t end = part.find_first_of("= ");
        if (part != "--") {
            names.push_back({part.substr(0, end),
                             end == part.npos ? std::string_view() : part.substr(end + 1)});
        }
        form.remove_prefix(comma == form.npos ? form.size() : comma + 2);
    }
    // What stands behind the last one is meant for all of them.
    for (OptionName& name : names) {
        name.value = names.back().value;
    }
    return names;
}

/// "all inline drop" for the value "all|inline|drop"; empty for one that is free.
std::string choicesOf(std::string_view value) {
    if (value.find('|') == value.npos) {
        return {};
    }
    std::string choices(value);
    for (char& character : choices) {
        character = character == '|' ? ' ' : character;
    }
    return choices;
}

std::string commandNames() {
    std::string names = "help version";
    for (const Command& command : allCommands()) {
        names.append(" ").append(command.name);
    }
    return names;
}

/// In single quotes, for all three shells.
std::string quoted(std::string_view text) {
    std::string result = "'";
    for (const char character : text) {
        result.append(character == '\'' ? "'\\''" : std::string(1, character));
    }
    return result + "'";
}

/// Sets what can stand behind an option, or as the operand where there is no option. "=" is a word
/// of its own for bash.
std::string choicesLine(std::string_view option, std::string_view value) {
    const std::string choices = choicesOf(value);
    if (choices.empty() || value.find(' ') != value.npos) {
        return {};
    }
    const std::string condition =
        option.empty() ? std::string()
                       : "[[ \"${COMP_WORDS[COMP_CWORD-1]} ${COMP_WORDS[COMP_CWORD-2]}\" = *" +
                             std::string(option) + "* ]] && ";
    return "        " + condition + "choices='" + choices + "'\n";
}

void writeBash(Output& output) {
    output.write("_nuxml() {\n"
                 "    local word=\"${COMP_WORDS[COMP_CWORD]}\" options= choices=\n"
                 "    COMPREPLY=()\n"
                 "    if [ \"$COMP_CWORD\" -eq 1 ] || [ \"${COMP_WORDS[1]}\" = help ]; then\n"
                 "        COMPREPLY=($(compgen -W '");
    output.write(commandNames());
    output.write("' -- \"$word\"))\n        return\n    fi\n    case \"${COMP_WORDS[1]}\" in\n");
    for (const Command& command : allCommands()) {
        std::string options = "--help";
        std::string values = choicesLine({}, command.help.usage);
        for (const OptionText& option : command.help.options) {
            for (const OptionName& name : namesOf(option)) {
                options.append(" ").append(name.name);
                values += choicesLine(name.name, name.value);
            }
        }
        output.write("    ");
        output.write(command.name);
        output.write(")\n        options='");
        output.write(options);
        output.write("'\n");
        output.write(values);
        output.write("        ;;\n");
    }
    output.write("    esac\n"
                 "    if [ -n \"$choices\" ]; then\n"
                 "        COMPREPLY=($(compgen -W \"$choices\" -- \"${word#=}\"))\n"
                 "    elif [ \"${word:0:1}\" = - ]; then\n"
                 "        COMPREPLY=($(compgen -W \"$options\" -- \"$word\"))\n"
                 "    fi\n"
                 "}\n"
                 "complete -o default -o bashdefault -F _nuxml nuxml\n");
}

/// What stands in brackets in what zsh is told of an option.
std::string zshText(std::string_view text) {
    std::string result;
    for (const char character : text) {
        if (character == '[' || character == ']' || character == ':' || character == '\\') {
            result += '\\';
        }
        result += character;
    }
    return result;
}

void writeZsh(Output& output) {
    output.write("#compdef nuxml\n"
                 "_nuxml() {\n"
                 "    if (( CURRENT == 2 )) || [[ ${words[2]} == help ]]; then\n"
                 "        local -a commands=(\n");
    for (const Command& command : allCommands()) {
        output.write("            " +
                     quoted(std::string(command.name) + ':' + zshText(command.summary)) + '\n');
    }
    output.write("            'help:show what a command does'\n"
                 "            'version:show the version'\n"
                 "        )\n"
                 "        _describe command commands\n"
                 "        return\n"
                 "    fi\n"
                 "    case ${words[2]} in\n");
    for (const Command& command : allCommands()) {
        output.write("    " + std::string(command.name) + ")\n        _arguments \\\n");
        for (const OptionText& option : command.help.options) {
            for (const OptionName& name : namesOf(option)) {
                std::string form = '*' + std::string(name.name);
                if (!name.value.empty()) {
                    const std::string choices = choicesOf(name.value);
                    form += (name.name.starts_with("--") ? "=[" : "+[") + zshText(option.text) +
                            "]:" + zshText(choices.empty() ? name.value : "which") + ':' +
                            (choices.empty() ? "_files" : '(' + choices + ')');
                } else {
                    form += '[' + zshText(option.text) + ']';
                }
                output.write("            " + quoted(form) + " \\\n");
            }
        }
        output.write("            '*:file:_files' ;;\n");
    }
    output.write("    esac\n"
                 "}\n"
                 "if [[ ${funcstack[1]} == _nuxml ]]; then _nuxml \"$@\"; else compdef _nuxml "
                 "nuxml; fi\n");
}

void writeFish(Output& output) {
    for (const Command& command : allCommands()) {
        const std::string name(command.name);
        output.write("complete -c nuxml -n __fish_use_subcommand -f -a " + name + " -d " +
                     quoted(command.summary) + '\n');
        for (const OptionText& option : command.help.options) {
            for (const OptionName& form : namesOf(option)) {
                const bool isLong = form.name.starts_with("--");
                output.write("complete -c nuxml -n '__fish_seen_subcommand_from " + name + "' " +
                             (isLong ? "-l " : "-s ") +
                             std::string(form.name.substr(isLong ? 2 : 1)));
                if (const std::string choices = choicesOf(form.value); !choices.empty()) {
                    output.write(" -x -a '" + choices + '\'');
                } else if (!form.value.empty()) {
                    output.write(" -r");
                }
                output.write(" -d " + quoted(option.text) + '\n');
            }
        }
    }
    output.write("complete -c nuxml -n __fish_use_subcommand -f -a 'help version'\n"
                 "complete -c nuxml -n '__fish_seen_subcommand_from help' -f -a '" +
                 commandNames() + "'\n");
}

} // namespace

ExitCode runCompletion(Console& console, Arguments arguments) {
    static constexpr std::string_view names[] = {"bash", "zsh", "fish", "man"};
    static constexpr void (*writers[])(Output&) = {writeBash, writeZsh, writeFish, writeManualPage};
    const auto operands = parseArguments(arguments, {});
    const std::string_view wanted = operands.size() == 1 ? operands[0].text : std::string_view();
    for (std::size_t index = 0; index < std::size(names); ++index) {
        if (names[index] == wanted) {
            writers[index](console.output());
            return exitDone;
        }
    }
    throw UsageError("one of bash, zsh, fish and man is needed" + suggestionFor(wanted, names));
}

} // namespace tool
