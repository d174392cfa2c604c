// The common rates convert through their own instances of the frame
// arithmetic, with the rate as a constant; each must give what the general
// path gives for the same rate, at the rounding boundaries and on overflow.

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <optional>
#include <random>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "timestrings/CommonRates.hpp"
#include "timestrings/FrameArithmetic.hpp"

namespace {

using namespace keltemporalxmp::timestrings;
using Limits = std::numeric_limits<std::int64_t>;

constexpr std::int64_t kTicks = 254016000000;

struct Rate {
    std::int64_t numerator, denominator, ticksPerSecond;
};

// The common rates, their neighbours (which take the general path), and the
// common rates at another tick rate.
const Rate kRates[] = {
    {1, 1, kTicks},        {24, 1, kTicks},       {25, 1, kTicks},      {30, 1, kTicks},       {50, 1, kTicks},
    {60, 1, kTicks},       {1000, 1, kTicks},     {44100, 1, kTicks},   {48000, 1, kTicks},    {24000, 1001, kTicks},
    {30000, 1001, kTicks}, {60000, 1001, kTicks}, {26, 1, kTicks},      {30000, 1000, kTicks}, {29, 1, kTicks},
    {-25, 1, kTicks},      {25, 1, kTicks + 1},   {30000, 1001, 90000}, {kTicks, 1, kTicks},   {7, 3, kTicks},
};

// Keeps the compiler from seeing the rate, so that the general path runs.
std::int64_t Hidden(std::int64_t value) {
    volatile std::int64_t copy = value;
    return copy;
}

// Zero, the ends of the range, values around whole and half frames, around
// the largest count that still multiplies exactly, and random ones.
std::vector<std::int64_t> ValuesFor(const Rate& rate) {
    const std::int64_t ticksPerFrame = std::abs(rate.ticksPerSecond / rate.numerator * rate.denominator);
    const std::int64_t framesLimit = Limits::max() / std::abs(rate.ticksPerSecond / rate.numerator);
    std::vector<std::int64_t> values = {0, Limits::max(), Limits::min(), Limits::max() - 1, Limits::min() + 1};
    for (std::int64_t base : {ticksPerFrame, ticksPerFrame / 2, 7 * ticksPerFrame + ticksPerFrame / 2, framesLimit,
                              Limits::max() / rate.numerator, Limits::max() - ticksPerFrame / 2}) {
        for (std::int64_t offset : {-1, 0, 1}) {
            values.push_back(WrappingAdd(base, offset));
            values.push_back(WrappingNegate(WrappingAdd(base, offset)));
        }
    }
    std::mt19937_64 random(static_cast<std::uint64_t>(rate.numerator));
    for (int i = 0; i < 200; ++i) {
        values.push_back(static_cast<std::int64_t>(random()) >> (i % 64));
    }
    return values;
}

TEST(CommonRates, ReadingMatchesTheGeneralPath) {
    for (const Rate& rate : kRates) {
        for (std::int64_t frames : ValuesFor(rate)) {
            for (Reduction reduction : {Reduction::kAnyNumeratorButOne, Reduction::kNumeratorsAboveOne}) {
                const std::int64_t common =
                    AtCommonRate(rate.numerator, rate.denominator, rate.ticksPerSecond,
                                 [&](auto n, auto d, auto t) { return FramesToTicks(frames, n, d, t, reduction); });
                const std::int64_t general = FramesToTicks(frames, Hidden(rate.numerator), Hidden(rate.denominator),
                                                           Hidden(rate.ticksPerSecond), reduction);
                EXPECT_EQ(common, general) << frames << " frames at " << rate.numerator << "/" << rate.denominator;
            }
        }
    }
}

TEST(CommonRates, WritingMatchesTheGeneralPath) {
    for (const Rate& rate : kRates) {
        for (std::int64_t ticks : ValuesFor(rate)) {
            const std::optional<std::int64_t> common =
                AtCommonRate(rate.numerator, rate.denominator, rate.ticksPerSecond,
                             [&](auto n, auto d, auto t) { return TicksToFrames(ticks, n, d, t); });
            const std::optional<std::int64_t> general =
                TicksToFrames(ticks, Hidden(rate.numerator), Hidden(rate.denominator), Hidden(rate.ticksPerSecond));
            EXPECT_EQ(common, general) << ticks << " ticks at " << rate.numerator << "/" << rate.denominator;
        }
    }
}

TEST(CommonRates, OnlyListedRatesAtTheUsualTickRateBecomeConstants) {
    const auto becomesConstant = [](std::int64_t numerator, std::int64_t denominator, std::int64_t ticksPerSecond) {
        return AtCommonRate(numerator, denominator, ticksPerSecond,
                            [](auto n, auto, auto) { return !std::is_same_v<decltype(n), std::int64_t>; });
    };
    EXPECT_TRUE(becomesConstant(25, 1, kTicks));
    EXPECT_TRUE(becomesConstant(30000, 1001, kTicks));
    EXPECT_FALSE(becomesConstant(25, 1, kTicks + 1));
    EXPECT_FALSE(becomesConstant(30000, 1000, kTicks));
    EXPECT_FALSE(becomesConstant(26, 1, kTicks));
}

}  // namespace
