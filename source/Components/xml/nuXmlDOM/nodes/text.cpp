#include "nuXmlDOM/core/text.h"

#include <algorithm>
#include <limits>

#include "nuXmlDOM/core/cdata.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/core/nodeLinks.h"
#include "nuXmlDOM/nodes/makeNode.h"
#include "nuXmlDOM/storage/escapedText.h"
#include "nuXmlDOM/upkeep/documentParts.h"

const TNuDOMNodeClass TNuDOMText::Class{u"TNuDOMText", host::TEXT_NODE, nu::createNode<TNuDOMText>};
const TNuDOMNodeClass TNuDOMCDATA::Class{u"TNuDOMCDATA", host::CDATA_SECTION_NODE,
                                         nu::createNode<TNuDOMCDATA>};

namespace {

std::size_t placeIn(std::u16string_view text, std::ptrdiff_t offset) {
    return offset > 0 ? std::min(static_cast<std::size_t>(offset), text.size()) : 0;
}

/// The first `offset` characters, as many as there are.
std::u16string_view headOf(std::u16string_view text, std::ptrdiff_t offset) {
    return text.substr(0, placeIn(text, offset));
}

/// What follows the first `offset` characters.
std::u16string_view tailOf(std::u16string_view text, std::ptrdiff_t offset) {
    return text.substr(placeIn(text, offset));
}

/// offset + count, which may be far outside of any text.
std::ptrdiff_t endOf(std::ptrdiff_t offset, std::ptrdiff_t count) {
    constexpr std::ptrdiff_t far = std::numeric_limits<std::ptrdiff_t>::max() / 2;
    return std::clamp(offset, -far, far) + std::clamp(count, -far, far);
}

NuXmlString joined(std::u16string_view head, std::u16string_view middle, std::u16string_view tail) {
    NuXmlString text;
    text.reserve(head.size() + middle.size() + tail.size());
    return text.append(head).append(middle).append(tail);
}

/// Whether "]]>" or "<![" stands where one of the groups of three begins.
bool hasRefusedGroup(std::u16string_view text) {
    for (std::size_t place = 0; text.size() - place >= 3; place += 3) {
        const std::u16string_view group = text.substr(place, 3);
        if (group == u"]]>" || group == u"<![") {
            return true;
        }
    }
    return false;
}

} // namespace

// Text

void TNuDOMText::set_nodeValue(std::u16string_view value) {
    clearFlag(nu::isFreeOfReferences);
    nu::assignEscaped(stored(), OwnerDocument()->parts().memory, value);
    setFlag(nu::isCanonicalText);
}

/// Whether what is stored may read otherwise than what is meant. Texts are looked through once, not
/// for each part that somebody asks for.
bool TNuDOMText::mayHaveReferences() {
    if (hasFlag(nu::isFreeOfReferences)) {
        return false;
    }
    if (stored().contains(cNuAmp)) {
        return true;
    }
    setFlag(nu::isFreeOfReferences);
    return false;
}

std::size_t TNuDOMText::get_length() const {
    return const_cast<TNuDOMText*>(this)->mayHaveReferences() ? get_data().size()
                                                              : indexed().length();
}

NuXmlString TNuDOMText::substringData(std::ptrdiff_t offset, std::ptrdiff_t count) {
    const std::ptrdiff_t start = std::max<std::ptrdiff_t>(offset, 1) - 1;
    const auto length = static_cast<std::size_t>(std::max<std::ptrdiff_t>(count, 0));
    if (!mayHaveReferences()) {
        return indexed().part(static_cast<std::size_t>(start), length);
    }
    return NuXmlString(tailOf(get_data(), start).substr(0, length));
}

void TNuDOMText::appendData(std::u16string_view text) {
    if (!hasFlag(nu::isCanonicalText)) {
        set_data(joined(get_data(), text, {}));
        return;
    }
    // Escaping the whole anew would give what is stored, followed by this.
    clearFlag(nu::isFreeOfReferences);
    nu::appendEscaped(stored(), OwnerDocument()->parts().memory, text);
}

void TNuDOMText::insertData(std::ptrdiff_t offset, std::u16string_view text) {
    replaceData(offset, 0, text);
}

void TNuDOMText::deleteData(std::ptrdiff_t offset, std::ptrdiff_t count) {
    replaceData(offset, count, {});
}

void TNuDOMText::replaceData(std::ptrdiff_t offset, std::ptrdiff_t count,
                             std::u16string_view text) {
    const NuXmlString data = get_data();
    set_data(joined(headOf(data, offset), text, tailOf(data, endOf(offset, count))));
}

NuRef<TNuDOMText> TNuDOMText::splitText(std::ptrdiff_t offset) {
    const NuXmlString data = get_data();
    // Deliberate: what follows in a CDATA section becomes a text node.
    TNuDOMNode* parent = nu::NodeLinks::isLinked(*this) ? get_parentNode() : nullptr;
    const NuRef<TNuDOMCharacterData> rest = &OwnerDocument()->_CreateCharacterData(
        TNuDOMText::Class, tailOf(data, offset), parent, rdpAfter, this);
    set_data(headOf(data, offset));
    return static_cast<TNuDOMText*>(rest.get());
}

// CDATA

NuXmlString TNuDOMCDATA::get_nodeName() const { return u"#cdata-section"; }

void TNuDOMCDATA::set_nodeValue(std::u16string_view value) {
    clearFlag(nu::isFreeOfReferences);
    if (hasRefusedGroup(value)) {
        stored().clear(OwnerDocument()->parts().memory);
        throw ENuDomInvalidCharacter(nu::messages::invalidCData);
    }
    store(value);
    setFlag(nu::isCanonicalText);
}

void TNuDOMCDATA::appendData(std::u16string_view text) {
    const std::size_t checked = stored().length() / 3 * 3;
    if (!hasFlag(nu::isCanonicalText) ||
        hasRefusedGroup(joined(stored().part(checked, 3), text, {}))) {
        set_data(joined(get_data(), text, {}));
        return;
    }
    // The groups before are known to be sound.
    clearFlag(nu::isFreeOfReferences);
    stored().append(OwnerDocument()->parts().memory, text);
}
