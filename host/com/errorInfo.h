#pragma once

#include <exception>
#include <string>
#include <string_view>

#include "host/com/ref.h"
#include "host/com/unknown.h"

/// \file
/// Error information: what went wrong in words, beside the host::ResultCode of a failed operation.
/// Each thread has one place for it. A failing operation publishes its record there; who handles
/// the failure takes it. Operations that succeed leave the place alone.

namespace host {

/// What went wrong, for reading.
class NUXML_API IErrorInfo : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x9D3E51A8C6F24B07, 0x8E2AD1F4B6930001};

    /// The message, a sentence in English.
    virtual ResultCode GetDescription(std::u16string& description) noexcept = 0;
};

/// A record of error information while it is being filled; its IErrorInfo reads it.
class NUXML_API ICreateErrorInfo : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x9D3E51A8C6F24B07, 0x8E2AD1F4B6930002};

    /// Sets the message that GetDescription gives.
    virtual ResultCode SetDescription(std::u16string_view description) noexcept = 0;
};

/// Makes an empty record. Gives resultOutOfMemory and an empty handle when there is no memory.
NUXML_API ResultCode CreateErrorInfo(Ref<ICreateErrorInfo>& errorInfo) noexcept;

/// Publishes a record for the calling thread in place of an older one; null takes the older away.
NUXML_API ResultCode SetErrorInfo(IErrorInfo* errorInfo) noexcept;

/// Takes the record of the calling thread, so that the next call finds none. Gives resultFalse and
/// an empty handle when there is none.
NUXML_API ResultCode GetErrorInfo(Ref<IErrorInfo>& errorInfo) noexcept;

/// Publishes the message of an exception as error information and gives the code of the failure:
/// that of an ESystemError when it is negative, else resultUnexpected. Without memory for the
/// record there is none, and an older one is taken away all the same.
NUXML_API ResultCode publishFailure(const std::exception& failure) noexcept;

/// publishFailure for the exception that is being handled, whatever its type. Call it inside a
/// catch block.
NUXML_API ResultCode publishCurrentFailure() noexcept;

/// Throws ESystemError with `code`; its message is the calling thread's error information, which is
/// taken, or says the code when there is none.
[[noreturn]] NUXML_API void raiseResult(ResultCode code);

} // namespace host
