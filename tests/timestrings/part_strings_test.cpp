#include <cstdint>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include <keltemporalxmp/docops.hpp>
#include <xmptoolkit/XMP_Error.hpp>

namespace {

using keltemporalxmp::XMPDocOpsTemporal;

constexpr std::int64_t kTicks = 254016000000;
constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();

struct ComposeCase {
    std::int64_t start, startNumerator, startDenominator;
    std::int64_t duration, durationNumerator, durationDenominator;
    const char* path;
    const char* text;
};

const ComposeCase kComposeCases[] = {
    {0, 25, 1, kTicks, 25, 1, "", "time:0d25f25"},
    {kTicks, 30000, 1001, kMax, 30000, 1001, nullptr, "time:30f30000s1001"},
    {10160640000, 1, 1, kMax, 1, 1, "", "time:10160640000f254016000000"},  // between whole seconds
    {0, 25, 1, kTicks, 25, 1, "metadata", "metadata/time:0d25f25"},
    {2 * kTicks, 0, 0, 3 * kTicks, 0, 5, "", "time:2d3"},  // zero rates mean whole seconds
    // Whether a duration between frames switches to ticks depends on the start's denominator.
    {0, 25, 1, 1000, 30000, 1001, "", "time:0d1000f254016000000"},
    {kTicks, 30000, 1001, 1, 25, 1, "", "time:30f30000s1001d0f25"},
    {-kTicks, 1, 1, kMax - 1, 1, 1, "", "time:-1d9223372036854775806f254016000000"},
};

TEST(PartStringCompose, WorkedExamples) {
    for (const ComposeCase& c : kComposeCases) {
        std::string text = "previous";
        XMPDocOpsTemporal::CreatePartString(&text, c.start, c.startNumerator, c.startDenominator, c.duration,
                                            c.durationNumerator, c.durationDenominator, kMax, c.path);
        EXPECT_EQ(text, c.text);
    }
}

struct ParseCase {
    const char* text;
    std::int64_t start, startNumerator, duration, durationNumerator;
    const char* path;
};

const ParseCase kParseCases[] = {
    {"/metadata/time:0d25f25", 0, 1, kTicks, 25, "/metadata"},
    {"time:0d25f25", 0, 1, kTicks, 25, ""},
    {"time:5f25", 50803200000, 25, 77, 1, ""},                          // no duration: the default
    {"time:10f25r5f25", 1016064000000 / 10, 25, -50803200000, 25, ""},  // end before start
    {"time:10f25rmaximum", 1016064000000 / 10, 25, kMax, 1, ""},
    {"a/b/time:1dmaximum", kTicks, 1, kMax, 1, "a/b"},
    {"metadata/other", 0, 1, kMax, 1, "metadata/other"},
    {"metadata/time", 0, 1, kMax, 1, "metadata/time"},
    {"time:1d2d3", 0, 1, kMax, 1, ""},
    {"time:1r2r3", 0, 1, kMax, 1, ""},
    {"time:1d2r3", kTicks, 1, 2 * kTicks, 1, ""},  // one "d": an "r" in a time is not a separator
    {"time:1r2d3", kTicks, 1, 3 * kTicks, 1, ""},
    {"a:b/time:3f25", 30481920000, 25, 77, 1, "a:b"},
    {"time:time:5", 5 * kTicks, 1, 77, 1, ""},
    {"x/time:5f25s1s", 50803200000, 25, 77, 1, "x"},  // two "s": no denominator
    {"time:f25d-3f-25", 0, 25, 30481920000, -25, ""},
    {"time:", 0, 1, kMax, 1, ""},
    {"times:1", 0, 1, kMax, 1, "times:1"},
    {"", 0, 1, kMax, 1, ""},
};

TEST(PartStringParse, PathsStartsAndDurations) {
    for (const ParseCase& c : kParseCases) {
        std::int64_t start = -1, startNumerator = 1, startDenominator = 1;
        std::int64_t duration = -1, durationNumerator = 1, durationDenominator = 1;
        std::string path = "previous";
        XMPDocOpsTemporal::ParsePart(c.text, &start, &startNumerator, &startDenominator, &duration, &durationNumerator,
                                     &durationDenominator, 77, &path);
        EXPECT_EQ(start, c.start) << c.text;
        EXPECT_EQ(startNumerator, c.startNumerator) << c.text;
        EXPECT_EQ(duration, c.duration) << c.text;
        EXPECT_EQ(durationNumerator, c.durationNumerator) << c.text;
        EXPECT_EQ(path, c.path) << c.text;
    }
}

TEST(PartStringParse, ZeroDefaultRateIsRejectedForTimesWithoutRate) {
    std::int64_t start = 0, numerator = 0, denominator = 0, duration = 0;
    std::string path;
    EXPECT_THROW(XMPDocOpsTemporal::ParsePart("time:5", &start, &numerator, &denominator, &duration, &numerator,
                                              &denominator, kMax, &path),
                 XMP_Error);
}

}  // namespace
