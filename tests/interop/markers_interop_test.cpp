// Markers against an independent XMP reader and writer (exiftool): what the
// tool writes, exiftool reads with the same names, times and cue points, and
// tracks that exiftool writes through its own tag interface the tool reads.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <kelcore/JSON.hpp>

#include "ToolRunner.hpp"

namespace tooltest {
namespace {

using kelcore::JSONValue;

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

class MarkersInterop : public testing::Test {
protected:
    void SetUp() override {
        const ToolResult version = RunProgram("exiftool", {"-ver"});
        ASSERT_EQ(version.status, 0) << "exiftool is needed (Debian libimage-exiftool-perl; scripts/install-deps)";
    }

    std::string Path(const std::string& name) const { return (m_dir / name).string(); }

    ScratchDirectory m_dir;
};

TEST_F(MarkersInterop, ExiftoolReadsWhatTheToolWrites) {
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

TEST_F(MarkersInterop, TheToolReadsTracksThatExiftoolWrites) {
    const ToolResult written = RunProgram(
        "exiftool",
        {"-q", "-o", Path("written.xmp"),
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

}  // namespace
}  // namespace tooltest
