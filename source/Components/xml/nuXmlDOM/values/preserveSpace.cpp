#include "nuXmlDOM/values/preserveSpace.h"

#include "common/caseFolding.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/element.h"
#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/core/nodeLinks.h"
#include "nuXmlDOM/upkeep/documentParts.h"

namespace nu {

namespace {

constexpr std::u16string_view spaceName = u"xml:space";
constexpr std::u16string_view preserveValue = u"preserve";
constexpr std::u16string_view defaultValue = u"default";

} // namespace

const NodeName* findSpaceName(TNuDOMDocument& document) noexcept {
    return document.parts().names.find(spaceName);
}

const TNuDOMAttribute* findSpaceAttribute(const TNuDOMElement& element,
                                          const NodeName& name) noexcept {
    for (const TNuDOMAttribute& attribute : element.Attributes()) {
        if (NodeContext::name(attribute).canonical == &name) {
            return &attribute;
        }
    }
    return nullptr;
}

bool saysPreserve(const TNuDOMAttribute& attribute) {
    return NuEqualAsciiWord(attribute.get_nodeValue(), preserveValue);
}

} // namespace nu

bool TNuDOMElement::GetPreserveSpace() const {
    const nu::NodeName* name = nu::findSpaceName(*OwnerDocument());
    if (name == nullptr) {
        return false;
    }
    // Here, else at the nearest element around this one that says something.
    for (const TNuDOMElement* element = this; element != nullptr;
         element = nu::NodeLinks::parentElement(*element)) {
        if (const TNuDOMAttribute* attribute = nu::findSpaceAttribute(*element, *name)) {
            return nu::saysPreserve(*attribute);
        }
    }
    return false;
}

void TNuDOMElement::SetPreseveSpace(bool preserve) {
    setAttribute(nu::spaceName, preserve ? nu::preserveValue : nu::defaultValue);
}
