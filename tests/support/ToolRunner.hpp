#pragma once
// Runs the built command-line tool, or another program, and captures what it prints.

#include <filesystem>
#include <string>
#include <vector>

namespace tooltest {

struct ToolResult {
    int status = -1;
    std::string out;
    std::string err;
};

// Runs `program` (found on PATH when it has no directory) with the arguments.
ToolResult RunProgram(const std::string& program, const std::vector<std::string>& arguments);
// The built keltemporalxmp.
ToolResult RunTool(const std::vector<std::string>& arguments);

// Starts the built keltemporalxmp without waiting: standard output is
// dropped, standard error goes to `errorFile`. Returns the process id.
int StartTool(const std::vector<std::string>& arguments, const std::filesystem::path& errorFile);
// Waits for a started program: its exit status, or -1 when a signal ended it.
int WaitForProgram(int pid);

std::string ReadFile(const std::filesystem::path& path);
void WriteFile(const std::filesystem::path& path, const std::string& bytes);

// A command that must fail: its exit status, one line on standard error
// holding `message`, nothing on standard output. "DIR/" at the start of an
// argument stands for `directory`.
struct ToolFailure {
    std::vector<std::string> arguments;
    int status;
    std::string message;
};
void ExpectToolFailure(const ToolFailure& failure, const std::filesystem::path& directory);

// Lines of `text`, without their line ends.
std::vector<std::string> Lines(const std::string& text);

// The names in a directory, sorted: a failed count shows what was left.
std::vector<std::string> EntryNames(const std::filesystem::path& directory);

// A fresh directory per test, removed afterwards.
class ScratchDirectory {
public:
    ScratchDirectory();
    ~ScratchDirectory();
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;

    std::filesystem::path operator/(const std::string& name) const { return m_path / name; }

private:
    std::filesystem::path m_path;
};

}  // namespace tooltest
