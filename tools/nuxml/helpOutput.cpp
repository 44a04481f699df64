#include "helpOutput.h"

#include <algorithm>

namespace tool {

namespace {

constexpr std::size_t pageWidth = 100;
/// Where the texts of options begin; a longer option has a line of its own.
constexpr std::size_t widestForm = 14;
constexpr std::size_t margin = 2;

/// Writes a text from the column `indent` on, in as many lines as it takes; the first one is begun.
void writeWrapped(Output& output, std::string_view text, std::size_t indent) {
    while (text.size() > pageWidth - indent) {
        const std::size_t end = text.rfind(' ', pageWidth - indent);
        output.write(text.substr(0, end));
        output.write('\n');
        output.writeSpaces(indent);
        text.remove_prefix(end + 1);
    }
    output.write(text);
    output.write('\n');
}

void writeEntry(Output& output, std::string_view name, std::string_view text, std::size_t width) {
    output.writeSpaces(margin);
    output.write(name);
    if (name.size() > width) {
        output.write('\n');
        output.writeSpaces(margin + width + margin);
    } else {
        output.writeSpaces(width + margin - name.size());
    }
    writeWrapped(output, text, margin + width + margin);
}

void writeSection(Output& output, std::string_view title, std::string_view text) {
    if (text.empty()) {
        return;
    }
    output.write('\n');
    output.write(title);
    output.write(title.empty() ? "" : "\n");
    output.write(text);
}

void writeOptions(Output& output, std::span<const OptionText> options) {
    if (options.empty()) {
        return;
    }
    std::size_t width = 0;
    for (const OptionText& option : options) {
        width = std::max(width, option.form.size() > widestForm ? 0 : option.form.size());
    }
    output.write("\nOptions\n");
    for (const OptionText& option : options) {
        writeEntry(output, option.form, option.text, width);
    }
}

void writeStart(Output& output, std::string_view name, const HelpText& help) {
    output.write("usage: nuxml ");
    output.write(name);
    output.write(name.empty() ? "" : " ");
    output.write(help.usage);
    output.write("\n\n");
    output.write(help.description);
}

void writeEnd(Output& output, const HelpText& help) {
    writeOptions(output, help.options);
    writeSection(output, {}, help.notes);
    writeSection(output, "Examples", help.examples);
}

} // namespace

void writeGeneralHelp(Output& output) {
    writeStart(output, {}, help::general);
    output.write("\n\nCommands\n");
    for (const Command& command : allCommands()) {
        writeEntry(output, command.name, command.summary, 10);
    }
    writeEnd(output, help::general);
}

void writeHelp(Output& output, const Command& command) {
    writeStart(output, command.name, command.help);
    writeEnd(output, command.help);
}

} // namespace tool
