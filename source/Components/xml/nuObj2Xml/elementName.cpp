#include "nuObj2Xml/elementName.h"

#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "host/runtime/published.h"
#include "nuObj2Xml/messages.h"

namespace nu {

void checkElementName(std::u16string_view name) {
    if (!host::detail::isElementName(name)) {
        throw host::Exception(host::formatMessage(messages::notAnElementName, {name}));
    }
}

std::u16string_view rootNameOf(const host::TClassInfo& info, std::u16string_view given) {
    if (!given.empty()) {
        checkElementName(given);
        return given;
    }
    const std::u16string_view name = info.name;
    const bool hasMark = name.size() > 1 && name[0] == u'T' && name[1] >= u'A' && name[1] <= u'Z';
    return hasMark ? name.substr(1) : name;
}

} // namespace nu
