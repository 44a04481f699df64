#include "nuXmlParser/conforming/streamText.h"

#include <algorithm>
#include <cstdint>

#include "common/stringStream.h"
#include "nuXmlParser/textMemory.h"

namespace nu {

std::optional<std::string_view> restInMemory(host::TStream& stream) {
    const auto* const memory = asMemoryStream(stream);
    if (memory == nullptr) {
        return std::nullopt;
    }
    const std::int64_t start = stream.GetPosition();
    const std::int64_t size = std::max<std::int64_t>(stream.GetSize() - start, 0);
    const auto* const bytes = reinterpret_cast<const char*>(memory->Memory());
    return size == 0 ? std::string_view("")
                     : std::string_view(bytes + start, static_cast<std::size_t>(size));
}

bool isWideText(host::TStream& stream) {
    const auto* const text = dynamic_cast<const TNuStringStream*>(&stream);
    return text != nullptr && text->StringType() == 2;
}

} // namespace nu
