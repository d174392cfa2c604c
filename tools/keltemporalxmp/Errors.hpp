#pragma once
// The tool's exit statuses and the two errors that stop a command.

#include <stdexcept>

namespace keltemporalxmp::tool {

enum ExitStatus : int {
    kExitOk = 0,
    kExitBadInput = 1,  // a file or data that cannot be used
    kExitUsage = 2,     // the command line itself is wrong
};

// Bad input found by the tool itself; the message says what is wrong, the
// caller adds which file.
class InputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// A command line the parser accepted but that makes no sense.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace keltemporalxmp::tool
