#pragma once

#include "help.h"

namespace tool::help {

// The options that several commands share.

inline constexpr OptionText white{
    "--white=all|inline|drop",
    "which white space between tags is content: all, that without a line break (this is what is "
    "done without the option), or none"};
inline constexpr OptionText raw{
    "--raw", "read by the rules of the reader alone, which forgives much and expands no entities"};
inline constexpr OptionText large{
    "--large", "read in pieces, which takes less memory; see \"nuxml help events\""};
inline constexpr OptionText force{
    "--force", "replace a file whatever speaks against it, and read on behind faults"};
inline constexpr OptionText toFile{"-o FILE", "write to FILE, which may be the one that is read"};
inline constexpr OptionText inPlace{
    "-i", "write to the files that are read, each on its own: one that fails stays as it is and "
          "does not keep the others from being written"};
inline constexpr OptionText progress{
    "--progress", "tell on standard error how far the work is, also when that is no terminal"};
inline constexpr OptionText onlyFiles{"--", "everything behind it is a file"};

} // namespace tool::help
