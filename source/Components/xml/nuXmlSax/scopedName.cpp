#include "nuXmlSax/scopedName.h"

#include "common/caseFolding.h"
#include "nuXmlParser/chars.h"
#include "nuXmlParser/namespaceNames.h"

namespace nu {

namespace {

bool declares(std::u16string_view name, bool isExact) {
    const std::u16string_view letters = name.substr(0, declarationPrefix.size());
    return (isExact ? letters == declarationPrefix : NuEqualFolded(letters, declarationPrefix)) &&
           (name.size() == letters.size() || name[letters.size()] == cNuColon);
}

} // namespace

ScopedName::ScopedName(std::string_view bytes, std::uint64_t hash, std::u16string_view units,
                       TNuSaxNamespaceList& namespaces, bool isExact)
    : ByteName(bytes, hash), units(units) {
    // 1. The reader divides names at their last colon.
    std::u16string_view prefix;
    if (contains(cNuColonA)) {
        prefix = units.substr(0, units.rfind(cNuColon));
        localStart = static_cast<std::uint32_t>(prefix.size()) + 1;
    }
    scope = &namespaces.prefixScope(prefix);

    // 2. What means something begins with an x, in either letter case, as few names do.
    if ((units.front() | 0x20) != u'x') {
        return;
    }
    // Declarations are known by their first letters, and prefix nothing else.
    if (declares(units, isExact)) {
        meaning = Meaning::Namespace;
        declaredPrefix = units.substr(hasColon() ? localStart : units.size());
        declared = &namespaces.prefixScope(declaredPrefix);
    } else if (units == u"xml:space") {
        meaning = Meaning::Space;
    }
}

} // namespace nu
