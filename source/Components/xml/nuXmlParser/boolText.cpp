#include "nuXmlParser/boolText.h"

#include "common/caseFolding.h"
#include "host/runtime/whiteSpace.h"
#include "nuXmlParser/conversionErrors.h"

std::u16string NuBoolToXML(bool value) { return value ? u"true" : u"false"; }

bool NuXMLToBool(std::u16string_view text) {
    const std::u16string_view word = host::trimmed(text);
    if (NuEqualAsciiWord(word, u"true") || word == u"1") {
        return true;
    }
    if (NuEqualAsciiWord(word, u"false") || word == u"0") {
        return false;
    }
    nu::failConversion(nu::messages::noBoolean, text);
}
