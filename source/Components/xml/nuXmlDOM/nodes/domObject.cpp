#include "nuXmlDOM/core/domObject.h"

#include "host/com/errorInfo.h"
#include "host/runtime/exception.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/core/face.h"
#include "nuXmlDOM/core/nodeLinks.h"
#include "nuXmlDOM/upkeep/documentParts.h"

TNuDOMObject::TNuDOMObject(TNuDOMDocument* document)
    : context_(document != nullptr ? document->parts().names.nameless() : nullptr) {
    if (document == nullptr) {
        host::failAssertion(nu::messages::ownerRequired, nu::messages::domLocation, __LINE__);
    }
}

host::ResultCode TNuDOMObject::QueryInterface(const host::InterfaceId& id, void** object) noexcept {
    *object = nullptr;
    try {
        *object = face().find(id);
    } catch (...) {
        return host::publishCurrentFailure();
    }
    if (*object == nullptr) {
        return host::resultNoInterface;
    }
    _AddRef();
    return host::resultOk;
}

std::int32_t TNuDOMObject::_AddRef() noexcept {
    const std::int32_t count = count_.fetch_add(1, std::memory_order_relaxed) + 1;
    if (count == 1 && context_ != nullptr) {
        context_->document->parts().lifetime.hold();
    }
    return count;
}

std::int32_t TNuDOMObject::_Release() noexcept {
    // What is asked of the object is asked first: once the count is down it may be freed elsewhere.
    TNuDOMDocument* document = OwnerDocument();
    const bool isSelfOwned = hasFlag(nu::selfOwned);
    bool asksDocument = !isSelfOwned;
    std::int32_t count = count_.load(std::memory_order_relaxed);
    do {
        if (count == 1 && !isSelfOwned) {
            asksDocument = noteLastRelease(document->parts().lifetime);
        }
    } while (!count_.compare_exchange_weak(count, count - 1, std::memory_order_acq_rel,
                                           std::memory_order_relaxed));
    if (count == 1) {
        if (isSelfOwned) {
            _GC();
        }
        if (document != nullptr) {
            document->parts().lifetime.forget(asksDocument);
        }
    }
    return count - 1;
}

bool TNuDOMObject::noteLastRelease(nu::DocumentLifetime& lifetime) noexcept {
    const bool isList = nodeType_ == 0;
    auto& node =
        isList ? *static_cast<TNuDOMNodeList*>(this)->Node() : *static_cast<TNuDOMNode*>(this);
    if (node.nodeType_ == host::DOCUMENT_NODE) {
        return true;
    }
    const bool isOutside = !nu::NodeLinks::isLinked(node);
    if (isOutside || node.hasFlag(nu::isWitness)) {
        lifetime.note(node);
    }
    return isList || !isOutside;
}

host::ResultCode TNuDOMObject::SafeCallException(const std::exception& exception) noexcept {
    return host::publishFailure(exception);
}
