// Both readers through the whole tool, on every packet the repository holds
// and on packets other writers made of them: the same JSON, byte for byte
// (marker IDs made afresh aside), the same messages, the same exit status.

#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "ToolRunner.hpp"
#include "support/CompositionPackets.hpp"

namespace tooltest {
namespace {

namespace fs = std::filesystem;

const fs::path kSource(KELTXMP_SOURCE_DIR);
// Each read-only command with the options that choose what it reads.
const std::vector<std::vector<std::string>> kReadCommands = {
    {"markers", "--json"},
    {"tracks", "--json"},
    {"segments", "--json"},
    {"ingredients", "--json"},
    {"collect", "--json"},
    {"collect", "--json", "--mask", "7F", "--start", "1", "--max-records", "500"},
    {"export", "--collect", "--format", "edl"},
};

// Every packet of the examples, the tests and the fuzz corpora.
std::vector<fs::path> RepositoryPackets() {
    std::vector<fs::path> packets;
    for (const char* folder : {"examples", "tests", "fuzz/corpus"}) {
        for (const auto& entry : fs::recursive_directory_iterator(kSource / folder)) {
            const fs::path& path = entry.path();
            const bool inPacketCorpus = path.parent_path().filename().string().ends_with("_packet");
            if (entry.is_regular_file() && (path.extension() == ".xmp" || inPacketCorpus)) {
                packets.push_back(path);
            }
        }
    }
    return packets;
}

const std::regex kId("\"id\": \"[0-9a-f-]{36}\"");

// Which IDs (by their place in the output) a run makes up: those that differ
// between two runs of the toolkit reader.
std::set<std::size_t> FreshIdPlaces(const std::string& first, const std::string& second) {
    std::set<std::size_t> places;
    auto a = std::sregex_iterator(first.begin(), first.end(), kId);
    auto b = std::sregex_iterator(second.begin(), second.end(), kId);
    for (std::size_t place = 0; a != std::sregex_iterator() && b != std::sregex_iterator(); ++a, ++b, ++place) {
        if (a->str() != b->str()) {
            places.insert(place);
        }
    }
    return places;
}

std::string WithoutFreshIds(const std::string& text, const std::set<std::size_t>& places) {
    std::string result;
    auto last = text.cbegin();
    std::size_t place = 0;
    for (auto match = std::sregex_iterator(text.begin(), text.end(), kId); match != std::sregex_iterator();
         ++match, ++place) {
        result.append(last, (*match)[0].first);
        result += places.contains(place) ? "\"id\": fresh" : match->str();
        last = (*match)[0].second;
    }
    result.append(last, text.cend());
    return result;
}

// The tool's fast path reads sidecars, so every packet is given as one.
void ExpectSameAnswers(const fs::path& packet, const fs::path& sidecar) {
    for (const std::vector<std::string>& command : kReadCommands) {
        std::vector<std::string> fastArguments = command;
        fastArguments.push_back(sidecar.string());
        std::vector<std::string> toolkitArguments = command;
        toolkitArguments.insert(toolkitArguments.end(), {"--reader", "toolkit", sidecar.string()});
        const ToolResult toolkit = RunTool(toolkitArguments);
        const ToolResult fast = RunTool(fastArguments);
        std::set<std::size_t> fresh;
        if (command.front() == "markers") {
            fresh = FreshIdPlaces(toolkit.out, RunTool(toolkitArguments).out);
        }
        SCOPED_TRACE(command.front() + " " + packet.string());
        EXPECT_EQ(fast.status, toolkit.status);
        EXPECT_EQ(WithoutFreshIds(fast.out, fresh), WithoutFreshIds(toolkit.out, fresh));
        EXPECT_EQ(fast.err, toolkit.err);
    }
}

TEST(ReaderDifferential, RepositoryPacketsWholeAndTruncated) {
    const ScratchDirectory scratch;
    for (const fs::path& packet : RepositoryPackets()) {
        const std::string bytes = ReadFile(packet);
        const fs::path sidecar = scratch / "packet.xmp";
        WriteFile(sidecar, bytes);
        ExpectSameAnswers(packet, sidecar);
        WriteFile(sidecar, bytes.substr(0, bytes.size() / 2));
        ExpectSameAnswers(packet.string() + " (first half)", sidecar);
    }
}

TEST(ReaderDifferential, CompositionsInEachForm) {
    const ScratchDirectory scratch;
    for (const compositions::Composition& composition : compositions::Compositions()) {
        const fs::path sidecar = scratch / "composition.xmp";
        WriteFile(sidecar, composition.packet);
        ExpectSameAnswers(composition.name, sidecar);
    }
}

TEST(ReaderDifferential, FilesThatCannotBeReadAndUnknownReaders) {
    const ScratchDirectory scratch;
    ExpectSameAnswers("missing", scratch / "missing.xmp");
    ExpectSameAnswers("a directory", scratch / "");
    EXPECT_EQ(RunTool({"markers", "--reader", "other", (kSource / "examples/interview.xmp").string()}).status, 2);
}

TEST(ReaderDifferential, PacketsOtherWritersMade) {
    const ToolResult version = RunProgram("exiftool", {"-ver"});
    ASSERT_EQ(version.status, 0) << "exiftool is needed (Debian libimage-exiftool-perl; scripts/install-deps)";
    const ScratchDirectory scratch;
    for (const char* example : {"examples/interview.xmp", "examples/composition/scene.xmp"}) {
        const fs::path copy = scratch / (fs::path(example).stem().string() + "-exiftool.xmp");
        const ToolResult written = RunProgram(
            "exiftool", {"-q", "-o", copy.string(), "-tagsfromfile", (kSource / example).string(), "-xmp:all"});
        ASSERT_EQ(written.status, 0) << written.err;
        ExpectSameAnswers(copy, copy);
    }
}

}  // namespace
}  // namespace tooltest
