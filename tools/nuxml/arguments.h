#pragma once

#include <initializer_list>
#include <optional>
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

/// An option with a value, which is the next argument or, behind a long name, stands after "=".
struct Setting {
    std::string_view name; ///< with its dashes
    std::optional<std::string_view>& value;
};

/// An option with a value as it was given.
struct GivenOption {
    std::string_view name; ///< with its dashes
    std::string_view value;
};

/// An option with a value that can be given several times. Options that share a list keep their
/// order among each other.
struct Repeated {
    std::string_view name; ///< with its dashes
    std::vector<GivenOption>& given;
};

/// What a command is given beside its options.
struct Operand {
    std::string_view text;
    bool isLiteral; ///< stood behind "--", so a "-" is no standard input
};

/// Sets the options that are given and returns the rest in order. Options and operands may stand in
/// any order up to "--". Throws UsageError for an unknown option and for one without its value.
std::vector<Operand> parseArguments(std::span<const std::string_view> arguments,
                                    std::initializer_list<Flag> flags,
                                    std::initializer_list<Setting> settings = {},
                                    std::initializer_list<Repeated> repeated = {});

} // namespace tool
