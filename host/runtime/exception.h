#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

#include "host/runtime/export.h"

namespace host {

/// The general exception: carries its message as UTF-16 and gives it as UTF-8 from what().
class NUXML_API Exception : public std::exception {
public:
    explicit Exception(std::u16string_view message);
    Exception(const Exception&) = default;
    Exception& operator=(const Exception&) = default;
    ~Exception() override;

    /// The message as it was given.
    [[nodiscard]] const std::u16string& Message() const noexcept { return message_; }
    /// The message as UTF-8; valid as long as the exception.
    [[nodiscard]] const char* what() const noexcept override { return utf8_.c_str(); }

private:
    std::u16string message_;
    std::string utf8_;
};

/// Text that cannot be converted: malformed UTF-8, a number that is none.
class NUXML_API EConvertError : public Exception {
public:
    using Exception::Exception;
    ~EConvertError() override;
};

/// An index outside a list.
class NUXML_API EListError : public Exception {
public:
    using Exception::Exception;
    ~EListError() override;
};

/// A broken rule of use (a missing owner, contradictory options); thrown in every build type.
class NUXML_API EAssertionFailed : public Exception {
public:
    using Exception::Exception;
    ~EAssertionFailed() override;
};

/// A stream that cannot do what was asked.
class NUXML_API EStreamError : public Exception {
public:
    using Exception::Exception;
    ~EStreamError() override;
};

/// A stream that gave fewer bytes than it promised.
class NUXML_API EReadError : public EStreamError {
public:
    using EStreamError::EStreamError;
    ~EReadError() override;
};

/// A stream that took fewer bytes than it was given.
class NUXML_API EWriteError : public EStreamError {
public:
    using EStreamError::EStreamError;
    ~EWriteError() override;
};

/// A file that cannot be opened or created.
class NUXML_API EFileOpenError : public EStreamError {
public:
    using EStreamError::EStreamError;
    ~EFileOpenError() override;
};

/// A pointer used against its rules, such as an object destroyed while somebody still holds it.
class NUXML_API EInvalidPointer : public Exception {
public:
    using Exception::Exception;
    ~EInvalidPointer() override;
};

/// An object that is not of the class that an operation needs.
class NUXML_API EInvalidCast : public Exception {
public:
    using Exception::Exception;
    ~EInvalidCast() override;
};

/// A failure of the system or of a component that reports failures as codes. The codes of
/// components are negative and pass unchanged through operations that give a host::ResultCode.
class NUXML_API ESystemError : public Exception {
public:
    ESystemError(std::u16string_view message, std::int32_t code);
    ~ESystemError() override;

    /// What the system calls the fault (errno).
    [[nodiscard]] std::int32_t Code() const noexcept { return code_; }

private:
    std::int32_t code_;
};

/// Throws EAssertionFailed with "`message` (`location`, line `line`)".
[[noreturn]] NUXML_API void failAssertion(std::u16string_view message, std::u16string_view location,
                                          int line);

/// Throws EListError with "List index out of bounds (`index`)".
[[noreturn]] NUXML_API void raiseListIndex(std::int64_t index);

/// Throws EListError unless `index` is below `count`.
inline void checkListIndex(std::int64_t index, std::size_t count) {
    if (static_cast<std::uint64_t>(index) >= count) {
        raiseListIndex(index);
    }
}

/// The UTF-16 message of an exception: that of host::Exception as it is, what() of others read as
/// UTF-8.
NUXML_API std::u16string messageOf(const std::exception& exception);

/// The message of the exception that is being handled; empty for what is not an exception object.
/// Call it inside a catch block.
NUXML_API std::u16string currentExceptionMessage();

} // namespace host
