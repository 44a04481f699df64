#include "host/com/errorInfo.h"

#include <utility>

#include "host/com/implements.h"
#include "host/runtime/exception.h"
#include "host/runtime/format.h"

namespace host {

namespace {

class ErrorInfo final : public Implements<IErrorInfo, ICreateErrorInfo> {
public:
    explicit ErrorInfo(std::u16string description) noexcept
        : description_(std::move(description)) {}

    // These two stand outside the boundary that publishes failures: it would come back here.
    ResultCode GetDescription(std::u16string& description) noexcept override {
        return copy(description_, description);
    }
    ResultCode SetDescription(std::u16string_view description) noexcept override {
        return copy(description, description_);
    }

private:
    static ResultCode copy(std::u16string_view source, std::u16string& target) noexcept {
        try {
            target = source;
            return resultOk;
        } catch (...) {
            target.clear();
            return resultOutOfMemory;
        }
    }

    std::u16string description_;
};

/// The place of the calling thread.
Ref<IErrorInfo>& publishedErrorInfo() noexcept {
    thread_local Ref<IErrorInfo> place;
    return place;
}

/// The record is empty for what is no exception object.
void publishMessage(const std::exception* failure) noexcept {
    Ref<IErrorInfo> record;
    try {
        record = makeRef<ErrorInfo>(failure == nullptr ? std::u16string() : messageOf(*failure));
    } catch (...) {
        // No memory. Going on without a record still replaces an older one, which must not pass
        // for the description of this failure.
    }
    SetErrorInfo(record.get());
}

std::u16string hexadecimal(ResultCode code) {
    std::u16string digits;
    for (int shift = 28; shift >= 0; shift -= 4) {
        digits += u"0123456789ABCDEF"[(static_cast<std::uint32_t>(code) >> shift) & 0xFU];
    }
    return digits;
}

} // namespace

ResultCode CreateErrorInfo(Ref<ICreateErrorInfo>& errorInfo) noexcept {
    errorInfo.reset();
    try {
        errorInfo = makeRef<ErrorInfo>(std::u16string());
        return resultOk;
    } catch (...) {
        return resultOutOfMemory;
    }
}

ResultCode SetErrorInfo(IErrorInfo* errorInfo) noexcept {
    publishedErrorInfo() = Ref<IErrorInfo>(errorInfo);
    return resultOk;
}

ResultCode GetErrorInfo(Ref<IErrorInfo>& errorInfo) noexcept {
    errorInfo = std::exchange(publishedErrorInfo(), {});
    return errorInfo ? resultOk : resultFalse;
}

ResultCode publishFailure(const std::exception& failure) noexcept {
    publishMessage(&failure);
    const auto* const systemError = dynamic_cast<const ESystemError*>(&failure);
    const bool hasOwnCode = systemError != nullptr && systemError->Code() < 0;
    return hasOwnCode ? systemError->Code() : resultUnexpected;
}

ResultCode publishCurrentFailure() noexcept {
    try {
        throw;
    } catch (const std::exception& failure) {
        return publishFailure(failure);
    } catch (...) {
        publishMessage(nullptr);
        return resultUnexpected;
    }
}

void raiseResult(ResultCode code) {
    Ref<IErrorInfo> errorInfo;
    std::u16string message;
    if (GetErrorInfo(errorInfo) == resultOk) {
        errorInfo->GetDescription(message);
    }
    if (message.empty()) {
        message = formatMessage(u"The operation failed with the code 0x%s", {hexadecimal(code)});
    }
    throw ESystemError(message, code);
}

} // namespace host
