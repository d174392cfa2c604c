// Round trips over many random tick values and rates.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include <keltemporalxmp/docops.hpp>

namespace {

using keltemporalxmp::XMPDocOpsTemporal;

constexpr std::int64_t kTicks = 254016000000;
constexpr int kRounds = 20000;

std::int64_t ThroughText(std::int64_t ticks, std::int64_t numerator, std::int64_t denominator,
                         std::int64_t* numeratorBack, std::int64_t* denominatorBack) {
    std::string text;
    XMPDocOpsTemporal::ConvertTicksToExternalTimeString(&text, ticks, numerator, denominator, kTicks, true);
    *numeratorBack = 1;
    *denominatorBack = 1;
    return XMPDocOpsTemporal::ConvertExternalTimeStringToTicks(text.c_str(), numeratorBack, denominatorBack, kTicks);
}

TEST(TimeStringRoundTrip, ExactAtTheTickRate) {
    std::mt19937_64 random(1);
    for (int i = 0; i < kRounds; ++i) {
        const auto ticks = static_cast<std::int64_t>(random());
        std::int64_t numerator = 0;
        std::int64_t denominator = 0;
        EXPECT_EQ(ThroughText(ticks, kTicks, 1, &numerator, &denominator), ticks);
    }
}

void ExpectWithinHalfAFrame(std::int64_t ticks, std::int64_t numerator, std::int64_t denominator) {
    std::int64_t numeratorBack = 0;
    std::int64_t denominatorBack = 0;
    const std::int64_t back = ThroughText(ticks, numerator, denominator, &numeratorBack, &denominatorBack);
    const long double halfFrame = static_cast<long double>(kTicks) * denominator / numerator / 2;
    // Half a frame from the writer, half a tick from the reader.
    EXPECT_LE(std::fabs(static_cast<long double>(back) - ticks), halfFrame + 1)
        << ticks << " at " << numerator << "/" << denominator;
    EXPECT_EQ(numeratorBack, numerator);
    EXPECT_EQ(denominatorBack, denominator);
}

TEST(TimeStringRoundTrip, WithinHalfAFrameAtOtherRates) {
    const std::int64_t mediaRates[][2] = {{24, 1},       {25, 1},    {30000, 1001}, {24000, 1001},
                                          {60000, 1001}, {44100, 1}, {48000, 1},    {11, 1}};
    std::mt19937_64 random(2);
    std::uniform_int_distribution<std::int64_t> numerators(1, 240000);
    std::uniform_int_distribution<std::int64_t> denominators(1, 1001);
    for (int i = 0; i < kRounds; ++i) {
        const bool mediaRate = i % 2 == 0;
        const std::int64_t numerator = mediaRate ? mediaRates[i % std::size(mediaRates)][0] : numerators(random);
        const std::int64_t denominator = mediaRate ? mediaRates[i % std::size(mediaRates)][1] : denominators(random);
        // Up to a day of media, and inside 64 bits once scaled by the numerator.
        const std::int64_t limit = std::min(86400 * kTicks, std::numeric_limits<std::int64_t>::max() / numerator / 2);
        ExpectWithinHalfAFrame(std::uniform_int_distribution<std::int64_t>(-limit, limit)(random), numerator,
                               denominator);
    }
}

TEST(FrameRateStringRoundTrip, WriteThenReadGivesThePairBack) {
    std::mt19937_64 random(4);
    for (int i = 0; i < kRounds; ++i) {
        const auto numerator = static_cast<std::int64_t>(random());
        const std::int64_t denominator = i % 4 == 0 ? 1 : static_cast<std::int64_t>(random()) >> (i % 60);
        std::string text;
        XMPDocOpsTemporal::CreateExternalFrameRateString(&text, numerator, denominator);
        std::int64_t numeratorBack = 0;
        std::int64_t denominatorBack = 0;
        XMPDocOpsTemporal::ParseExternalFrameRateString(text.c_str(), &numeratorBack, &denominatorBack);
        ASSERT_EQ(numeratorBack, numerator) << text;
        ASSERT_EQ(denominatorBack, denominator) << text;
    }
}

}  // namespace
