#include "FileLock.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include <xmptoolkit/XMP_Const.hpp>

#include "FileChecks.hpp"
#include "ToolkitCall.hpp"

namespace xmptoolkit_detail {
namespace {

using Clock = std::chrono::steady_clock;

constexpr double kDefaultTimeoutSeconds = 10;
constexpr double kMaximumTimeoutSeconds = 24 * 3600;
constexpr auto kFirstPause = std::chrono::milliseconds(2);
constexpr auto kLongestPause = std::chrono::milliseconds(50);

bool SameFile(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

// What the path names now: the file, or nothing.
bool Lookup(const std::string& path, struct stat* status) {
    return ::stat(path.c_str(), status) == 0;
}

bool LockBefore(int descriptor, Clock::time_point deadline) {
    auto pause = kFirstPause;
    while (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR) return false;
        if (Clock::now() >= deadline) return false;
        std::this_thread::sleep_for(pause);
        pause = std::min(pause * 2, kLongestPause);
    }
    return true;
}

}  // namespace

double LockTimeoutSeconds() {
    const char* text = std::getenv("KELTEMPORALXMP_LOCK_TIMEOUT");
    if (text == nullptr) return kDefaultTimeoutSeconds;
    char* end = nullptr;
    const double seconds = std::strtod(text, &end);
    if (end == text || *end != '\0' || !(seconds >= 0)) return kDefaultTimeoutSeconds;
    return std::min(seconds, kMaximumTimeoutSeconds);
}

FileLock::FileLock(const std::string& path, std::string_view operation) {
    const double timeout = LockTimeoutSeconds();
    const Clock::time_point deadline =
        Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(timeout));
    const std::string folder = std::filesystem::absolute(path).parent_path().string();
    for (;;) {
        struct stat named {};
        const bool exists = Lookup(path, &named);
        // Non-blocking: opening a FIFO must not wait for a writer.
        const int descriptor = exists ? ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)
                                      : ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (descriptor < 0) {
            if (errno == ENOENT && Clock::now() < deadline) continue;  // replaced between the two calls
            RaiseError(kXMPErr_FilePermission, operation, path, "cannot open it to lock it: " + SystemErrorText());
        }
        const bool locked = LockBefore(descriptor, deadline);
        struct stat opened {
        }, now{};
        const bool existsNow = Lookup(path, &now);
        if (locked && exists == existsNow &&
            (!exists || (::fstat(descriptor, &opened) == 0 && SameFile(opened, now)))) {
            m_descriptor = descriptor;
            return;
        }
        ::close(descriptor);
        if (Clock::now() >= deadline) {
            char waited[32];
            std::snprintf(waited, sizeof waited, "%g", timeout);
            RaiseError(kXMPErr_ExternalFailure, operation, path,
                       std::string("another program is writing this file (waited ") + waited +
                           " s for its lock); try again once it has finished");
        }
    }
}

FileLock::~FileLock() {
    ::close(m_descriptor);  // releases the lock
}

}  // namespace xmptoolkit_detail
