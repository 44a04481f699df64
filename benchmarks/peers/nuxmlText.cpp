#include "nuXmlParser/escape.h"
#include "nuXmlParser/unescape.h"
#include "peers/peer.h"

namespace bench {

namespace {

template <typename Convert> Conversion prepare(const Pieces& pieces, Convert convert) {
    return [&pieces, convert] {
        std::size_t length = 0;
        for (const std::u16string& piece : pieces) {
            length += convert(piece).size();
        }
        return length;
    };
}

const bool registered = addConverter(
    {oursName,
     [](const Pieces& pieces) {
         return prepare(pieces, [](std::u16string_view text) { return NuStrToXML(text); });
     },
     [](const Pieces& pieces) {
         return prepare(pieces, [](std::u16string_view text) { return NuXMLToStr(text); });
     }});

} // namespace

} // namespace bench
