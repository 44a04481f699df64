#include "nuXmlParser/boolText.h"

#include "common/caseFolding.h"
#include "host/runtime/exception.h"
#include "host/runtime/format.h"

namespace {

std::u16string_view trimmed(std::u16string_view text) {
    constexpr std::u16string_view space = u"\t\n\r ";
    const std::size_t first = text.find_first_not_of(space);
    if (first == text.npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(space) - first + 1);
}

} // namespace

std::u16string NuBoolToXML(bool value) { return value ? u"true" : u"false"; }

bool NuXMLToBool(std::u16string_view text) {
    const std::u16string_view word = trimmed(text);
    if (NuEqualFolded(word, u"true") || word == u"1") {
        return true;
    }
    if (NuEqualFolded(word, u"false") || word == u"0") {
        return false;
    }
    throw host::EConvertError(host::formatMessage(u"'%s' is not a valid boolean value", {text}));
}
