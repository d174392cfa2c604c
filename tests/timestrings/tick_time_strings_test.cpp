#include <cstdint>
#include <functional>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include <keltemporalxmp/docops.hpp>
#include <xmptoolkit/XMP_Error.hpp>

namespace {

using keltemporalxmp::XMPDocOpsTemporal;

constexpr std::int64_t kTicks = 254016000000;
constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();

struct ReadCase {
    const char* text;
    std::int64_t defaultNumerator, defaultDenominator;
    std::int64_t ticks;
    std::int64_t numeratorOut, denominatorOut;
};

const ReadCase kReadCases[] = {
    {"1001f30000s1001", 1, 1, 8484142867200, 30000, 1001},
    {"90f25", 1, 1, 914457600000, 25, 1},
    {"90", 25, 1, 914457600000, 25, 1},
    {"250", kTicks, 1, 250, kTicks, 1},
    {"-3f24", 1, 1, -31752000000, 24, 1},
    {"12abc", 25, 1, 121927680000, 25, 1},
    {"f25", 1, 1, 0, 25, 1},
    {"99999999999999999999f25", 1, 1, 0, 25, 1},
    {"maximum", 7, 3, kMax, 7, 3},
    {"Maximum", 25, 1, 0, 25, 1},
    {"maximum ", 25, 1, 0, 25, 1},
    {"1f2f3", 25, 1, 10160640000, 25, 1},         // two "f": digits before the first, default rate
    {"1f30000s1001s2", 1, 1, 8467200, 30000, 1},  // two "s": the whole rate is the numerator
    {"10f30000s", 1, 1, 0, 30000, 0},
    {"-9223372036854775808", kTicks, 1, std::numeric_limits<std::int64_t>::min(), kTicks, 1},
    {"9223372036854775808", kTicks, 1, 0, kTicks, 1},
    {"+5", 25, 1, 0, 25, 1},
    {"-", 25, 1, 0, 25, 1},
    {"", 25, 1, 0, 25, 1},
};

TEST(TickTimeStringRead, WorkedExamplesAndFallbacks) {
    for (const ReadCase& c : kReadCases) {
        std::int64_t numerator = c.defaultNumerator;
        std::int64_t denominator = c.defaultDenominator;
        EXPECT_EQ(XMPDocOpsTemporal::ConvertExternalTimeStringToTicks(c.text, &numerator, &denominator, kTicks),
                  c.ticks)
            << c.text;
        EXPECT_EQ(numerator, c.numeratorOut) << c.text;
        EXPECT_EQ(denominator, c.denominatorOut) << c.text;
        EXPECT_EQ(XMPDocOpsTemporal::ConvertExternalTimeStringToTicks(c.text, c.defaultNumerator, c.defaultDenominator,
                                                                      kTicks),
                  c.ticks)
            << c.text;
    }
}

TEST(TickTimeStringRead, OnlyTheInOutFormReducesNegativeNumerators) {
    // -7 divides the tick rate: the in/out form multiplies exactly, the by-value
    // form rounds ticks per frame once the frame count is too large to multiply.
    std::int64_t numerator = 1;
    std::int64_t denominator = 1;
    EXPECT_EQ(XMPDocOpsTemporal::ConvertExternalTimeStringToTicks("40000000f-7", &numerator, &denominator, kTicks),
              -1451520000000000000);
    EXPECT_EQ(XMPDocOpsTemporal::ConvertExternalTimeStringToTicks("40000000f-7", 1, 1, kTicks), -1451519999960000000);
}

struct WriteCase {
    std::int64_t ticks, numerator, denominator;
    bool appendRate;
    const char* text;
};

const WriteCase kWriteCases[] = {
    {kTicks, 25, 1, true, "25f25"},
    {kTicks, 30000, 1001, true, "30f30000s1001"},
    {kTicks, 30000, 1001, false, "30"},
    {5080320000, 25, 1, false, "1"},
    {5080319999, 25, 1, false, "0"},
    {-5080320000, 25, 1, false, "-1"},
    {-kTicks, 25, 1, true, "-25f25"},
    {0, 25, 1, true, "0"},
    {762048000000, kTicks, 1, false, "762048000000"},
    {kMax, 25, 1, true, "maximum"},
    {0, 0, 0, true, "0"},  // no rate is needed for these two
    {kMax, 0, 0, true, "maximum"},
    {kTicks, 50, 2, true, "25f50s2"},
};

TEST(TickTimeStringWrite, WorkedExamples) {
    for (const WriteCase& c : kWriteCases) {
        std::string text = "previous content";
        XMPDocOpsTemporal::ConvertTicksToExternalTimeString(&text, c.ticks, c.numerator, c.denominator, kTicks,
                                                            c.appendRate);
        EXPECT_EQ(text, c.text) << c.ticks << " at " << c.numerator << "/" << c.denominator;
    }
}

TEST(TickTimeStringSeconds, DividesByTheTickRate) {
    EXPECT_DOUBLE_EQ(XMPDocOpsTemporal::ConvertTicksToSeconds(kTicks / 2), 0.5);
    EXPECT_DOUBLE_EQ(XMPDocOpsTemporal::ConvertTicksToSeconds(-3 * kTicks), -3.0);
}

void ExpectBadValueNaming(const std::function<void()>& call, const std::string& rate) {
    try {
        call();
        ADD_FAILURE() << "no error for rate " << rate;
    } catch (const XMP_Error& error) {
        EXPECT_EQ(error.GetID(), kXMPErr_BadValue);
        EXPECT_NE(std::string(error.GetErrMsg()).find(rate), std::string::npos) << error.GetErrMsg();
    }
}

TEST(TickTimeStringRates, RatesThatWouldBeDividedByAreRejected) {
    std::int64_t numerator = 25;
    std::int64_t denominator = 1;
    ExpectBadValueNaming(
        [&] { XMPDocOpsTemporal::ConvertExternalTimeStringToTicks("10f0", &numerator, &denominator, kTicks); }, "0/1");
    EXPECT_EQ(numerator, 25);  // an error leaves the caller's rate alone
    ExpectBadValueNaming([] { XMPDocOpsTemporal::ConvertExternalTimeStringToTicks("10fs", 25, 1, kTicks); }, "0/0");
    ExpectBadValueNaming([] { XMPDocOpsTemporal::ConvertExternalTimeStringToTicks("90", 0, 1, kTicks); }, "0/1");
    ExpectBadValueNaming([] { XMPDocOpsTemporal::ConvertExternalTimeStringToTicks("90f25", 25, 1, 0); },
                         "0 ticks per second");

    std::string text;
    ExpectBadValueNaming([&] { XMPDocOpsTemporal::ConvertTicksToExternalTimeString(&text, 5, 0, 1, kTicks, true); },
                         "0/1");
    ExpectBadValueNaming([&] { XMPDocOpsTemporal::ConvertTicksToExternalTimeString(&text, 5, 25, 0, kTicks, true); },
                         "25/0");
    // Finer than one tick per frame, for a tick count too large to scale exactly.
    ExpectBadValueNaming(
        [&] { XMPDocOpsTemporal::ConvertTicksToExternalTimeString(&text, 1000000000, 1000000000000, 1, kTicks, true); },
        "1000000000000/1");
}

}  // namespace
