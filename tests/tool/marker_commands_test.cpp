// The marker commands end to end: write-markers from JSON, markers back in
// every format, the type filter, tracks, segments and dump, and the exit
// status and message of each kind of failure, with the files left as they were.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <kelcore/JSON.hpp>

#include "ToolRunner.hpp"

namespace tooltest {
namespace {

using testing::HasSubstr;

const char* const kMarkersJson = R"({"markers": [
  {"type": "Chapter", "name": "Intro", "start": "0f25", "duration": "50f25", "comment": "opening, with a comma"},
  {"type": "Chapter", "name": "Main", "start": "1800f25", "duration": "250f25"},
  {"type": "Comment", "name": "Notiz für Änne", "start": "75f25",
   "cuePoints": [{"key": "speaker", "value": "Ann"}]}
]})";

const char* const kEmptyPacket =
    R"(<x:xmpmeta xmlns:x="adobe:ns:meta/"><rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#">)"
    R"(<rdf:Description rdf:about="" xmlns:dc="http://purl.org/dc/elements/1.1/"><dc:format>video/mp4</dc:format>)"
    R"(</rdf:Description></rdf:RDF></x:xmpmeta>)";

// One "Markers" track at `rate`: two segments and a chapter (the library tests pin their order).
std::string SegmentationPacket(const std::string& rate) {
    const auto marker = [](const char* start, const char* duration, const char* type) {
        return std::string(R"(<rdf:li rdf:parseType="Resource"><xmpDM:startTime>)") + start +
               "</xmpDM:startTime><xmpDM:duration>" + duration + "</xmpDM:duration><xmpDM:type>" + type +
               "</xmpDM:type></rdf:li>";
    };
    return R"(<x:xmpmeta xmlns:x="adobe:ns:meta/"><rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#">)"
           R"(<rdf:Description rdf:about="" xmlns:xmpDM="http://ns.adobe.com/xmp/1.0/DynamicMedia/">)"
           R"(<xmpDM:Tracks><rdf:Bag><rdf:li rdf:parseType="Resource"><xmpDM:trackName>Markers</xmpDM:trackName>)"
           "<xmpDM:frameRate>" +
           rate + "</xmpDM:frameRate><xmpDM:markers><rdf:Seq>" + marker("0", "50", "Segmentation") +
           marker("50", "25", "Segmentation") + marker("10", "5", "Chapter") +
           "</rdf:Seq></xmpDM:markers></rdf:li></rdf:Bag></xmpDM:Tracks></rdf:Description></rdf:RDF></x:xmpmeta>";
}

// A 1x1 grey PNG and a JFIF header with nothing after it: media files whose
// XMP goes through a file handler.
const std::string kPng(
    "\x89\x50\x4e\x47\x0d\x0a\x1a\x0a\x00\x00\x00\x0d\x49\x48\x44\x52\x00\x00\x00\x01\x00\x00\x00\x01\x08\x00\x00"
    "\x00\x00\x3a\x7e\x9b\x55\x00\x00\x00\x0a\x49\x44\x41\x54\x78\x9c\x63\x60\x00\x00\x00\x02\x00\x01\x48\xaf\xa4"
    "\x71\x00\x00\x00\x00\x49\x45\x4e\x44\xae\x42\x60\x82",
    67);
const std::string kJpeg("\xff\xd8\xff\xe0\x00\x10JFIF\x00\x01\x01\x00\x00\x01\x00\x01\x00\x00\xff\xd9", 22);

kelcore::JSONValue Json(const ToolResult& result) {
    const kelcore::JSONValuePtr document = kelcore::JSONParse(result.out);
    return document != nullptr ? *document : kelcore::JSONValue();
}

class MarkerCommands : public testing::Test {
protected:
    void SetUp() override {
        WriteFile(m_dir / "markers.json", kMarkersJson);
        WriteFile(m_dir / "clip.xmp", kEmptyPacket);
        const ToolResult written = RunTool({"write-markers", Path("clip.xmp"), "--from", Path("markers.json")});
        ASSERT_EQ(written.status, 0) << written.err;
        EXPECT_EQ(written.out, Path("clip.xmp") + ": 3 markers in 2 tracks at f25\n");
    }

    std::string Path(const std::string& name) const { return (m_dir / name).string(); }

    ScratchDirectory m_dir;
};

TEST_F(MarkerCommands, TableShowsTimesInSecondsFramesAndTimecodeAtTheTrackRate) {
    const ToolResult result = RunTool({"markers", Path("clip.xmp")});
    ASSERT_EQ(result.status, 0) << result.err;
    const std::vector<std::string> lines = Lines(result.out);
    ASSERT_EQ(lines.size(), 5u) << result.out;
    EXPECT_EQ(lines[0], Path("clip.xmp") + ":");
    EXPECT_THAT(lines[2], HasSubstr("Chapter  Intro            0.000             0  00:00:00:00        2.000"));
    EXPECT_THAT(lines[3], HasSubstr("Main            72.000          1800  00:01:12:00       10.000"));
    // Columns line up by characters, also after a name with multi-byte ones.
    EXPECT_THAT(lines[4], HasSubstr("Comment  Notiz für Änne   3.000            75  00:00:03:00"));
    // Cue point count, then the comment.
    EXPECT_THAT(lines[2], testing::EndsWith("f25            0  opening, with a comma"));
}

TEST_F(MarkerCommands, JsonRoundTripsThroughWriteMarkers) {
    const ToolResult first = RunTool({"markers", Path("clip.xmp"), "--json"});
    ASSERT_EQ(first.status, 0) << first.err;
    WriteFile(m_dir / "edited.json", first.out);
    WriteFile(m_dir / "copy.xmp", kEmptyPacket);
    const ToolResult written = RunTool({"write-markers", Path("copy.xmp"), "--from", Path("edited.json")});
    ASSERT_EQ(written.status, 0) << written.err;
    const ToolResult second = RunTool({"markers", Path("copy.xmp"), "--json"});

    kelcore::JSONValue before = Json(first)["files"][0];
    kelcore::JSONValue after = Json(second)["files"][0];
    ASSERT_EQ(before["markers"].size(), 3u) << first.out;
    EXPECT_EQ(before["markers"], after["markers"]);
    const kelcore::JSONValue& note = after["markers"][2];
    EXPECT_EQ(note["name"], "Notiz für Änne");
    EXPECT_EQ(note["start"]["ticks"], 762048000000);
    EXPECT_EQ(note["rate"]["numerator"], 25);
    EXPECT_EQ(note["cuePoints"][0]["value"], "Ann");
    EXPECT_EQ(note["id"].get<std::string>().size(), 36u);
}

TEST_F(MarkerCommands, OnlyAndExcludeChooseMarkersByType) {
    struct FilterCase {
        std::vector<std::string> options;
        std::vector<std::string> rows;  // CSV rows after the heading, from the type on
    };
    const std::vector<FilterCase> cases = {
        {{}, {"Chapter,Intro", "Chapter,Main", "Comment,Notiz"}},
        {{"--only", "Comment"}, {"Comment,Notiz"}},
        {{"--only", "Comment", "--only", "Chapter"}, {"Chapter,Intro", "Chapter,Main", "Comment,Notiz"}},
        {{"--exclude", "Chapter"}, {"Comment,Notiz"}},
        {{"--exclude", "Chapter", "--exclude", "Comment"}, {}},
        {{"--only", "chapter"}, {}},  // exact, case and all
    };
    for (const FilterCase& c : cases) {
        std::vector<std::string> arguments = {"markers", "--csv"};
        arguments.insert(arguments.end(), c.options.begin(), c.options.end());
        arguments.push_back(Path("clip.xmp"));
        const ToolResult result = RunTool(arguments);
        ASSERT_EQ(result.status, 0) << result.err;
        const std::vector<std::string> lines = Lines(result.out);
        ASSERT_EQ(lines.size(), c.rows.size() + 1) << result.out;
        for (std::size_t i = 0; i < c.rows.size(); ++i) {
            EXPECT_THAT(lines[i + 1], testing::StartsWith(Path("clip.xmp") + "," + c.rows[i])) << result.out;
        }
    }
}

TEST_F(MarkerCommands, TracksListsOneTrackPerMarkerType) {
    const ToolResult table = RunTool({"tracks", Path("clip.xmp")});
    ASSERT_EQ(table.status, 0) << table.err;
    EXPECT_EQ(Lines(table.out),
              (std::vector<std::string>{Path("clip.xmp") + ":", "name     type     rate  markers",
                                        "Chapter  Chapter  f25         2", "Comment  Comment  f25         1"}));
    const kelcore::JSONValue tracks = Json(RunTool({"tracks", Path("clip.xmp"), "--json"}))["files"][0]["tracks"];
    ASSERT_EQ(tracks.size(), 2u);
    EXPECT_EQ(tracks[1]["rate"]["numerator"], 25);
    EXPECT_EQ(tracks[1]["markers"], 1);
}

TEST_F(MarkerCommands, SegmentsShowTimesFramesAndTheFrameDuration) {
    WriteFile(m_dir / "segments.xmp", SegmentationPacket("f25"));
    const ToolResult table = RunTool({"segments", Path("segments.xmp"), Path("clip.xmp")});
    ASSERT_EQ(table.status, 0) << table.err;
    EXPECT_EQ(Lines(table.out), (std::vector<std::string>{
                                    Path("segments.xmp") + ":",
                                    "start  start_frame  duration  frames   start_ticks  duration_ticks  frame_ticks",
                                    "0.000            0     2.000      50             0    508032000000  10160640000",
                                    "2.000           50     1.000      25  508032000000    254016000000  10160640000",
                                    "", Path("clip.xmp") + ":",
                                    "start  start_frame  duration  frames  start_ticks  duration_ticks  frame_ticks"}));
    const kelcore::JSONValue files =
        Json(RunTool({"segments", Path("segments.xmp"), Path("clip.xmp"), "--json"}))["files"];
    EXPECT_EQ(files[0]["frameDuration"]["ticks"], 10160640000);
    EXPECT_EQ(files[0]["segments"][1]["startFrame"], 50);
    EXPECT_EQ(files[1]["frameDuration"]["unspecified"], true);
    EXPECT_TRUE(files[1]["segments"].empty());
}

TEST_F(MarkerCommands, DumpShowsTheDocumentWithItsTracksRead) {
    const ToolResult result = RunTool({"dump", Path("clip.xmp")});
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.out, testing::StartsWith("[DEBUG keltemporalxmp::XMPDocOpsTemporal::debug_Dump()] Entering\n"));
    EXPECT_THAT(result.out, HasSubstr("  m_cachedTrackData=          'true'\n"));
    EXPECT_THAT(result.out, HasSubstr("'Notiz für Änne'\n"));  // the layout is pinned by the library's tests
    const ToolResult two = RunTool({"dump", Path("clip.xmp"), Path("clip.xmp")});
    EXPECT_THAT(two.out, testing::StartsWith(Path("clip.xmp") + ":\n[DEBUG"));
}

TEST_F(MarkerCommands, MediaFileIsUpdatedThroughItsHandlerOrCopied) {
    for (const auto& [name, bytes] : {std::pair{"still.png", kPng}, std::pair{"still.jpg", kJpeg}}) {
        const std::string copy = "marked-" + std::string(name);
        WriteFile(m_dir / name, bytes);
        const ToolResult copied =
            RunTool({"write-markers", Path(name), "--from", Path("markers.json"), "--output", Path(copy)});
        ASSERT_EQ(copied.status, 0) << copied.err;
        EXPECT_EQ(ReadFile(m_dir / name), bytes);
        ASSERT_EQ(RunTool({"write-markers", Path(name), "--from", Path("markers.json")}).status, 0);
        for (const std::string& file : {std::string(name), copy}) {
            const ToolResult result = RunTool({"markers", Path(file), "--csv"});
            EXPECT_EQ(result.status, 0) << result.err;
            EXPECT_EQ(Lines(result.out).size(), 4u) << file << ": " << result.out;
        }
    }
}

TEST_F(MarkerCommands, FailuresExitWithOneLineAndLeaveTheFileAsItWas) {
    WriteFile(m_dir / "not.json", "{markers");
    WriteFile(m_dir / "shape.json", R"({"markers": 5})");
    WriteFile(m_dir / "time.json", R"([{"start": "abc"}])");
    WriteFile(m_dir / "broken.xmp", "<x:xmpmeta");
    WriteFile(m_dir / "corrupt.jpg", "\xff\xd8\xff\xe0junk");
    WriteFile(m_dir / "zero.xmp", SegmentationPacket("f0"));
    // Read through packet scanning, which can only rewrite the packet in its own space.
    WriteFile(m_dir / "tight.txt", std::string("text ") + kEmptyPacket + " text");
    const std::vector<ToolFailure> cases = {
        {{"write-markers", "DIR/clip.xmp", "--from", "DIR/missing.json"}, 1, "missing.json: cannot open it"},
        {{"write-markers", "DIR/clip.xmp", "--from", "DIR/not.json"}, 1, "not.json: not JSON"},
        {{"write-markers", "DIR/clip.xmp", "--from", "DIR/shape.json"}, 1, "shape.json: expected {\"files\""},
        {{"write-markers", "DIR/clip.xmp", "--from", "DIR/time.json"}, 1, "marker 1 \"start\": cannot read 'abc'"},
        {{"write-markers", "DIR/clip.xmp", "--from", "DIR/markers.json", "--frame-rate", "30000/1001"},
         1,
         "markers.json: marker 1 is not on a whole frame at f30000s1001"},
        {{"write-markers", "DIR/broken.xmp", "--from", "DIR/markers.json"}, 1, "broken.xmp: TXMPFiles::"},
        {{"write-markers", "DIR/corrupt.jpg", "--from", "DIR/markers.json"}, 1, "corrupt.jpg: TXMPFiles::"},
        {{"write-markers", "DIR/tight.txt", "--from", "DIR/markers.json"}, 1, "tight.txt: TXMPFiles::PutXMP failed"},
        {{"write-markers", "DIR/tight.txt", "--from", "DIR/markers.json", "--output", "DIR/out.txt"},
         1,
         "PutXMP failed"},
        {{"write-markers", "DIR/clip.xmp", "--from", "DIR/markers.json", "--output", "DIR/out.png"},
         2,
         "can only be written to a sidecar"},
        {{"write-markers", "DIR/clip.xmp"}, 2, "--from is required"},
        {{"write-markers", "DIR/clip.xmp", "--from", "DIR/markers.json", "--frame-rate", "0"},
         2,
         "--frame-rate: not a frame rate"},
        {{"markers", "DIR/missing.jpg"}, 1, "missing.jpg: TXMPFiles::OpenFile failed"},
        {{"markers", "DIR/clip.xmp", "--only", "A", "--exclude", "B"}, 2, "--only excludes --exclude"},
        {{"segments", "DIR/zero.xmp"}, 1, "zero.xmp: Reading the track list failed"},
        {{"tracks"}, 2, "FILE is required"},
        {{"dump", "DIR/broken.xmp"}, 1, "broken.xmp: "},
    };
    const std::vector<std::string> kept = {"clip.xmp", "broken.xmp", "corrupt.jpg", "tight.txt"};
    std::vector<std::string> before;
    for (const std::string& file : kept) {
        before.push_back(ReadFile(m_dir / file));
    }
    for (const ToolFailure& failure : cases) {
        ExpectToolFailure(failure, m_dir / "");
    }
    for (std::size_t i = 0; i < kept.size(); ++i) {
        EXPECT_EQ(ReadFile(m_dir / kept[i]), before[i]) << kept[i];
    }
    EXPECT_FALSE(std::filesystem::exists(m_dir / "out.txt"));
    EXPECT_FALSE(std::filesystem::exists(m_dir / "out.png"));
    EXPECT_THAT(EntryNames(m_dir / ""), testing::SizeIs(9)) << "no temporary file left";
}

TEST_F(MarkerCommands, EachGoodFileIsReportedWhenAnotherFails) {
    const ToolResult result = RunTool({"markers", Path("missing.xmp"), Path("clip.xmp"), "--csv"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(Lines(result.out).size(), 4u) << result.out;
    EXPECT_THAT(result.err, HasSubstr("keltemporalxmp: " + Path("missing.xmp") + ": "));
}

TEST(ToolHelp, EveryCommandHasHelp) {
    for (const char* command : {"--help", "markers", "tracks", "ingredients", "pantry", "collect", "segments",
                                "write-markers", "add-ingredient", "dump", "time"}) {
        const ToolResult result = RunTool({command, "--help"});
        EXPECT_EQ(result.status, 0) << command;
        EXPECT_THAT(result.out, HasSubstr("Usage: keltemporalxmp")) << command;
        EXPECT_THAT(result.out, HasSubstr(command)) << command;
    }
}

}  // namespace
}  // namespace tooltest
