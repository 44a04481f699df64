#pragma once

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "host/runtime/export.h"

namespace host {

/// One value for a placeholder of formatMessage.
class NUXML_API FormatArgument {
public:
    FormatArgument(std::u16string_view text) : text_(text) {}
    FormatArgument(const std::u16string& text) : text_(text) {}
    FormatArgument(const char16_t* text) : text_(text) {}
    FormatArgument(std::integral auto number)
        : digits_(decimal(static_cast<std::int64_t>(number))), isNumber_(true) {}

    [[nodiscard]] std::u16string_view text() const noexcept {
        return isNumber_ ? std::u16string_view(digits_) : text_;
    }

private:
    static std::u16string decimal(std::int64_t number);

    std::u16string_view text_;
    std::u16string digits_;
    bool isNumber_ = false;
};

/// Puts the arguments, in order, in place of the "%s" and "%d" of a message template. The texts put
/// in are never looked at again, so they may hold any character, "%" included.
NUXML_API std::u16string formatMessage(std::u16string_view messageTemplate,
                                       std::initializer_list<FormatArgument> arguments);

} // namespace host
