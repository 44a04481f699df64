#pragma once

#include <functional>
#include <string>

/// This program's own forms of the system calls with which files are written. They are found before
/// those of the C library, also by the libraries, and do what they should unless something else is
/// planned.
namespace systemCalls {

struct Plan {
    int failsAt = 0;                ///< which call fails, counted from 1
    int error = 5;                  ///< EIO
    bool knowsUnnamed = true;       ///< whether the file system makes files without a name
    std::size_t mostAtOnce = 0;     ///< bytes that one write takes; every other one is interrupted
    std::string watched{};          ///< before each call of this name ...
    std::function<void()> action{}; ///< ... this happens
    int signal = 0;                 ///< comes before the call that would fail
};

/// Follows the plan until `end`.
void begin(const Plan& plan);
/// The name of the call that failed, with what it was for; empty where none did.
std::string end();

} // namespace systemCalls
