#include "nuXmlSax/handler.h"

#include <exception>

#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "nuXmlSax/messages.h"
#include "nuXmlSax/reader.h"

TNuSAXHandler::~TNuSAXHandler() noexcept(false) {
    if (std::uncaught_exceptions() == 0) {
        checkNotHeld();
    }
}

std::int32_t TNuSAXHandler::_AddRef() noexcept {
    return count_.fetch_add(1, std::memory_order_relaxed) + 1;
}

std::int32_t TNuSAXHandler::_Release() noexcept {
    const std::int32_t left = count_.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (left == 0) {
        delete this;
    }
    return left;
}

void TNuSAXHandler::Free() {
    checkNotHeld();
    delete this;
}

const TNuSAXReaderEvents& TNuSAXHandler::events() const noexcept {
    static const TNuSAXReaderEvents none;
    return reader_ != nullptr ? *reader_ : none;
}

void TNuSAXHandler::checkNotHeld() const {
    const std::int32_t count = RefCount();
    if (count != 0) {
        throw host::Exception(host::formatMessage(nu::messages::danglingReferences, {count}));
    }
}
