#pragma once

#include <initializer_list>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// The command line is wrong; what() says how.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// An option without a value.
struct Flag {
    std::string_view name; ///< with its dashes
    bool& value;           ///< becomes true when the option is given
};

/// What a command is given beside its options.
struct Operand {
    std::string_view text;
    bool isLiteral; ///< stood behind "--", so a "-" is no standard input
};

/// Sets the flags that are given and returns the rest in order. Options and operands may stand in
/// any order up to "--". Throws UsageError for an option that is none of `flags`.
std::vector<Operand> parseArguments(std::span<const std::string_view> arguments,
                                    std::initializer_list<Flag> flags);

} // namespace tool
