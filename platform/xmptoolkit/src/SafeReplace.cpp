#include "SafeReplace.hpp"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <random>
#include <utility>
#include <vector>

#include <xmptoolkit/XMP_Const.hpp>

#include "FileAttributes.hpp"
#include "FileChecks.hpp"
#include "TemporaryFileRegistry.hpp"
#include "ToolkitCall.hpp"

namespace xmptoolkit_detail {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kOperation = "TXMPFiles::CloseFile";
constexpr int kNameAttempts = 32;
constexpr std::size_t kCopyChunk = 1 << 20;
// Keeps the temporary name within NAME_MAX whatever the destination's name.
constexpr std::size_t kMaximumNamePart = 96;

// ".clip.keltemporalxmp-<16 random hex digits>.mp4": hidden, and with the
// destination's extension so the toolkit's handlers recognise it.
std::string TemporaryName(const fs::path& destination) {
    static std::random_device randomSource;
    const std::uint64_t random = (std::uint64_t{randomSource()} << 32) | randomSource();
    char hex[17];
    std::snprintf(hex, sizeof hex, "%016llx", static_cast<unsigned long long>(random));
    std::string extension = destination.extension().string();
    if (extension.size() > kMaximumNamePart) extension.clear();
    return "." + destination.stem().string().substr(0, kMaximumNamePart) + ".keltemporalxmp-" + hex + extension;
}

// Blocks the signals the tool ends on while the temporary file is created and
// while it becomes the destination, so a handler never sees a file it does
// not know of or a half-finished rename.
class SignalsHeld {
public:
    SignalsHeld() {
        sigset_t held;
        sigemptyset(&held);
        for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&held, signal);
        pthread_sigmask(SIG_BLOCK, &held, &m_previous);
    }
    ~SignalsHeld() { pthread_sigmask(SIG_SETMASK, &m_previous, nullptr); }
    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;

private:
    sigset_t m_previous{};
};

mode_t NewFileMode() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

}  // namespace

ReplacementFile::ReplacementFile(const std::string& path)
    : m_shownPath(path), m_destination(ResolveWriteTarget(path, kOperation)) {
    RequireWritableFile(m_destination, kOperation);
    struct stat status {};
    if (::stat(m_destination.c_str(), &status) == 0 && status.st_nlink > 1)
        Fail("the file has " + std::to_string(status.st_nlink) +
             " hard links and replacing it would leave the other names with the old content; it is left as it is "
             "(copy it to a file of its own to change it)");
    const fs::path destination(m_destination);
    const std::string folder = destination.parent_path().string();
    m_folder = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (m_folder < 0) Fail("cannot open the folder " + folder + ": " + SystemErrorText());
    // A signal between creating the file and remembering it would leave it behind.
    const SignalsHeld held;
    for (int attempt = 0; attempt < kNameAttempts && m_file < 0; ++attempt) {
        m_name = TemporaryName(destination);
        m_file = ::openat(m_folder, m_name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
        if (m_file < 0 && errno != EEXIST) {
            const std::string reason = SystemErrorText();
            ::close(m_folder);
            Fail("cannot create a temporary file in " + folder + ": " + reason);
        }
    }
    if (m_file < 0) {
        ::close(m_folder);
        Fail("cannot create a temporary file in " + folder + ": every name tried exists");
    }
    m_registryEntry = RememberTemporaryFile(m_folder, m_name);
    m_temporaryPath = (fs::path(folder) / m_name).string();
}

ReplacementFile::~ReplacementFile() {
    if (!m_committed) ::unlinkat(m_folder, m_name.c_str(), 0);
    ForgetTemporaryFile(m_registryEntry);
    ::close(m_file);
    ::close(m_folder);
}

void ReplacementFile::Fail(const std::string& detail) const {
    RaiseError(kXMPErr_ExternalFailure, kOperation, m_shownPath, detail);
}

void ReplacementFile::Append(const char* data, std::size_t size) {
    while (size > 0) {
        const ssize_t written = ::write(m_file, data, size);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) Fail("cannot write the new file: " + SystemErrorText());
        data += written;
        size -= static_cast<std::size_t>(written);
    }
}

void ReplacementFile::AppendFileContent(const std::string& path) {
    const int source = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (source < 0) Fail("cannot read " + path + ": " + SystemErrorText());
    std::vector<char> chunk(kCopyChunk);
    for (;;) {
        const ssize_t read = ::read(source, chunk.data(), chunk.size());
        if (read < 0 && errno == EINTR) continue;
        if (read < 0) {
            const std::string reason = SystemErrorText();
            ::close(source);
            Fail("cannot read " + path + ": " + reason);
        }
        if (read == 0) break;
        try {
            Append(chunk.data(), static_cast<std::size_t>(read));
        } catch (...) {
            ::close(source);
            throw;
        }
    }
    ::close(source);
}

// Code that opened the temporary file by name may have replaced it; the name
// must still hold a regular file of ours with no other name, never a link.
void ReplacementFile::ReopenTemporaryFile() {
    const int file = ::openat(m_folder, m_name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    struct stat status {};
    if (file < 0 || ::fstat(file, &status) != 0 || !S_ISREG(status.st_mode) || status.st_uid != ::geteuid() ||
        status.st_nlink != 1) {
        if (file >= 0) ::close(file);
        Fail("the temporary file " + m_temporaryPath + " was replaced by another program while it was written");
    }
    ::close(m_file);
    m_file = file;
}

void ReplacementFile::Commit() {
    ReopenTemporaryFile();
    const int original = ::open(m_destination.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (original >= 0) {
        try {
            KeepAttributes(original, m_file, m_shownPath);
        } catch (...) {
            ::close(original);
            throw;
        }
        ::close(original);
    } else if (errno != ENOENT) {
        Fail("cannot read the file's owner and mode: " + SystemErrorText());
    } else if (::fchmod(m_file, NewFileMode()) != 0) {
        Fail("cannot set the mode of the new file: " + SystemErrorText());
    }
    if (::fsync(m_file) != 0) Fail("cannot write the new file to disk: " + SystemErrorText());
    {
        const SignalsHeld held;
        const std::string name = fs::path(m_destination).filename().string();
        if (::renameat(m_folder, m_name.c_str(), m_folder, name.c_str()) != 0)
            Fail("cannot replace the file: " + SystemErrorText());
        m_committed = true;
        ForgetTemporaryFile(std::exchange(m_registryEntry, -1));
    }
    // The rename itself reaches the disk only with its folder.
    if (::fsync(m_folder) != 0 && errno != EINVAL)
        Fail("the new file is in place, but its folder cannot be written to disk: " + SystemErrorText());
}

void ReplaceFileSafely(const std::string& path, const std::function<void(ReplacementFile&)>& writeTemporary) {
    ReplacementFile replacement(path);
    writeTemporary(replacement);
    replacement.Commit();
}

}  // namespace xmptoolkit_detail
