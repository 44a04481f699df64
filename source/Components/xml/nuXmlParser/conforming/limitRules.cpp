#include "nuXmlParser/conforming/limitRules.h"

namespace nu {

/// In the units of UTF-16 that the reader counts.
bool LimitRules::isShort(std::string_view name) const noexcept {
    std::size_t units = 0;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        units += (byte & 0xC0U) == 0x80U ? 0 : byte >= 0xF0U ? 2 : 1;
    }
    return units <= nameLength_;
}

} // namespace nu
