// Escaping and unescaping of any text, in both character widths.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "host/runtime/exception.h"
#include "nuXmlParser/escape.h"
#include "nuXmlParser/unescape.h"

namespace {

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

/// Plain text must come back from its escaped form, which holds nothing that would need escaping.
template <class String> void checkRoundTrip(const String& plain) {
    using View = std::basic_string_view<typename String::value_type>;
    const String escaped = NuStrToXML(View(plain));
    for (const auto unit : escaped) {
        require(unit != '<' && unit != '>' && unit != '"' && unit != '\'');
    }
    if constexpr (sizeof(typename String::value_type) == sizeof(char16_t)) {
        String kept = plain;
        std::erase(kept, u'\0');
        require(NuXMLToStr(View(escaped)) == kept);
        TNuStringStream stream(2);
        NuStrToXML(plain.data(), plain.size(), stream);
        require(NuXMLToStr(stream.WideView()) == plain);
    }
}

/// Unescaping never makes a text longer, and a bad number is the only fault there is.
template <class String> void checkUnescape(const String& escaped) {
    try {
        require(NuXMLToStr(std::basic_string_view<typename String::value_type>(escaped)).size() <=
                escaped.size());
    } catch (const host::EConvertError&) {
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string narrow(reinterpret_cast<const char*>(data), size);
    std::u16string wide(size / sizeof(char16_t), u'\0');
    if (!wide.empty()) {
        std::memcpy(wide.data(), data, wide.size() * sizeof(char16_t));
    }
    // The same bytes as Latin-1 too: what the dictionary gives makes references only there.
    const std::u16string widened(data, data + size);

    checkRoundTrip(narrow);
    checkRoundTrip(wide);
    checkUnescape(narrow);
    checkUnescape(wide);
    checkUnescape(widened);
    return 0;
}
