#include "ToolRunner.hpp"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

namespace tooltest {
namespace {

namespace fs = std::filesystem;

const fs::path kTool = KELTXMP_TOOL_PATH;

std::string ShellQuoted(const std::string& text) {
    std::string quoted = "'";
    for (const char c : text) {
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return quoted + "'";
}

}  // namespace

ToolResult RunTool(const std::vector<std::string>& arguments) {
    return RunProgram(kTool.string(), arguments);
}

ToolResult RunProgram(const std::string& program, const std::vector<std::string>& arguments) {
    const ScratchDirectory captures;
    std::string command = ShellQuoted(program);
    for (const std::string& argument : arguments) {
        command += " " + ShellQuoted(argument);
    }
    command += " >" + ShellQuoted((captures / "out").string()) + " 2>" + ShellQuoted((captures / "err").string());
    const int raw = std::system(command.c_str());
    ToolResult result;
    result.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    result.out = ReadFile(captures / "out");
    result.err = ReadFile(captures / "err");
    return result;
}

void ExpectToolFailure(const ToolFailure& failure, const fs::path& directory) {
    std::vector<std::string> arguments = failure.arguments;
    for (std::string& argument : arguments) {
        if (argument.starts_with("DIR/")) {
            argument = (directory / argument.substr(4)).string();
        }
    }
    const ToolResult result = RunTool(arguments);
    const std::string label = arguments[0] + " " + arguments.back();
    EXPECT_EQ(result.status, failure.status) << label << ": " << result.err;
    EXPECT_NE(result.err.find(failure.message), std::string::npos) << label << ": " << result.err;
    EXPECT_EQ(result.out, "") << label;
    if (failure.status == 1) {
        EXPECT_EQ(Lines(result.err).size(), 1u) << result.err;
    }
}

std::string ReadFile(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void WriteFile(const fs::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        lines.push_back(line);
    }
    return lines;
}

ScratchDirectory::ScratchDirectory() {
    static int count = 0;
    m_path = fs::temp_directory_path() / ("keltxmp-tool-" + std::to_string(::getpid()) + "-" + std::to_string(++count));
    fs::create_directories(m_path);
}

ScratchDirectory::~ScratchDirectory() {
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

}  // namespace tooltest
