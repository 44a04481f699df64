#include "nuXmlDOM/face/convert.h"

#include "host/runtime/exception.h"
#include "nuXmlDOM/core/domMessages.h"

namespace nu {

TNuDOMNode* nodeBehind(host::IUnknown* interface) {
    if (interface == nullptr) {
        return nullptr;
    }
    const auto known = host::queryInterface<INuDomObject>(interface);
    TNuDOMNode* const node = known ? FaceAccess::asNode(*known->AsObject()) : nullptr;
    if (node == nullptr) {
        throw host::ESystemError(messages::foreignNode, host::resultNoInterface);
    }
    return node;
}

void raiseNodeRequired() { throw host::EInvalidPointer(messages::nodeRequired); }

} // namespace nu
