// Markers and ingredients against an independent XMP reader and writer
// (exiftool): what the tool writes, exiftool reads with the same names, times
// and cue points, and what exiftool writes through its own tag interface the
// tool reads.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include <kelcore/JSON.hpp>

#include "ToolRunner.hpp"

namespace tooltest {
namespace {

using kelcore::JSONValue;

constexpr std::int64_t kTicksPerFrameAt25 = 254016000000 / 25;

JSONValue ParsedOutput(const ToolResult& result) {
    EXPECT_EQ(result.status, 0) << result.err;
    const kelcore::JSONValuePtr document = kelcore::JSONParse(result.out);
    return document != nullptr ? *document : JSONValue();
}

// exiftool's view of one file's tags, structures kept.
JSONValue ExiftoolTags(const std::string& file) {
    return ParsedOutput(RunProgram("exiftool", {"-j", "-struct", file}))[0];
}

// Numbers in exiftool's JSON come as numbers when they look like one.
std::string Text(const JSONValue& value) {
    return value.is_string() ? value.get<std::string>() : value.dump();
}

class ExiftoolInterop : public testing::Test {
protected:
    void SetUp() override {
        const ToolResult version = RunProgram("exiftool", {"-ver"});
        ASSERT_EQ(version.status, 0) << "exiftool is needed (Debian libimage-exiftool-perl; scripts/install-deps)";
    }

    std::string Path(const std::string& name) const { return (m_dir / name).string(); }

    ScratchDirectory m_dir;
};

TEST_F(ExiftoolInterop, ExiftoolReadsWhatTheToolWrites) {
    WriteFile(m_dir / "clip.xmp", R"(<x:xmpmeta xmlns:x="adobe:ns:meta/"/>)");
    WriteFile(m_dir / "markers.json", R"([
      {"type": "Chapter", "name": "Intro", "start": "0f25", "duration": "50f25", "comment": "Hello"},
      {"type": "Chapter", "name": "Main", "start": "75f25", "duration": "100f25",
       "cuePoints": [{"key": "speaker", "value": "Ann"}]},
      {"type": "Speech", "name": "Änne spricht", "start": "10f25", "id": "interop-1"}])");
    ASSERT_EQ(RunTool({"write-markers", Path("clip.xmp"), "--from", Path("markers.json")}).status, 0);

    const JSONValue tracks = ExiftoolTags(Path("clip.xmp"))["Tracks"];
    ASSERT_EQ(tracks.size(), 2u) << tracks.dump();
    EXPECT_EQ(tracks[0]["TrackName"], "Chapter");
    EXPECT_EQ(tracks[0]["TrackType"], "Chapter");
    EXPECT_EQ(tracks[0]["FrameRate"], "f25");
    const JSONValue& chapters = tracks[0]["Markers"];
    ASSERT_EQ(chapters.size(), 2u);
    EXPECT_EQ(chapters[0]["Name"], "Intro");
    EXPECT_EQ(chapters[0]["Comment"], "Hello");
    EXPECT_EQ(Text(chapters[0]["StartTime"]), "0");
    EXPECT_EQ(Text(chapters[0]["Duration"]), "50");
    EXPECT_EQ(Text(chapters[1]["StartTime"]), "75");
    // The cue points keep their order; the marker's GUID travels as the last one.
    const JSONValue& cuePoints = chapters[1]["CuePointParams"];
    ASSERT_EQ(cuePoints.size(), 2u);
    EXPECT_EQ(cuePoints[0]["Key"], "speaker");
    EXPECT_EQ(cuePoints[0]["Value"], "Ann");
    EXPECT_EQ(cuePoints[1]["Key"], "marker_guid");
    const JSONValue& speech = tracks[1]["Markers"][0];
    EXPECT_EQ(speech["Name"], "Änne spricht");
    EXPECT_EQ(Text(speech["StartTime"]), "10");
    EXPECT_EQ(speech["CuePointParams"][0]["Value"], "interop-1");
}

TEST_F(ExiftoolInterop, TheToolReadsTracksThatExiftoolWrites) {
    const ToolResult written = RunProgram(
        "exiftool", {"-q", "-o", Path("written.xmp"),
                     "-XMP-xmpDM:Tracks=[{TrackName=Chapters,TrackType=Chapter,FrameRate=f30000s1001,Markers=["
                     "{StartTime=1800,Duration=30,Name=Intro,Comment=Hello,CuePointParams=[{Key=speaker,Value=Ann}]},"
                     "{StartTime=10,Name=Early,Type=Note}]}]"});
    ASSERT_EQ(written.status, 0) << written.err;

    const JSONValue markers = ParsedOutput(RunTool({"markers", Path("written.xmp"), "--json"}))["files"][0]["markers"];
    ASSERT_EQ(markers.size(), 2u) << markers.dump();
    // In start order; a marker's own type wins over its track's.
    EXPECT_EQ(markers[0]["name"], "Early");
    EXPECT_EQ(markers[0]["type"], "Note");
    EXPECT_EQ(markers[1]["name"], "Intro");
    EXPECT_EQ(markers[1]["type"], "Chapter");
    EXPECT_EQ(markers[1]["comment"], "Hello");
    EXPECT_EQ(markers[1]["start"]["frames"], 1800);
    EXPECT_EQ(markers[1]["start"]["timecode"], "00:01:00;02");
    EXPECT_EQ(markers[1]["duration"]["ticks"], 30 * 8475667200);
    EXPECT_EQ(markers[1]["cuePoints"], JSONValue::parse(R"([{"key": "speaker", "value": "Ann"}])"));

    const JSONValue tracks = ParsedOutput(RunTool({"tracks", Path("written.xmp"), "--json"}))["files"][0]["tracks"];
    EXPECT_EQ(tracks[0]["name"], "Chapters");
    EXPECT_EQ(tracks[0]["rate"], JSONValue::parse(R"({"numerator": 30000, "denominator": 1001})"));
}

TEST_F(ExiftoolInterop, TheToolReadsIngredientsAndPantryThatExiftoolWrites) {
    const ToolResult written = RunProgram(
        "exiftool",
        {"-q", "-o", Path("composition.xmp"), "-XMP-xmpMM:InstanceID=xmp.iid:doc",
         "-XMP-xmpMM:Ingredients=["
         "{InstanceID=xmp.iid:reversed,FilePath=a.mov,FromPart=time:0d100f25,ToPart=time:50f25d100f25,"
         "PartMapping=linear-reversed,MaskMarkers=None},"
         "{InstanceID=xmp.iid:masked,FilePath=b.mov,FromPart=time:10f25d20f25,ToPart=time:0d20f25,MaskMarkers=All}]",
         "-XMP-xmpMM:Pantry=[{InstanceID=xmp.iid:reversed,"
         "Tracks=[{TrackName=Cues,FrameRate=f25,Markers=[{StartTime=10,Duration=5,Name=Clap}]}]}]"});
    ASSERT_EQ(written.status, 0) << written.err;

    const JSONValue ingredients =
        ParsedOutput(RunTool({"ingredients", Path("composition.xmp"), "--json"}))["files"][0]["ingredients"];
    ASSERT_EQ(ingredients.size(), 2u) << ingredients.dump();
    // Listed in instance-ID order, not in the order exiftool wrote them.
    EXPECT_EQ(ingredients[0]["instanceID"], "xmp.iid:masked");
    EXPECT_EQ(ingredients[0]["fromPart"], "time:10f25d20f25");
    EXPECT_EQ(ingredients[0]["maskMarkers"], "All");
    EXPECT_EQ(ingredients[1], JSONValue::parse(R"({"instanceID": "xmp.iid:reversed", "fromPart": "time:0d100f25",
        "toPart": "time:50f25d100f25", "partMapping": "linear-reversed", "maskMarkers": "None",
        "filePath": "a.mov"})"));

    const JSONValue pantry = ParsedOutput(RunTool({"pantry", Path("composition.xmp"), "--json"}))["files"][0]["pantry"];
    ASSERT_EQ(pantry.size(), 1u) << pantry.dump();
    EXPECT_EQ(pantry[0]["instanceID"], "xmp.iid:reversed");
    EXPECT_EQ(pantry[0]["markers"], 1);

    // The reversed source's marker at 10f..15f lands at 140f on the composition's
    // timeline (50 + 100 - 10), running backwards for 5 frames.
    const JSONValue collected =
        ParsedOutput(RunTool({"collect", Path("composition.xmp"), "--json"}))["files"][0]["collected"];
    ASSERT_EQ(collected.size(), 3u) << collected.dump();
    const JSONValue& clap = collected[2];
    EXPECT_EQ(clap["form"], "report-back");
    EXPECT_EQ(clap["name"], "Clap");
    EXPECT_EQ(clap["containingInstanceID"], "xmp.iid:reversed");
    EXPECT_EQ(clap["start"]["ticks"], 140 * kTicksPerFrameAt25);
    EXPECT_EQ(clap["duration"]["ticks"], -5 * kTicksPerFrameAt25);
}

}  // namespace
}  // namespace tooltest
