#include "nuXmlSax/features.h"

#include <algorithm>
#include <iterator>

#include "common/caseFolding.h"
#include "nuXmlParser/boolText.h"

namespace {

constexpr std::u16string_view defaults[] = {
    u"http://xml.org/sax/features/namespaces=true",
    u"http://xml.org/sax/features/namespace-prefixes=false",
    u"http://xml.org/sax/features/lexical-handler/parameter-entities=true",
};

std::u16string_view nameOf(std::u16string_view line) { return line.substr(0, line.rfind(u'=')); }

/// The value stored under `name` in one of these lines.
template <class Lines> std::optional<bool> valueIn(const Lines& lines, std::u16string_view name) {
    for (const std::u16string_view line : lines) {
        const std::u16string_view lineName = nameOf(line);
        if (NuEqualFolded(lineName, name)) {
            return NuXMLToBool(line.substr(lineName.size() + 1));
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<bool> TNuSaxFeatures::Get(std::u16string_view name) const {
    return lines_.empty() ? valueIn(defaults, name) : valueIn(lines_, name);
}

void TNuSaxFeatures::Set(std::u16string_view name, bool value) {
    if (lines_.empty()) {
        lines_.assign(std::begin(defaults), std::end(defaults));
    }
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
