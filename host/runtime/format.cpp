#include "host/runtime/format.h"

#include <charconv>

namespace host {

std::u16string FormatArgument::decimal(std::int64_t number) {
    char digits[24];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
    return {std::begin(digits), end};
}

std::u16string formatMessage(std::u16string_view messageTemplate,
                             std::initializer_list<FormatArgument> arguments) {
    std::u16string result;
    const auto* argument = arguments.begin();
    while (argument != arguments.end()) {
        const std::size_t place = messageTemplate.find(u'%');
        const bool isPlaceholder =
            place != messageTemplate.npos && place + 1 < messageTemplate.size() &&
            (messageTemplate[place + 1] == u's' || messageTemplate[place + 1] == u'd');
        if (!isPlaceholder) {
            break;
        }
        result.append(messageTemplate.substr(0, place));
        result.append(argument->text());
        messageTemplate.remove_prefix(place + 2);
        ++argument;
    }
    return result.append(messageTemplate);
}

} // namespace host
