// export and import end to end: each format out of a file and back into a
// copy, the composition's chapters in one command, both readers, concurrent
// imports, and every failure with the files left as they were.

#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <kelcore/JSON.hpp>

#include "ToolRunner.hpp"

namespace tooltest {
namespace {

using testing::HasSubstr;

class ExchangeCommands : public ::testing::Test {
protected:
    void SetUp() override {
        WriteFile(m_dir / "interview.xmp", ReadFile(std::string(KELTXMP_SOURCE_DIR) + "/examples/interview.xmp"));
    }
    std::string Path(const std::string& name) const { return (m_dir / name).string(); }

    // name, start ticks and type of each marker of a file, as `markers --json` lists them.
    std::vector<std::string> Markers(const std::string& name) const {
        const ToolResult result = RunTool({"markers", Path(name), "--json"});
        EXPECT_EQ(result.status, 0) << result.err;
        const kelcore::JSONValuePtr document = kelcore::JSONParse(result.out);
        std::vector<std::string> markers;
        for (const auto& marker : (*document)["files"][0]["markers"]) {
            markers.push_back(marker["type"].get<std::string>() + " " + marker["name"].get<std::string>() + " " +
                              std::to_string(marker["start"]["ticks"].get<std::int64_t>()));
        }
        std::sort(markers.begin(), markers.end());
        return markers;
    }

    ScratchDirectory m_dir;
};

TEST_F(ExchangeCommands, FrameBasedAndWholeFormatsRoundTripEveryMarker) {
    const std::vector<std::string> original = Markers("interview.xmp");
    ASSERT_EQ(original.size(), 4u);
    for (const std::string extension : {"edl", "csv", "tsv", "otio", "json"}) {
        SCOPED_TRACE(extension);
        const std::string exported = "markers." + extension;
        const ToolResult out = RunTool({"export", Path("interview.xmp"), "--output", Path(exported)});
        ASSERT_EQ(out.status, 0) << out.err;
        EXPECT_EQ(out.out, "");
        // Types ride along except in an edl, which has none.
        const std::vector<std::string> typeArgument = extension == std::string("edl")
                                                          ? std::vector<std::string>{"--type", "Chapter"}
                                                          : std::vector<std::string>{};
        std::vector<std::string> import = {"import",   Path("interview.xmp"), "--from", Path(exported),
                                           "--output", Path("back.xmp")};
        import.insert(import.end(), typeArgument.begin(), typeArgument.end());
        const ToolResult in = RunTool(import);
        ASSERT_EQ(in.status, 0) << in.err;
        EXPECT_THAT(in.out, HasSubstr("4 markers"));
        if (extension != std::string("edl")) {
            EXPECT_EQ(Markers("back.xmp"), original);
        } else {
            EXPECT_EQ(Markers("back.xmp").size(), 4u);
        }
    }
}

TEST_F(ExchangeCommands, ImportFromStandardInputMergesWithTheMarkersThere) {
    WriteFile(m_dir / "chapters.txt", "0:00 Start\n1:30 Later part\n");
    const ToolResult result =
        RunProgram("sh", {"-c", "\"$0\" import \"$1\" --from - --format youtube --merge < \"$2\"",
                          std::string(KELTXMP_BINARY_DIR) + "/tools/keltemporalxmp/keltemporalxmp",
                          Path("interview.xmp"), Path("chapters.txt")});
    ASSERT_EQ(result.status, 0) << result.err;
    // Whole seconds are not whole frames at 29.97: the tracks go to ticks.
    EXPECT_EQ(result.out, Path("interview.xmp") + ": 6 markers in 2 tracks at f254016000000\n");
    EXPECT_THAT(Markers("interview.xmp"), testing::Contains("Chapter Later part " + std::to_string(90 * 254016000000)));
}

TEST_F(ExchangeCommands, ACompositionsChaptersInOneCommand) {
    const std::string sequence = std::string(KELTXMP_SOURCE_DIR) + "/examples/composition/sequence.xmp";
    const ToolResult result = RunTool(
        {"export", sequence, "--collect", "--mask", "08", "--only", "Chapter", "--format", "youtube", "--force"});
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "0:00 Opening\n0:04 Rewind\n0:08 Scene\n");
    const ToolResult webvtt = RunTool({"export", sequence, "--collect", "--start", "8s", "--format", "webvtt"});
    EXPECT_THAT(webvtt.out, HasSubstr("00:00:08.400 --> 00:00:10.000\nAnn\n"));
}

TEST_F(ExchangeCommands, AnOutputLinkIsWrittenThrough) {
    WriteFile(m_dir / "real.srt", "old");
    std::filesystem::create_symlink(m_dir / "real.srt", m_dir / "link.srt");
    ASSERT_EQ(RunTool({"export", Path("interview.xmp"), "--output", Path("link.srt")}).status, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(m_dir / "link.srt"));
    EXPECT_THAT(ReadFile(m_dir / "real.srt"), testing::StartsWith("1\n00:00:00,000 --> 00:01:00,060\nWelcome\n"));
}

TEST_F(ExchangeCommands, BothReadersExportTheSameMarkers) {
    for (const std::string format : {"json", "csv", "edl"}) {
        const ToolResult fast = RunTool({"export", Path("interview.xmp"), "--format", format, "--reader", "fast"});
        const ToolResult toolkit =
            RunTool({"export", Path("interview.xmp"), "--format", format, "--reader", "toolkit"});
        ASSERT_EQ(fast.status, 0) << fast.err;
        EXPECT_EQ(fast.out, toolkit.out) << format;
    }
}

TEST_F(ExchangeCommands, ConcurrentMergingImportsKeepEveryMarker) {
    constexpr int kWriters = 4;
    std::vector<int> writers;
    for (int i = 0; i < kWriters; ++i) {
        const std::string source = "chapter" + std::to_string(i) + ".srt";
        WriteFile(m_dir / source,
                  "1\n00:00:0" + std::to_string(i) + ",000 --> 00:00:09,000\nPart " + std::to_string(i) + "\n");
        writers.push_back(
            StartTool({"import", Path("interview.xmp"), "--from", Path(source), "--type", "Chapter", "--merge"},
                      m_dir / (std::to_string(i) + ".err")));
    }
    for (int i = 0; i < kWriters; ++i) {
        EXPECT_EQ(WaitForProgram(writers[i]), 0) << ReadFile(m_dir / (std::to_string(i) + ".err"));
    }
    const std::vector<std::string> markers = Markers("interview.xmp");
    EXPECT_EQ(markers.size(), 4u + kWriters) << "an update was lost";
    for (int i = 0; i < kWriters; ++i) {
        EXPECT_THAT(markers, testing::Contains(testing::StartsWith("Chapter Part " + std::to_string(i) + " ")));
    }
}

TEST_F(ExchangeCommands, FailuresExitWithOneLineAndWriteNothing) {
    WriteFile(m_dir / "bad.vtt", "WEBVTT\n\n00:00:01.000 --> 00:00:0x.000\nx\n");
    WriteFile(m_dir / "off.vtt", "WEBVTT\n\n00:00:01.001 --> 00:00:02.000\nx\n");
    WriteFile(m_dir / "empty.srt", "");
    std::filesystem::create_directory(m_dir / "folder.srt");
    ASSERT_EQ(::mkfifo(Path("pipe.srt").c_str(), 0600), 0);
    const std::string sequence = std::string(KELTXMP_SOURCE_DIR) + "/examples/composition/sequence.xmp";
    const std::vector<ToolFailure> cases = {
        {{"import", "DIR/interview.xmp", "--from", "DIR/bad.vtt"}, 1, "bad.vtt: webvtt line 3 column 18: expected"},
        {{"import", "DIR/interview.xmp", "--from", "DIR/off.vtt", "--frame-rate", "25"},
         1,
         "off.vtt: marker 1 is not on a whole frame at f25"},
        {{"import", "DIR/interview.xmp", "--from", "DIR/missing.srt"}, 1, "missing.srt: cannot open it"},
        {{"import", "DIR/interview.xmp", "--from", "DIR/empty.srt"}, 1, "empty.srt: no srt markers in it"},
        {{"import", "DIR/interview.xmp", "--from", "DIR/folder.srt"}, 1, "folder.srt: is a directory"},
        {{"import", "DIR/interview.xmp", "--from", "DIR/pipe.srt"}, 1, "pipe.srt: is a FIFO (named pipe)"},
        {{"import", "DIR/interview.xmp", "--from", "DIR/bad.vtt", "--output", ""}, 2, "needs a file name"},
        {{"import", "DIR/interview.xmp", "--from", "DIR/bad.txt"}, 2, "--format is required"},
        {{"import", "DIR/interview.xmp", "--from", "DIR/bad.vtt", "--format", "mp4"}, 2, "not a format: mp4"},
        {{"export", "DIR/interview.xmp"}, 2, "--format is required"},
        {{"export", "DIR/interview.xmp", "--format", "json", "--output", "DIR/interview.xmp"}, 2, "replace FILE"},
        {{"export", "DIR/interview.xmp", "--format", "youtube", "--output", "DIR/out.txt"},
         1,
         "youtube: marker 1 \"Welcome\": breaks the rule that each chapter is at least 10 s long"},
        {{"export", "DIR/interview.xmp", "--format", "edl", "--timecode-start", "1:00"}, 2, "timecode start"},
        {{"export", "DIR/interview.xmp", "--format", "srt", "--start", "1s"}, 2, "--start requires --collect"},
        {{"export", "DIR/missing.xmp", "--format", "srt"}, 1, "missing.xmp: "},
        {{"export", "DIR/interview.xmp", "--format", "srt", "--output", ""}, 2, "needs a file name"},
        {{"export", "DIR/interview.xmp", "--format", "srt", "--reader", "quick"}, 2, "--reader"},
        {{"export", sequence, "--collect", "--format", "srt", "--max-records", "3"}, 1, "more than 3 records"},
        {{"export", sequence, "--collect", "--format", "srt", "--max-records", "0"}, 2, "--max-records: not a whole"},
    };
    const std::string before = ReadFile(m_dir / "interview.xmp");
    for (const ToolFailure& failure : cases) {
        ExpectToolFailure(failure, m_dir / "");
    }
    EXPECT_EQ(ReadFile(m_dir / "interview.xmp"), before);
    EXPECT_FALSE(std::filesystem::exists(m_dir / "out.txt"));
    EXPECT_THAT(EntryNames(m_dir / ""), testing::SizeIs(6)) << "no temporary file left";
}

}  // namespace
}  // namespace tooltest
