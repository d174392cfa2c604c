// The tool under hostile input: special files in place of files, times and
// parts beyond 64 bits, text too long or too deep. Each is refused at once with
// exit 1 (2 for an option), one line naming the value, nothing printed on
// standard output and the document left as it was.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <vector>

#include "ToolRunner.hpp"

namespace tooltest {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

const fs::path kExamples = fs::path(KELTXMP_SOURCE_DIR) / "examples";

struct RefusalCase {
    std::vector<std::string> arguments;  // "DIR/" is replaced by the scratch directory
    int status;
    std::string message;
};

class HostileInput : public testing::Test {
protected:
    void SetUp() override {
        fs::copy_file(kExamples / "interview.xmp", m_dir / "doc.xmp");
        fs::copy_file(kExamples / "interview.json", m_dir / "markers.json");
        fs::copy_file(kExamples / "composition/clip-a.xmp", m_dir / "clip.xmp");
        ASSERT_EQ(::mkfifo((m_dir / "fifo").c_str(), 0600), 0);
        fs::create_directory(m_dir / "folder.xmp");
        fs::create_symlink("/dev/zero", m_dir / "zero.xmp");
        fs::create_symlink(m_dir / "doc.xmp", m_dir / "link.xmp");
        fs::create_symlink(m_dir / "markers.json", m_dir / "link.json");
    }

    std::vector<std::string> InDir(std::vector<std::string> arguments) const {
        for (std::string& argument : arguments) {
            if (argument.starts_with("DIR/")) {
                argument = (m_dir / argument.substr(4)).string();
            }
        }
        return arguments;
    }

    void ExpectRefused(const std::vector<RefusalCase>& cases) const {
        const std::string before = ReadFile(m_dir / "doc.xmp");
        for (const RefusalCase& c : cases) {
            const ToolResult result = RunTool(InDir(c.arguments));
            const std::string label = c.arguments[0] + " " + c.arguments[1].substr(0, 40);
            EXPECT_EQ(result.status, c.status) << label << ": " << result.err;
            EXPECT_THAT(result.err, HasSubstr(c.message)) << label;
            EXPECT_EQ(Lines(result.err).size(), 1u) << result.err;
            EXPECT_EQ(result.out, "") << label;
            EXPECT_EQ(ReadFile(m_dir / "doc.xmp"), before) << label;
        }
    }

    ScratchDirectory m_dir;
};

TEST_F(HostileInput, OnlyRegularFilesAreReadAndNothingBlocks) {
    ExpectRefused({
        // Once a read without end, and a wait without end.
        {{"markers", "DIR/zero.xmp"}, 1, "zero.xmp: is a character device, not a regular file"},
        {{"markers", "DIR/fifo"}, 1, "fifo: is a FIFO (named pipe), not a regular file"},
        {{"markers", "DIR/folder.xmp"}, 1, "folder.xmp: is a directory"},
        {{"collect", "/dev/null"}, 1, "/dev/null: is a character device"},
        {{"write-markers", "DIR/doc.xmp", "--from", "DIR/fifo"}, 1, "fifo: is a FIFO (named pipe)"},
        {{"write-markers", "DIR/doc.xmp", "--from", "/dev/zero"}, 1, "/dev/zero: is a character device"},
        {{"write-markers", "DIR/doc.xmp", "--from", "DIR/folder.xmp"}, 1, "folder.xmp: is a directory"},
        {{"write-markers", "DIR/fifo", "--from", "DIR/markers.json"}, 1, "fifo: is a FIFO"},
        {{"add-ingredient", "DIR/doc.xmp", "DIR/fifo", "--from-part", "time:0", "--to-part", "time:0"},
         1,
         "fifo: is a FIFO"},
    });
}

TEST_F(HostileInput, SymlinksToRegularFilesAreRead) {
    const ToolResult listed = RunTool(InDir({"markers", "DIR/link.xmp", "--csv"}));
    EXPECT_EQ(listed.status, 0) << listed.err;
    EXPECT_EQ(Lines(listed.out).size(), 5u) << listed.out;
    EXPECT_THAT(listed.out, HasSubstr("link.xmp,Chapter,Welcome,0.000,0,00:00:00;00"));
    const ToolResult written = RunTool(InDir({"write-markers", "DIR/doc.xmp", "--from", "DIR/link.json"}));
    EXPECT_EQ(written.status, 0) << written.err;
}

TEST_F(HostileInput, ValuesBeyond64BitsAreRefusedNotWrapped) {
    WriteFile(m_dir / "huge.json", R"({"markers": [{"name": "a", "start": 18446744073709551615}]})");
    WriteFile(m_dir / "long.json", R"({"markers": [{"start": ")" + std::string(1000000, '7') + R"("}]})");
    const std::string digits(100000, '9');
    ExpectRefused({
        // Once -27,420,107.765 s with exit 0.
        {{"time", "999999:59:59:29", "--rate", "30000/1001"}, 1, "'999999:59:59:29' as a time: too far from zero"},
        // Once a stack overflow.
        {{"time", digits}, 1, "longer than the 64 characters"},
        {{"collect", "DIR/doc.xmp", "--start", digits}, 2, "--start: cannot read"},
        {{"time", "time:0f25s-1"}, 1, "its frame rate f25s-1 is negative"},
        // Once reported as given while another part was written.
        {{"add-ingredient", "DIR/doc.xmp", "DIR/clip.xmp", "--from-part", "time:100000000000f25d25f25", "--to-part",
          "time:0d25f25"},
         1,
         "cannot read the part 'time:100000000000f25d25f25'"},
        {{"write-markers", "DIR/doc.xmp", "--from", "DIR/huge.json"}, 1, "18446744073709551615 ticks is beyond"},
        {{"write-markers", "DIR/doc.xmp", "--from", "DIR/long.json"}, 1, "marker 1 \"start\": cannot read '777"},
    });
}

TEST_F(HostileInput, JsonTooDeepOrMalformedIsPlacedAndRefused) {
    std::string deep;
    for (int i = 0; i < 1000000; ++i) {
        deep += R"({"files":[)";
    }
    WriteFile(m_dir / "deep.json", deep);
    WriteFile(m_dir / "syntax.json", "{\"markers\": [\n  {\"name\": \"a\"},\n  {\"name\" \"b\"}\n]}");
    ExpectRefused({
        // Once a crash.
        {{"write-markers", "DIR/doc.xmp", "--from", "DIR/deep.json"}, 1, "deep.json: arrays and objects nested deeper"},
        {{"write-markers", "DIR/doc.xmp", "--from", "DIR/syntax.json"},
         1,
         "syntax.json: not JSON at line 3, column 13: unexpected string literal"},
    });
}

}  // namespace
}  // namespace tooltest
