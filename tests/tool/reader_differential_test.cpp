// Both readers through the whole tool, on every packet the repository holds
// and on packets other writers made of them: the same JSON, byte for byte
// (marker IDs made afresh aside), the same messages, the same exit status.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
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
// Each read-only command that takes many files, with the options that choose
// what it reads.
const std::vector<std::vector<std::string>> kReadCommands = {
    {"markers", "--json"},  {"tracks", "--json"},
    {"segments", "--json"}, {"ingredients", "--json"},
    {"collect", "--json"},  {"collect", "--json", "--mask", "7F", "--start", "1", "--max-records", "500"},
    {"pantry", "--json"},
};
// Export takes one file: run on compositions only, where collecting matters.
const std::vector<std::string> kExportCommand = {"export", "--collect", "--format", "edl"};

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

void ExpectSameAnswer(const std::string& what, const std::vector<std::string>& command,
                      const std::vector<std::string>& files) {
    std::vector<std::string> fastArguments = command;
    fastArguments.insert(fastArguments.end(), files.begin(), files.end());
    std::vector<std::string> toolkitArguments = command;
    toolkitArguments.insert(toolkitArguments.end(), {"--reader", "toolkit"});
    toolkitArguments.insert(toolkitArguments.end(), files.begin(), files.end());
    const ToolResult toolkit = RunTool(toolkitArguments);
    const ToolResult fast = RunTool(fastArguments);
    std::set<std::size_t> fresh;
    if (command.front() == "markers") {
        fresh = FreshIdPlaces(toolkit.out, RunTool(toolkitArguments).out);
    }
    SCOPED_TRACE(command.front() + " " + what);
    EXPECT_EQ(fast.status, toolkit.status);
    EXPECT_EQ(WithoutFreshIds(fast.out, fresh), WithoutFreshIds(toolkit.out, fresh));
    EXPECT_EQ(fast.err, toolkit.err);
}

// The tool's fast path reads sidecars, so every packet is given as one. Each
// command reads them all in one run (each file's output and message name
// it), which keeps the test cheap under the sanitizers.
void ExpectSameAnswers(const std::string& what, const std::vector<fs::path>& sidecars) {
    std::vector<std::string> files;
    for (const fs::path& sidecar : sidecars) {
        files.push_back(sidecar.string());
    }
    for (const std::vector<std::string>& command : kReadCommands) {
        ExpectSameAnswer(what, command, files);
    }
    for (const fs::path& sidecar : sidecars) {
        std::error_code error;
        if (fs::is_regular_file(sidecar, error) && ReadFile(sidecar).find("Ingredients") != std::string::npos) {
            ExpectSameAnswer(sidecar.string(), kExportCommand, {sidecar.string()});
        }
    }
}

// A sidecar's name for a file of the repository: its path, flattened.
fs::path SidecarName(const fs::path& packet, const std::string& suffix) {
    std::string name = fs::relative(packet, kSource).string();
    std::replace(name.begin(), name.end(), '/', '_');
    return name + suffix + ".xmp";
}

TEST(ReaderDifferential, RepositoryPacketsWholeAndTruncated) {
    const ScratchDirectory scratch;
    std::vector<fs::path> sidecars;
    for (const fs::path& packet : RepositoryPackets()) {
        const std::string bytes = ReadFile(packet);
        sidecars.push_back(scratch / SidecarName(packet, ""));
        WriteFile(sidecars.back(), bytes);
        sidecars.push_back(scratch / SidecarName(packet, "-first-half"));
        WriteFile(sidecars.back(), bytes.substr(0, bytes.size() / 2));
    }
    ExpectSameAnswers("repository packets", sidecars);
}

TEST(ReaderDifferential, CompositionsInEachForm) {
    const ScratchDirectory scratch;
    std::vector<fs::path> sidecars;
    for (const compositions::Composition& composition : compositions::Compositions()) {
        std::string name = composition.name;
        std::replace_if(
            name.begin(), name.end(), [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; }, '-');
        sidecars.push_back(scratch / (name + ".xmp"));
        WriteFile(sidecars.back(), composition.packet);
    }
    ExpectSameAnswers("compositions", sidecars);
}

TEST(ReaderDifferential, FilesThatCannotBeReadAndUnknownReaders) {
    const ScratchDirectory scratch;
    ExpectSameAnswers("missing", {scratch / "missing.xmp"});
    ExpectSameAnswers("a directory", {scratch / ""});
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
        ExpectSameAnswers(copy.string(), {copy});
    }
}

}  // namespace
}  // namespace tooltest
