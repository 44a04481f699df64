#include "arguments.h"

#include <algorithm>

namespace tool {

std::vector<Operand> parseArguments(std::span<const std::string_view> arguments,
                                    std::initializer_list<Flag> flags) {
    std::vector<Operand> operands;
    bool onlyOperands = false;
    for (const std::string_view argument : arguments) {
        if (onlyOperands || argument.size() < 2 || argument.front() != '-') {
            operands.push_back({argument, onlyOperands});
        } else if (argument == "--") {
            onlyOperands = true;
        } else {
            const auto* const flag =
                std::find_if(flags.begin(), flags.end(),
                             [&](const Flag& candidate) { return candidate.name == argument; });
            if (flag == flags.end()) {
                throw UsageError("unknown option " + std::string(argument));
            }
            flag->value = true;
        }
    }
    return operands;
}

} // namespace tool
