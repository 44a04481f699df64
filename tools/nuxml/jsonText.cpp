#include "jsonText.h"

namespace tool {

namespace {

/// Takes digits from the front and tells how many.
std::size_t takeDigits(std::u16string_view& text) noexcept {
    const std::size_t count = text.find_first_not_of(u"0123456789");
    const std::size_t digits = count == text.npos ? text.size() : count;
    text.remove_prefix(digits);
    return digits;
}

bool take(std::u16string_view& text, std::u16string_view characters) noexcept {
    const bool isThere = !text.empty() && characters.find(text.front()) != characters.npos;
    text.remove_prefix(isThere ? 1 : 0);
    return isThere;
}

} // namespace

bool isJsonNumber(std::u16string_view text) noexcept {
    take(text, u"-");
    if (!take(text, u"0") && takeDigits(text) == 0) {
        return false;
    }
    if (take(text, u".") && takeDigits(text) == 0) {
        return false;
    }
    if (take(text, u"eE")) {
        take(text, u"+-");
        if (takeDigits(text) == 0) {
            return false;
        }
    }
    return text.empty();
}

} // namespace tool
