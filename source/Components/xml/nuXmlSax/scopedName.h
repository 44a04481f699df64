#pragma once

#include <cstdint>
#include <string_view>

#include "host/runtime/export.h"
#include "nuXmlParser/markup/byteName.h"
#include "nuXmlSax/namespaceList.h"

namespace nu {

/// A name in the bytes of a document with what it means to the scopes of a reader.
struct ScopedName : markup::ByteName {
    /// What an attribute of this name means.
    enum class Meaning : std::uint8_t { None, Namespace, Space };

    /// \param units the same name in UTF-16; it stays where it is as long as this object
    /// \param isExact whether letter case counts in declarations
    NUXML_API ScopedName(std::string_view bytes, std::uint64_t hash, std::u16string_view units,
                         TNuSaxNamespaceList& namespaces, bool isExact);

    std::u16string_view units;
    std::uint32_t localStart = 0; ///< in units, behind the last colon
    Meaning meaning = Meaning::None;
    PrefixScope* scope;                 ///< of the prefix
    PrefixScope* declared = nullptr;    ///< what a declaration declares, else null
    std::u16string_view declaredPrefix; ///< the same as it is written

    [[nodiscard]] bool hasColon() const noexcept { return localStart != 0; }
};

} // namespace nu
