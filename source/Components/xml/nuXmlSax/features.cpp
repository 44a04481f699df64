#include "nuXmlSax/features.h"

#include <algorithm>

#include "common/caseFolding.h"
#include "nuXmlParser/boolText.h"

namespace {

std::u16string_view nameOf(std::u16string_view line) { return line.substr(0, line.rfind(u'=')); }

} // namespace

TNuSaxFeatures::TNuSaxFeatures() {
    Set(u"http://xml.org/sax/features/namespaces", true);
    Set(u"http://xml.org/sax/features/namespace-prefixes", false);
    Set(u"http://xml.org/sax/features/lexical-handler/parameter-entities", true);
}

std::optional<bool> TNuSaxFeatures::Get(std::u16string_view name) const {
    for (const std::u16string& line : lines_) {
        const std::u16string_view lineName = nameOf(line);
        if (NuEqualFolded(lineName, name)) {
            return NuXMLToBool(std::u16string_view(line).substr(lineName.size() + 1));
        }
    }
    return std::nullopt;
}

void TNuSaxFeatures::Set(std::u16string_view name, bool value) {
    std::u16string line(name);
    line += u'=';
    line += NuBoolToXML(value);
    const auto found =
        std::find_if(lines_.begin(), lines_.end(), [name](const std::u16string& old) {
            return NuEqualFolded(nameOf(old), name);
        });
    if (found == lines_.end()) {
        lines_.push_back(std::move(line));
    } else {
        *found = std::move(line);
    }
}
