#include "manualPage.h"

#include "command.h"

namespace tool {

namespace {

/// The macros as they are written for one page.
class Page {
public:
    explicit Page(Output& output) noexcept : output_(output) {}

    void macro(std::string_view name, std::string_view text = {}) {
        output_.write(name);
        if (!text.empty()) {
            output_.write(" \"");
            escaped(text);
            output_.write('"');
        }
        output_.write('\n');
    }

    /// One paragraph or line of text.
    void line(std::string_view text) {
        // A line that begins so would be a macro.
        if (text.starts_with('.') || text.starts_with('\'')) {
            output_.write("\\&");
        }
        escaped(text);
        output_.write('\n');
    }

    /// Paragraphs with an empty line between them; what is moved in stays as it is.
    void paragraphs(std::string_view text) {
        bool isKept = false;
        while (!text.empty()) {
            const std::size_t end = text.find('\n');
            const std::string_view part = text.substr(0, end);
            text.remove_prefix(end == text.npos ? text.size() : end + 1);
            if (part.starts_with("  ") != isKept) {
                isKept = !isKept;
                macro(isKept ? ".PP\n.nf" : ".fi");
            }
            part.empty() ? macro(".PP") : line(part);
        }
        if (isKept) {
            macro(".fi");
        }
    }

    void options(std::span<const OptionText> options) {
        for (const OptionText& option : options) {
            macro(".TP");
            macro(".B", option.form);
            line(option.text);
        }
    }

private:
    void escaped(std::string_view text) {
        for (const char character : text) {
            switch (character) {
            case '\\':
                output_.write("\\e");
                break;
            case '-':
                output_.write("\\-");
                break;
            case '"':
                output_.write("\\(dq");
                break;
            case '\'':
                output_.write("\\(aq");
                break;
            case '^':
                output_.write("\\(ha");
                break;
            case '~':
                output_.write("\\(ti");
                break;
            case '`':
                output_.write("\\(ga");
                break;
            default:
                output_.write(character);
            }
        }
    }

    Output& output_;
};

void writeCommand(Page& page, const Command& command) {
    page.macro(".SS", std::string("nuxml ").append(command.name));
    page.macro(".B", std::string("nuxml ").append(command.name));
    page.line(command.help.usage);
    page.macro(".PP");
    page.paragraphs(command.help.description);
    page.options(command.help.options);
    page.macro(".PP");
    page.paragraphs(command.help.notes);
    page.macro(".PP");
    page.line("Examples:");
    page.paragraphs(command.help.examples);
}

} // namespace

void writeManualPage(Output& output) {
    Page page(output);
    output.write(".TH NUXML 1 \"\" \"nuxml " NUXML_VERSION "\" \"User Commands\"\n");
    page.macro(".SH", "NAME");
    output.write("nuxml \\- show, search, change and convert XML\n");
    page.macro(".SH", "SYNOPSIS");
    page.macro(".B", "nuxml");
    page.line(help::general.usage);
    page.macro(".SH", "DESCRIPTION");
    page.paragraphs(help::general.description);
    page.options(help::general.options);
    page.macro(".PP");
    page.paragraphs(help::general.notes);
    page.macro(".SH", "COMMANDS");
    for (const Command& command : allCommands()) {
        writeCommand(page, command);
    }
    page.macro(".SH", "EXAMPLES");
    page.paragraphs(help::general.examples);
}

} // namespace tool
