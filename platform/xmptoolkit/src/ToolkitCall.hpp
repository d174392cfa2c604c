#pragma once
// Every call into the toolkit goes through CallToolkit: it initialises the
// toolkit once per process, holds the one process-wide lock for the call and
// reads the toolkit's last error before anyone else can overwrite it.

#include <mutex>
#include <string>
#include <string_view>
#include <utility>

#include "StderrCapture.hpp"

namespace xmptoolkit_detail {

struct ToolkitOutcome {
    bool m_succeeded = false;
    int m_errorId = 0;             // positive, 0 when the toolkit recorded none
    std::string m_toolkitMessage;  // what the toolkit printed about the failure
};

class ToolkitGuard {
public:
    ToolkitGuard();
    ToolkitOutcome Finish(bool succeeded);

private:
    std::unique_lock<std::mutex> m_lock;
    std::string m_printed;
    StderrCapture m_capture;
};

template <class Call>
ToolkitOutcome CallToolkit(Call&& call) {
    ToolkitGuard guard;
    const bool succeeded = std::forward<Call>(call)();
    return guard.Finish(succeeded);
}

// A failed change or construction: always an error. fallbackId is used when
// the toolkit failed without recording an id.
void RequireSuccess(const ToolkitOutcome& outcome, std::string_view operation, std::string_view path,
                    int fallbackId = 0);

// A lookup: false without an error id just means "not there".
bool FoundUnlessFailed(const ToolkitOutcome& outcome, std::string_view operation, std::string_view path);

[[noreturn]] void RaiseError(int id, std::string_view operation, std::string_view path, std::string_view detail);

// Null pointers the caller must supply.
void RequireArgument(const void* pointer, std::string_view operation, std::string_view what);

}  // namespace xmptoolkit_detail
