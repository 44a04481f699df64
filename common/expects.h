#pragma once

#include <cstdio>
#include <cstdlib>

/// \file
/// Invariants of the library itself, checked where it is developed: in the builds for daily work
/// and under sanitizers. What applications or documents can get wrong is no matter for these: it is
/// an error that is told, in every build.

namespace nu {

#if defined(NUXML_CHECKS)
inline constexpr bool checksInvariants = true;
#else
inline constexpr bool checksInvariants = false;
#endif

/// Says where an invariant does not hold, and ends the program.
[[noreturn, gnu::cold, gnu::noinline]] inline void failInvariant(const char* file, int line,
                                                                 const char* function) noexcept {
    static_cast<void>(
        std::fprintf(stderr, "%s:%d: an invariant of %s() does not hold\n", file, line, function));
    std::abort();
}

/// `holds` is always true, unless the library has a fault. The condition must be cheap and change
/// nothing: a release does without it.
constexpr void expects(bool holds, const char* file = __builtin_FILE(), int line = __builtin_LINE(),
                       const char* function = __builtin_FUNCTION()) noexcept {
    if constexpr (checksInvariants) {
        if (!holds) [[unlikely]] {
            failInvariant(file, line, function);
        }
    }
}

} // namespace nu
