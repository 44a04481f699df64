#pragma once

#include <type_traits>
#include <utility>

#include "host/com/errorInfo.h"

/// \file
/// The boundary between operations that throw and give their result, and interface operations that
/// give a host::ResultCode and pass their result through an out-parameter.

namespace host {

/// Runs `operation` for an interface operation without a result. Whatever it throws is published as
/// error information and becomes the code, see publishFailure.
template <class Operation> ResultCode guardCall(Operation&& operation) noexcept {
    try {
        std::forward<Operation>(operation)();
        return resultOk;
    } catch (...) {
        return publishCurrentFailure();
    }
}

/// Runs `operation` for an interface operation and puts what it gives into the out-parameter
/// `result`, which is cleared before any work and stays so when the operation fails.
///
/// What `result` held is let go at the end only: it may well be the very object that is called, as
/// in `node->get_parentNode(node)`. Nothing of that object may be used after guardCall, so let it
/// be the last thing an operation does.
template <class Result, class Operation>
ResultCode guardCall(Result& result, Operation&& operation) noexcept {
    static_assert(std::is_nothrow_default_constructible_v<Result> &&
                  std::is_nothrow_move_assignable_v<Result>);
    const auto run = [&] { result = std::forward<Operation>(operation)(); };
    if constexpr (std::is_trivially_destructible_v<Result>) {
        // Nobody has to give a number a value before the call, so it is not looked at.
        result = Result();
        return guardCall(run);
    } else {
        const Result former = std::exchange(result, Result());
        return guardCall(run);
    }
}

/// The way back: throws ESystemError with the code and the error information of an interface
/// operation that failed; gives the code of one that did not.
inline ResultCode checkResult(ResultCode code) {
    if (code < 0) {
        raiseResult(code);
    }
    return code;
}

} // namespace host
