#include "xmlName.h"

#include <string>

#include "common/utf8.h"
#include "host/runtime/memoryStream.h"
#include "nuXmlParser.h"

namespace tool {

bool isXmlName(std::u16string_view name) {
    // A document of that name tells; what would end the name in it is in none.
    if (name.find_first_of(u" \t\r\n/>=") != name.npos) {
        return false;
    }
    // Two prefixes are declared by themselves, and one of them declares what is behind it.
    constexpr std::u16string_view declaring = u"xmlns:";
    if (name.starts_with(declaring)) {
        name.remove_prefix(declaring.size());
        if (name.find(u':') != name.npos) {
            return false;
        }
    }
    const std::string text = NuToUtf8(name);
    const std::string prefix = text.substr(0, text.find(':'));
    const bool isDeclared = prefix == text || prefix == "xml";
    const std::string document =
        '<' + text + (isDeclared ? "" : " xmlns:" + prefix + "='u'") + "/>";
    host::TMemoryStream stream;
    stream.WriteBuffer(document.data(), document.size());
    stream.SetPosition(0);
    try {
        NuCheckXML(stream);
    } catch (const ENuXmlFault&) {
        return false;
    }
    return true;
}

} // namespace tool
