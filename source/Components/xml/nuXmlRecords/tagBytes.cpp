#include "nuXmlRecords/tagBytes.h"

#include "nuXmlParser/namespaceNames.h"

namespace nu {

std::string contextTag(const char* less, const char* greater) {
    const char* place = findNameEnd(less + 1);
    std::string tag(less, place);
    for (;;) {
        // 1. A name.
        while (place != greater && isTagSpace(*place)) {
            ++place;
        }
        const char* const name = place;
        place = findNameEnd(place);
        const std::string_view nameText(name, place);
        // 2. Its value in quotes; whoever reads the document complains where there is none.
        while (place != greater && isTagSpace(*place)) {
            ++place;
        }
        if (place == greater || *place != '=') {
            return tag += '>';
        }
        do {
            ++place;
        } while (place != greater && isTagSpace(*place));
        const void* const quote =
            place == greater
                ? nullptr
                : std::memchr(place + 1, *place, static_cast<std::size_t>(greater - place - 1));
        if (quote == nullptr) {
            return tag += '>';
        }
        place = static_cast<const char*>(quote) + 1;
        if (isNamespaceDeclaration(nameText) || nameText.starts_with("xml:")) {
            tag.append(" ").append(name, place);
        }
    }
}

} // namespace nu
