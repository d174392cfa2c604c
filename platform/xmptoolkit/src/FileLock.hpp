#pragma once
// An exclusive advisory lock (flock) held for a read-modify-write of a file,
// so that writers in other processes take turns and no update is lost.
//
// Files are replaced by rename, so a lock on the old file does not hold off a
// writer that opens the new one: once locked, the path must still name the
// locked file, else the lock is taken again on what it names now. While the
// file does not exist, its folder is locked instead. A waiter gives up after
// LockTimeoutSeconds() with kXMPErr_ExternalFailure.

#include <string>
#include <string_view>

namespace xmptoolkit_detail {

// 10 seconds, or KELTEMPORALXMP_LOCK_TIMEOUT (seconds, decimals allowed).
double LockTimeoutSeconds();

class FileLock {
public:
    FileLock(const std::string& path, std::string_view operation);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

private:
    int m_descriptor = -1;
};

}  // namespace xmptoolkit_detail
