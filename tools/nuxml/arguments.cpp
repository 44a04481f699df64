#include "arguments.h"

#include <algorithm>

#include "closestWord.h"

namespace tool {

namespace {

template <class Option>
const Option* find(std::initializer_list<Option> options, std::string_view name) {
    const auto* const found =
        std::find_if(options.begin(), options.end(),
                     [&](const Option& candidate) { return candidate.name == name; });
    return found == options.end() ? nullptr : found;
}

/// The setting whose value stands behind "=" in the same argument.
const Setting* findJoined(std::initializer_list<Setting> settings, std::string_view argument) {
    const std::size_t equals = argument.find('=');
    return equals != argument.npos && argument.starts_with("--")
               ? find(settings, argument.substr(0, equals))
               : nullptr;
}

[[noreturn]] void failUnknown(std::string_view argument, std::initializer_list<Flag> flags,
                              std::initializer_list<Setting> settings,
                              std::initializer_list<Repeated> repeated) {
    std::vector<std::string_view> names;
    const auto add = [&](const auto& options) {
        for (const auto& option : options) {
            names.push_back(option.name);
        }
    };
    add(flags);
    add(settings);
    add(repeated);
    const std::string_view name = argument.substr(0, argument.find('='));
    throw UsageError("unknown option " + std::string(argument) + suggestionFor(name, names));
}

} // namespace

std::vector<Operand> parseArguments(std::span<const std::string_view> arguments,
                                    std::initializer_list<Flag> flags,
                                    std::initializer_list<Setting> settings,
                                    std::initializer_list<Repeated> repeated) {
    std::vector<Operand> operands;
    bool onlyOperands = false;
    std::size_t index = 0;
    const auto nextValue = [&] {
        const std::string_view option = arguments[index];
        if (++index == arguments.size()) {
            throw UsageError("the value of " + std::string(option) + " is missing");
        }
        return arguments[index];
    };
    for (; index < arguments.size(); ++index) {
        const std::string_view argument = arguments[index];
        if (onlyOperands || argument.size() < 2 || argument.front() != '-') {
            operands.push_back({argument, onlyOperands});
        } else if (argument == "--") {
            onlyOperands = true;
        } else if (const Flag* flag = find(flags, argument)) {
            flag->value = true;
        } else if (const Setting* setting = find(settings, argument)) {
            setting->value = nextValue();
        } else if (const Setting* joined = findJoined(settings, argument)) {
            joined->value = argument.substr(joined->name.size() + 1);
        } else if (const Repeated* option = find(repeated, argument)) {
            option->given.push_back({argument, nextValue()});
        } else {
            failUnknown(argument, flags, settings, repeated);
        }
    }
    return operands;
}

} // namespace tool
