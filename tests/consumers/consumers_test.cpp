// The exports handed to the programs that consume them: the media muxer and
// prober read ffmetadata chapters, WebVTT and SubRip cues; a Python WebVTT
// parser reads the same cue times. Each test is skipped, saying so, when its
// program is not installed.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <kelcore/JSON.hpp>

#include "ToolRunner.hpp"

namespace tooltest {
namespace {

using testing::HasSubstr;

constexpr std::int64_t kFrame = 254016000000 / 25;

const char* const kEmptyPacket =
    R"(<x:xmpmeta xmlns:x="adobe:ns:meta/"><rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#">)"
    R"(<rdf:Description rdf:about=""/></rdf:RDF></x:xmpmeta>)";

struct Chapter {
    std::string title;
    std::int64_t startFrame;
    std::int64_t endFrame;
};

// Inside a two-second clip at 25 frames per second; the last has no duration
// and so lasts one frame.
const std::vector<Chapter> kChapters = {
    {"Intro", 0, 12},
    {"Caf\xC3\xA9 = ; # \\ \"quoted\" & <b>", 13, 30},
    {"\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E line", 31, 32},
};

bool Installed(const std::string& program) {
    return RunProgram("sh", {"-c", "command -v \"$0\"", program}).status == 0;
}

kelcore::JSONValue Json(const std::string& text) {
    const kelcore::JSONValuePtr document = kelcore::JSONParse(text);
    return document != nullptr ? *document : kelcore::JSONValue();
}

class Consumers : public ::testing::Test {
protected:
    void SetUp() override {
        kelcore::JSONValue markers = kelcore::JSONValue::array();
        for (std::size_t i = 0; i < kChapters.size(); ++i) {
            const Chapter& chapter = kChapters[i];
            const std::int64_t frames = i + 1 < kChapters.size() ? chapter.endFrame - chapter.startFrame : 0;
            markers.push_back({{"type", "Chapter"},
                               {"name", chapter.title},
                               {"comment", i == 0 ? "first comment" : ""},
                               {"start", chapter.startFrame * kFrame},
                               {"duration", frames * kFrame},
                               {"rate", {{"numerator", 25}, {"denominator", 1}}}});
        }
        WriteFile(m_dir / "markers.json", kelcore::JSONValue{{"markers", markers}}.dump());
        WriteFile(m_dir / "clip.xmp", kEmptyPacket);
        const ToolResult imported = RunTool({"import", Path("clip.xmp"), "--from", Path("markers.json")});
        ASSERT_EQ(imported.status, 0) << imported.err;
    }

    std::string Path(const std::string& name) const { return (m_dir / name).string(); }

    std::string Export(const std::string& format, const std::string& name) const {
        const ToolResult result = RunTool({"export", Path("clip.xmp"), "--format", format, "--output", Path(name)});
        EXPECT_EQ(result.status, 0) << result.err;
        return Path(name);
    }

    ScratchDirectory m_dir;
};

TEST_F(Consumers, TheMuxerAppliesFFMetadataChaptersExactly) {
    if (!Installed("ffmpeg") || !Installed("ffprobe")) {
        GTEST_SKIP() << "ffmpeg is not installed";
    }
    const std::string chapters = Export("ffmetadata", "chapters.txt");
    ASSERT_EQ(RunProgram("ffmpeg", {"-v", "error", "-f", "lavfi", "-i", "testsrc=duration=2:size=32x32:rate=25", "-c:v",
                                    "mpeg4", Path("clip.mp4")})
                  .status,
              0);
    for (const std::string container : {"mkv", "mp4"}) {
        const ToolResult muxed =
            RunProgram("ffmpeg", {"-v", "error", "-i", Path("clip.mp4"), "-i", chapters, "-map", "0", "-map_metadata",
                                  "1", "-map_chapters", "1", "-c", "copy", Path("chaptered." + container)});
        ASSERT_EQ(muxed.status, 0) << muxed.err;
    }
    // The chapter file as the muxer reads it, the Matroska file (nanoseconds)
    // and the MP4 file (whose times are milliseconds, the first forced to 0:
    // only its titles are compared).
    const struct {
        std::vector<std::string> input;
        std::int64_t unitsPerFrame;
        bool times;
    } kReaders[] = {
        {{"-f", "ffmetadata", chapters}, 1, true},
        {{Path("chaptered.mkv")}, 40000000, true},
        {{Path("chaptered.mp4")}, 0, false},
    };
    for (const auto& reader : kReaders) {
        std::vector<std::string> arguments = {"-v", "error", "-show_chapters", "-of", "json"};
        arguments.insert(arguments.end(), reader.input.begin(), reader.input.end());
        const ToolResult probed = RunProgram("ffprobe", arguments);
        ASSERT_EQ(probed.status, 0) << probed.err;
        const kelcore::JSONValue found = Json(probed.out)["chapters"];
        ASSERT_EQ(found.size(), kChapters.size()) << probed.out;
        for (std::size_t i = 0; i < kChapters.size(); ++i) {
            EXPECT_EQ(found[i]["tags"]["title"], kChapters[i].title);
            if (reader.times) {
                EXPECT_EQ(found[i]["start"], kChapters[i].startFrame * reader.unitsPerFrame) << probed.out;
                EXPECT_EQ(found[i]["end"], kChapters[i].endFrame * reader.unitsPerFrame) << probed.out;
            }
        }
    }
}

// Cue start and end in milliseconds, as each reader reports them.
std::vector<std::pair<std::int64_t, std::int64_t>> ExpectedCues() {
    std::vector<std::pair<std::int64_t, std::int64_t>> cues;
    for (const Chapter& chapter : kChapters) {
        cues.emplace_back(chapter.startFrame * 40, chapter.endFrame * 40);
    }
    return cues;
}

TEST_F(Consumers, TheProberReadsWebVttAndSubRipCues) {
    if (!Installed("ffprobe") || !Installed("ffmpeg")) {
        GTEST_SKIP() << "ffmpeg is not installed";
    }
    for (const std::string format : {"webvtt", "srt"}) {
        SCOPED_TRACE(format);
        const std::string cues = Export(format, "cues." + std::string(format == "webvtt" ? "vtt" : "srt"));
        const ToolResult probed = RunProgram("ffprobe", {"-v", "error", "-show_packets", "-of", "json", cues});
        ASSERT_EQ(probed.status, 0) << probed.err;
        const kelcore::JSONValue packets = Json(probed.out)["packets"];
        std::vector<std::pair<std::int64_t, std::int64_t>> found;
        for (const auto& packet : packets) {
            found.emplace_back(packet["pts"].get<std::int64_t>(),
                               packet["pts"].get<std::int64_t>() + packet["duration"].get<std::int64_t>());
        }
        EXPECT_EQ(found, ExpectedCues()) << probed.out;
        // The text as the muxer decodes it, entities and all.
        const ToolResult text = RunProgram("ffmpeg", {"-v", "error", "-i", cues, "-f", "srt", "-"});
        ASSERT_EQ(text.status, 0) << text.err;
        EXPECT_THAT(text.out, HasSubstr("Intro\r\nfirst comment\n"));
        EXPECT_THAT(text.out, HasSubstr(kChapters[1].title));
    }
}

TEST_F(Consumers, APythonWebVttParserReadsTheSameCueTimes) {
    if (RunProgram("/usr/bin/python3", {"-c", "import webvtt"}).status != 0) {
        GTEST_SKIP() << "python3-webvtt is not installed";
    }
    const std::string cues = Export("webvtt", "cues.vtt");
    const ToolResult read = RunProgram(
        "/usr/bin/python3",
        {"-c",
         "import sys, webvtt\n"
         "for cue in webvtt.read(sys.argv[1]):\n"
         "    print(round(cue.start_in_seconds * 1000), round(cue.end_in_seconds * 1000), cue.text.split('\\n')[0])",
         cues});
    ASSERT_EQ(read.status, 0) << read.err;
    std::string expected;
    for (std::size_t i = 0; i < kChapters.size(); ++i) {
        const auto [start, end] = ExpectedCues()[i];
        // The parser leaves the entities as written.
        const std::string title = i == 1 ? "Caf\xC3\xA9 = ; # \\ \"quoted\" &amp; &lt;b&gt;" : kChapters[i].title;
        expected += std::to_string(start) + " " + std::to_string(end) + " " + title + "\n";
    }
    EXPECT_EQ(read.out, expected);
}

}  // namespace
}  // namespace tooltest
