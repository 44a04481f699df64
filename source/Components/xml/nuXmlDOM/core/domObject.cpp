#include "nuXmlDOM/core/domObject.h"

#include "host/com/errorInfo.h"
#include "host/runtime/exception.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/core/face.h"

TNuDOMObject::TNuDOMObject(TNuDOMDocument* document)
    : context_(document != nullptr ? document->names_.nameless() : nullptr) {
    if (document == nullptr) {
        host::failAssertion(nu::cOwnerRequired, nu::cDomLocation, __LINE__);
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
        context_->document->lifetime_.hold();
    }
    return count;
}

std::int32_t TNuDOMObject::_Release() noexcept {
    // What is asked of the object is asked first: once the count is down it may be freed elsewhere.
    TNuDOMDocument* document = OwnerDocument();
    TNuDOMNode* detached = nullptr;
    bool isDetached = hasFlag(nu::selfOwned);
    if (nodeType_ != 0 && nodeType_ != host::DOCUMENT_NODE) {
        auto* node = static_cast<TNuDOMNode*>(this);
        isDetached = !nu::NodeAccess::isLinked(*node);
        detached = isDetached && !hasFlag(nu::isCandidate) ? node : nullptr;
    }
    const std::int32_t left = count_.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (left == 0) {
        if (hasFlag(nu::selfOwned)) {
            _GC();
        }
        if (document != nullptr) {
            document->lifetime_.forget(detached, !isDetached);
        }
    }
    return left;
}

host::ResultCode TNuDOMObject::SafeCallException(const std::exception& exception) noexcept {
    return host::publishFailure(exception);
}
