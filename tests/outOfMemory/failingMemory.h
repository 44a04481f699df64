#pragma once

#include <gtest/gtest.h>

#include "host/com/errorInfo.h"

/// \file
/// Memory whose allocations fail one after the other.

namespace failing {

/// Allocations of the operation that is to be looked at, until one fails. The first run fails in
/// none of them, so that what is made once and for all is there.
extern long failingCount;
/// Whether one has failed.
extern bool wasReached;

/// Tells that such an operation begins, or that it has ended.
void onCall(bool begins);
/// Blocks that this thread has allocated and not freed.
[[nodiscard]] long blocks() noexcept;

/// Does `work`, which calls onCall around what is to fail, until no allocation of it is left that
/// could. Gives the number of runs that failed.
template <class Work> long failEverywhere(Work&& work) {
    for (failingCount = -1;; ++failingCount) {
        SCOPED_TRACE(failingCount);
        const auto run = [&] {
            wasReached = false;
            const long before = blocks();
            work();
            host::SetErrorInfo(nullptr);
            return blocks() - before;
        };
        long leaked = run();
        if (failingCount >= 0 && leaked != 0) {
            leaked = run(); // what is made once and for all where something fails is there now
        }
        EXPECT_TRUE(failingCount < 0 || leaked == 0) << leaked << " blocks leaked";
        if (::testing::Test::HasFailure() || (failingCount >= 0 && !wasReached)) {
            return failingCount;
        }
    }
}

} // namespace failing
