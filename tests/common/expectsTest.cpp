#include "common/expects.h"

#include <gtest/gtest.h>

namespace {

void useHandle(int handle) { nu::expects(handle >= 0); }

TEST(Expects, EndsTheProgramWithThePlaceWhereItIsChecked) {
    useHandle(0);
    if constexpr (nu::checksInvariants) {
        EXPECT_DEATH(useHandle(-1), "expectsTest\\.cpp:7: an invariant of useHandle\\(\\)");
    } else {
        useHandle(-1);
    }
}

} // namespace
