// The time command end to end: notations in, every notation out, and the
// exit status and message of each kind of bad input.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <kelcore/JSON.hpp>

#include "ToolRunner.hpp"

namespace tooltest {
namespace {

using testing::HasSubstr;

struct TimeCase {
    std::vector<std::string> arguments;
    std::string ticks;
    std::string timecode;
    std::string xmp;
};

TEST(TimeCommand, ShowsTicksTimecodeAndXmpNotation) {
    const std::vector<TimeCase> cases = {
        {{"time", "90f25"}, "914457600000", "00:00:03:15", "90f25"},
        {{"time", "90", "--rate", "25"}, "914457600000", "00:00:03:15", "90f25"},
        {{"time", "3.6s", "--rate", "f25"}, "914457600000", "00:00:03:15", "90f25"},
        // Drop frame: the first two labels of a minute are skipped, but not every tenth minute.
        {{"time", "1800f30000s1001"}, "15256200960000", "00:01:00;02", "1800f30000s1001"},
        {{"time", "17982f30000s1001"}, "152409447590400", "00:10:00;00", "17982f30000s1001"},
        {{"time", "3600f60000s1001"}, "15256200960000", "00:01:00;04", "3600f60000s1001"},
        {{"time", "00:01:00;02", "--rate", "30000/1001"}, "15256200960000", "00:01:00;02", "1800f30000s1001"},
        {{"time", "00:10:00;00", "--rate", "f30000s1001"}, "152409447590400", "00:10:00;00", "17982f30000s1001"},
        // 23.976 counts whole labels of 24 frames, without dropping any.
        {{"time", "24f24000s1001"}, "254270016000", "00:00:01:00", "24f24000s1001"},
        {{"time", "-25f25"}, "-254016000000", "-00:00:01:00", "-25f25"},
        {{"time", "maximum", "--rate", "25"}, "9223372036854775807", "-", "maximum"},
    };
    for (const TimeCase& c : cases) {
        const ToolResult result = RunTool(c.arguments);
        ASSERT_EQ(result.status, 0) << c.arguments[1] << ": " << result.err;
        const std::vector<std::string> lines = Lines(result.out);
        ASSERT_EQ(lines.size(), 2u) << result.out;
        EXPECT_THAT(lines[1], HasSubstr(" " + c.xmp)) << c.arguments[1];
        // Numbers end under the end of their heading; text starts under its start.
        const std::size_t ticks = lines[1].find(" " + c.ticks + " ");
        const std::size_t timecode = lines[1].rfind(" " + c.timecode + " ");
        ASSERT_NE(ticks, std::string::npos) << result.out;
        ASSERT_NE(timecode, std::string::npos) << result.out;
        EXPECT_EQ(lines[0].find("ticks") + 5, ticks + 1 + c.ticks.size()) << result.out;
        EXPECT_EQ(lines[0].find("timecode"), timecode + 1) << result.out;
    }
}

TEST(TimeCommand, JsonCarriesExactTicksRateAndPartPath) {
    const ToolResult result = RunTool({"time", "metadata/time:0d25f25", "--json"});
    ASSERT_EQ(result.status, 0) << result.err;
    const kelcore::JSONValuePtr document = kelcore::JSONParse(result.out);
    ASSERT_NE(document, nullptr) << result.out;
    EXPECT_EQ((*document)["command"], "time");
    EXPECT_EQ((*document)["path"], "metadata");
    const kelcore::JSONValue& duration = (*document)["times"][1];
    EXPECT_EQ(duration["time"], "duration");
    EXPECT_EQ(duration["ticks"], 254016000000);
    EXPECT_EQ(duration["seconds"], 1.0);
    EXPECT_EQ(duration["frames"], 25);
    EXPECT_EQ(duration["rate"]["numerator"], 25);
    EXPECT_EQ(duration["xmp"], "25f25");
}

TEST(TimeCommand, CsvHasOneHeadingAndOneRowPerTime) {
    const ToolResult result = RunTool({"time", "time:10r35", "--csv", "--rate", "f1"});
    ASSERT_EQ(result.status, 0) << result.err;
    const std::vector<std::string> lines = Lines(result.out);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0], "time,ticks,seconds,rate,frames,timecode,xmp");
    EXPECT_EQ(lines[2], "duration,6350400000000,25.000,f1,25,00:00:25:00,25f1");
}

struct FailureCase {
    std::vector<std::string> arguments;
    int status;
    std::string message;
};

TEST(TimeCommand, BadInputAndBadUsageExitWithOneLineSayingWhy) {
    const std::vector<FailureCase> cases = {
        {{"time", "abc"}, 1, "keltemporalxmp: time: cannot read 'abc' as a time"},
        {{"time", "00:00:01:00"}, 1, "a timecode needs --rate"},
        {{"time", "00:00:01;00", "--rate", "25"}, 1, "drop-frame timecode (;) needs the rate"},
        {{"time", "00:00:01:30", "--rate", "25"}, 1, "out of range"},
        {{"time", "90f0"}, 1, "zero numerator"},
        // The library would wrap or read 0; the tool refuses.
        {{"time", "99999999999f1"}, 1, "too far from zero"},
        {{"time", "36310202s"}, 1, "too far from zero"},
        {{"time", "99999999999999999999"}, 1, "a number too large"},
        {{"time", "5", "--rate", "0"}, 2, "--rate: not a frame rate"},
        {{"time", "5", "--json", "--csv"}, 2, "--csv"},
        {{"time"}, 2, "TEXT is required"},
        {{}, 2, "A subcommand is required"},
        {{"frobnicate"}, 2, "unknown command 'frobnicate'; the commands are markers, "},
    };
    for (const FailureCase& c : cases) {
        const ToolResult result = RunTool(c.arguments);
        const std::string label = c.arguments.empty() ? "(none)" : c.arguments.back();
        EXPECT_EQ(result.status, c.status) << label << ": " << result.err;
        EXPECT_THAT(result.err, HasSubstr(c.message)) << label;
        EXPECT_EQ(result.out, "") << label;
        if (c.status == 1) {
            EXPECT_EQ(Lines(result.err).size(), 1u) << result.err;
        }
    }
}

}  // namespace
}  // namespace tooltest
