#pragma once

#include <span>
#include <string_view>

namespace tool {

/// One option as help, manual page and completions show it.
struct OptionText {
    std::string_view form; ///< "-I, --ignore-case", "-o FILE", "--white=all|inline|drop"
    std::string_view text; ///< in one line, however long
};

/// What a command says about itself. Texts are paragraphs with an empty line between them; lines
/// that begin with two blanks stay as they are.
struct HelpText {
    std::string_view usage; ///< what follows the name of the command
    std::string_view description;
    std::span<const OptionText> options;
    std::string_view notes;
    std::string_view examples; ///< a line each, with two blanks in front
};

namespace help {

/// Of the program as a whole.
extern const HelpText general;

extern const HelpText events;
extern const HelpText format;
extern const HelpText select;
extern const HelpText edit;
extern const HelpText convert;
extern const HelpText records;
extern const HelpText check;
extern const HelpText explain;
extern const HelpText tree;
extern const HelpText tame;
extern const HelpText escape;
extern const HelpText unescape;
extern const HelpText completion;

} // namespace help

} // namespace tool
