#include "nuXmlParser/conforming/conformingFaults.h"

#include "common/utf8.h"
#include "host/runtime/format.h"

namespace nu {

namespace {

/// Longer names are not read to their end anyway.
constexpr std::size_t longestShown = 100;

} // namespace

ENuXmlFault makeFault(std::u16string_view message, SourcePlace place) {
    return {message, place.line, place.column};
}

ENuXmlFault makeFault(std::u16string_view message, std::string_view text, SourcePlace place) {
    return makeFault(message, std::u16string_view(shortened(text)), place);
}

ENuXmlFault makeFault(std::u16string_view message, std::u16string_view text, SourcePlace place) {
    return makeFault(host::formatMessage(message, {text}), place);
}

ENuXmlFault makeFault(std::u16string_view message, std::int64_t number, SourcePlace place) {
    return makeFault(host::formatMessage(message, {number}), place);
}

std::u16string shortened(std::string_view text) {
    std::size_t length = text.size();
    if (length > longestShown) {
        length = longestShown;
        while ((static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) {
            --length;
        }
    }
    std::u16string shown = NuFromUtf8(text.substr(0, length));
    return length < text.size() ? shown + u"..." : shown;
}

std::u16string hexCode(char32_t codePoint) {
    constexpr std::u16string_view digits = u"0123456789ABCDEF";
    std::u16string code;
    for (int shift = codePoint > 0xFFFFF  ? 20
                     : codePoint > 0xFFFF ? 16
                                          : 12;
         shift >= 0; shift -= 4) {
        code += digits[codePoint >> shift & 0xF];
    }
    return code;
}

} // namespace nu
