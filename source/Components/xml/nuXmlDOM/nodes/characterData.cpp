#include "nuXmlDOM/core/characterData.h"

#include <array>

#include "host/runtime/stream.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domString.h"
#include "nuXmlDOM/core/nodeText.h"
#include "nuXmlDOM/upkeep/documentParts.h"

NuXmlString TNuDOMCharacterData::get_nodeName() const { return u"#text"; }

NuXmlString TNuDOMCharacterData::get_nodeValue() const {
    NuXmlString value;
    nu::NodeText::appendValue(*this, value);
    return value;
}

void TNuDOMCharacterData::_LoadFromBuffer(const NuXmlChar* characters, std::size_t count) {
    text_.append(OwnerDocument()->parts().memory, {characters, count});
    clearFlag(nu::isCanonicalText);
    clearFlag(nu::isFreeOfReferences);
    wasExtended();
}

void TNuDOMCharacterData::_LoadFromStream(host::TStream& stream) {
    // Everything is read before anything is kept: the stream may fail on the way.
    TNuDOMValue rest;
    std::array<std::byte, 16384> block;
    while (const std::size_t got = stream.Read(block.data(), block.size())) {
        rest.WriteBuffer(block.data(), got);
    }
    const NuXmlString text = rest.GetAsDomString();
    _LoadFromBuffer(text.data(), text.size());
}

void TNuDOMCharacterData::store(std::u16string_view text) {
    text_.assign(OwnerDocument()->parts().memory, text);
}

const nu::StoredText& TNuDOMCharacterData::indexed() const {
    text_.widen(OwnerDocument()->parts().memory);
    return text_;
}
