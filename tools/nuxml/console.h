#pragma once

#include <string_view>

#include "output.h"
#include "progress.h"

namespace tool {

/// What a command talks to: data goes to standard output, everything else to standard error.
class Console {
public:
    [[nodiscard]] Output& output() noexcept { return output_; }
    [[nodiscard]] Progress& progress() noexcept { return progress_; }
    /// Whether data may be coloured: on a terminal, unless NO_COLOR is set.
    [[nodiscard]] bool isColoured() const noexcept;

    /// Writes "nuxml: `text`" as a line of standard error.
    void complain(std::string_view text) noexcept;
    /// Writes "nuxml: `text`: `message`" as a line; line breaks in the message become spaces.
    void complain(std::string_view text, std::u16string_view message) noexcept;
    /// The same without "nuxml: ": what is wrong is an input, and editors look for its name first.
    void complainAbout(std::string_view input, std::u16string_view message) noexcept;

private:
    void writeLine(std::string_view start, std::string_view text,
                   std::u16string_view message) noexcept;

    Output output_{1};
    Output errors_{2};
    Progress progress_;
};

/// Writes `message` with a space for each line break in it.
void writeMessage(Output& output, std::u16string_view message) noexcept;

} // namespace tool
