#include "common/encoding.h"

#include <array>
#include <string_view>
#include <typeinfo>

#include "common/stringStream.h"
#include "host/runtime/memoryStream.h"

namespace {

using namespace std::string_view_literals;

struct ByteOrderMark {
    std::string_view bytes;
    TNuEncoding encoding;
};

// The longer of two marks that begin alike comes first: taken for UTF-16, UTF-32 text would look
// like text that ends at once.
constexpr std::array<ByteOrderMark, 5> byteOrderMarks = {{
    {"\xEF\xBB\xBF"sv, neUtf8},
    {"\xFF\xFE\0\0"sv, neUtf32LittleEndian},
    {"\0\0\xFE\xFF"sv, neUtf32BigEndian},
    {"\xFF\xFE"sv, neUtf16LittleEndian},
    {"\xFE\xFF"sv, neUtf16BigEndian},
}};

bool isWideStringStream(host::TStream& stream) {
    // Mostly it is this one, which is known without a search of its bases.
    if (typeid(stream) == typeid(host::TMemoryViewStream)) {
        return false;
    }
    const auto* const text = dynamic_cast<const TNuStringStream*>(&stream);
    return text != nullptr && text->StringType() == 2;
}

// Reads on where a stream gives less than asked before its end.
std::size_t readUpTo(host::TStream& stream, char* buffer, std::size_t count) {
    std::size_t filled = 0;
    while (filled < count) {
        const std::size_t got = stream.Read(buffer + filled, count - filled);
        if (got == 0) {
            break;
        }
        filled += got;
    }
    return filled;
}

} // namespace

TNuEncoding NuGetEncoding(host::TStream& stream) {
    const std::int64_t start = stream.GetPosition();
    std::array<char, 4> buffer{};
    const std::string_view head(buffer.data(), readUpTo(stream, buffer.data(), buffer.size()));
    // In text known to be UTF-16 other marks are characters: U+BBEF begins with a mark of UTF-8.
    if (isWideStringStream(stream)) {
        stream.SetPosition(start + (head.starts_with("\xFF\xFE"sv) ? 2 : 0));
        return neUtf16LittleEndian;
    }
    for (const ByteOrderMark& mark : byteOrderMarks) {
        if (head.starts_with(mark.bytes)) {
            stream.SetPosition(start + static_cast<std::int64_t>(mark.bytes.size()));
            return mark.encoding;
        }
    }
    stream.SetPosition(start);
    return neAnsi;
}
