#include "ToolRunner.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

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

int StartTool(const std::vector<std::string>& arguments, const fs::path& errorFile) {
    std::vector<std::string> words = {kTool.string()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errorFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    pid_t pid = -1;
    const int failed = posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    return failed == 0 ? pid : -1;
}

int WaitForProgram(int pid) {
    int raw = 0;
    if (pid < 0 || waitpid(pid, &raw, 0) != pid) {
        return -1;
    }
    return WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
}

std::string ReadFile(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
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

std::vector<std::string> EntryNames(const fs::path& directory) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(directory)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

// A fresh directory each time: a name made of the process ID could be one
// that an earlier process, with the same ID, left behind with files in it.
ScratchDirectory::ScratchDirectory() {
    std::string path = (fs::temp_directory_path() / "keltxmp-tool-XXXXXX").string();
    if (::mkdtemp(path.data()) == nullptr) {
        throw std::runtime_error("cannot create a scratch directory in " + fs::temp_directory_path().string());
    }
    m_path = path;
}

ScratchDirectory::~ScratchDirectory() {
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

}  // namespace tooltest
