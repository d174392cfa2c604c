#include <gtest/gtest.h>

#include <kelmediatypes/TickTime.hpp>

using kelmediatypes::TickTime;

TEST(TickTime, HoldsAndComparesTicks) {
    EXPECT_EQ(TickTime().GetTicks(), 0);
    EXPECT_EQ(TickTime(TickTime::kTicksPerSecond).GetTicks(), 254016000000);
    EXPECT_LT(TickTime(-1), TickTime(0));
    EXPECT_EQ(TickTime(INT64_MAX), TickTime(INT64_MAX));
    EXPECT_NE(TickTime(1), TickTime(2));
}
