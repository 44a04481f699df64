#include "host/runtime/format.h"

#include <charconv>

namespace host {

std::u16string FormatArgument::decimal(std::int64_t number) {
    char digits[24];
    auto* const end = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
    return {std::begin(digits), end};
}

std::u16string formatMessage(std::u16string_view messageTemplate,
                             std::initializer_list<FormatArgument> arguments) {
    std::u16string result;
    const auto* argument = arguments.begin();
    while (argument != arguments.end()) {
        const std::size_t place = messageTemplate.find(u'%');
        if (place == messageTemplate.npos) {
            break;
        }
        const std::u16string_view mark = messageTemplate.substr(place, 2);
        const bool isPlaceholder = mark == u"%s" || mark == u"%d";
        result.append(messageTemplate.substr(0, place));
        result.append(isPlaceholder ? (argument++)->text() : mark.substr(0, 1));
        messageTemplate.remove_prefix(place + (isPlaceholder ? 2 : 1));
    }
    return result.append(messageTemplate);
}

} // namespace host
