#include "console.h"

#include <cstdlib>

namespace tool {

namespace {

std::string_view environment(const char* name) noexcept {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string_view() : value;
}

} // namespace

bool Console::isColoured() const noexcept {
    return output_.isTerminal() && environment("NO_COLOR").empty() && environment("TERM") != "dumb";
}

void Console::complain(std::string_view text) noexcept { complain(text, {}); }

void Console::complain(std::string_view text, std::u16string_view message) noexcept {
    writeLine("nuxml: ", text, message);
}

void Console::complainAbout(std::string_view input, std::u16string_view message) noexcept {
    writeLine({}, input, message);
}

void Console::writeLine(std::string_view start, std::string_view text,
                        std::u16string_view message) noexcept {
    // On a terminal both outputs are one, so what came first has to stand first.
    output_.flush();
    progress_.clear();
    errors_.write(start);
    errors_.write(text);
    if (!message.empty()) {
        errors_.write(": ");
        writeMessage(errors_, message);
    }
    errors_.write('\n');
    errors_.flush();
}

void writeMessage(Output& output, std::u16string_view message) noexcept {
    constexpr std::u16string_view lineBreaks = u"\r\n";
    for (;;) {
        const std::size_t end = message.find_first_of(lineBreaks);
        output.writeText(message.substr(0, end), Escapes::Visible);
        const std::size_t next =
            end == message.npos ? message.npos : message.find_first_not_of(lineBreaks, end);
        if (next == message.npos) {
            return;
        }
        output.write(' ');
        message.remove_prefix(next);
    }
}

} // namespace tool
