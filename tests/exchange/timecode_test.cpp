// Timecode labels both ways, drop-frame across the minute and ten-minute
// boundaries where labels are skipped.

#include <gtest/gtest.h>

#include <keltemporalxmp/exchange.hpp>

namespace keltemporalxmp::exchange {
namespace {

struct TimecodeCase {
    Rate rate;
    std::int64_t frames;
    const char* timecode;
};

const TimecodeCase kTimecodes[] = {
    {{25, 1}, 0, "00:00:00:00"},
    {{25, 1}, 24, "00:00:00:24"},
    {{25, 1}, 90000, "01:00:00:00"},
    {{24000, 1001}, 24, "00:00:01:00"},
    {{30000, 1001}, 1799, "00:00:59;29"},
    {{30000, 1001}, 1800, "00:01:00;02"},
    {{30000, 1001}, 17981, "00:09:59;29"},
    {{30000, 1001}, 17982, "00:10:00;00"},
    {{30000, 1001}, 17983, "00:10:00;01"},
    {{30000, 1001}, 19782, "00:11:00;02"},
    {{30000, 1001}, 107892, "01:00:00;00"},
    {{60000, 1001}, 3599, "00:00:59;59"},
    {{60000, 1001}, 3600, "00:01:00;04"},
    {{60000, 1001}, 35963, "00:09:59;59"},
    {{60000, 1001}, 35964, "00:10:00;00"},
    {{60000, 1001}, 215784, "01:00:00;00"},
};

class TimecodeLabel : public ::testing::TestWithParam<TimecodeCase> {};

TEST_P(TimecodeLabel, ReadsBackTheFrame) {
    const TimecodeCase& label = GetParam();
    EXPECT_EQ(FramesToTimecode(label.frames, label.rate), label.timecode);
    EXPECT_EQ(TimecodeToFrames(label.timecode, label.rate), label.frames);
}

INSTANTIATE_TEST_SUITE_P(Rates, TimecodeLabel, ::testing::ValuesIn(kTimecodes));

TEST(TimecodeText, EveryDropFrameLabelOfTheFirstHourReadsBack) {
    for (const Rate rate : {Rate{30000, 1001}, Rate{60000, 1001}}) {
        const std::int64_t hour = rate.numerator == 30000 ? 107892 : 215784;
        for (std::int64_t frame = 0; frame <= hour; ++frame) {
            ASSERT_EQ(TimecodeToFrames(FramesToTimecode(frame, rate), rate), frame) << frame;
        }
    }
}

TEST(TimecodeText, RefusesWhatIsNoLabel) {
    const struct {
        const char* text;
        Rate rate;
    } kRefused[] = {
        {"00:01:00;00", {30000, 1001}},  // skipped by drop-frame
        {"00:01:00;03", {60000, 1001}}, {"00:00:00:25", {25, 1}}, {"00:60:00:00", {25, 1}},
        {"00:00:60:00", {25, 1}},       {"00:00:00", {25, 1}},    {"00:00:00:00 ", {25, 1}},
        {"-0:00:00:00", {25, 1}},       {"00:00:00:00", {0, 0}},  {"999999999:00:00:00", {25, 1}},
    };
    for (const auto& refused : kRefused) {
        EXPECT_FALSE(TimecodeToFrames(refused.text, refused.rate)) << refused.text;
    }
}

}  // namespace
}  // namespace keltemporalxmp::exchange
