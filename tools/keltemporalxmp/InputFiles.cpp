#include "InputFiles.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <optional>

#include "Errors.hpp"

namespace keltemporalxmp::tool {
namespace {

const char* KindOfFile(mode_t mode) {
    if (S_ISDIR(mode)) {
        return "a directory";
    }
    if (S_ISFIFO(mode)) {
        return "a FIFO (named pipe)";
    }
    if (S_ISCHR(mode)) {
        return "a character device";
    }
    if (S_ISBLK(mode)) {
        return "a block device";
    }
    return S_ISSOCK(mode) ? "a socket" : "a special file";
}

// A file opened for reading, closed when it goes.
class ReadableFile {
public:
    ReadableFile(int descriptor, std::uintmax_t size) : m_descriptor(descriptor), m_size(size) {}
    ~ReadableFile() { ::close(m_descriptor); }
    ReadableFile(const ReadableFile&) = delete;
    ReadableFile& operator=(const ReadableFile&) = delete;

    int Descriptor() const { return m_descriptor; }
    std::uintmax_t Size() const { return m_size; }

private:
    int m_descriptor;
    std::uintmax_t m_size;
};

// Non-blocking, so that opening a FIFO returns at once; only what fstat
// calls regular is kept. Nothing when the file cannot be opened at all.
std::optional<ReadableFile> OpenRegularFile(const std::string& path) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (descriptor < 0) {
        return std::nullopt;
    }
    struct stat status {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        const std::string kind = KindOfFile(status.st_mode);
        ::close(descriptor);
        throw InputError("is " + kind + ", not a regular file; give the path of a file");
    }
    return std::optional<ReadableFile>(std::in_place, descriptor, static_cast<std::uintmax_t>(status.st_size));
}

[[noreturn]] void RefuseSize(std::uintmax_t maximumBytes) {
    throw InputError("larger than the " + std::to_string(maximumBytes) + " bytes the tool reads from such a file");
}

}  // namespace

void CheckInputFile(const std::string& path, std::uintmax_t maximumBytes) {
    if (const std::optional<ReadableFile> file = OpenRegularFile(path); file && file->Size() > maximumBytes) {
        RefuseSize(maximumBytes);
    }
}

std::string ReadRegularFile(const std::string& path, std::uintmax_t maximumBytes) {
    const std::optional<ReadableFile> file = OpenRegularFile(path);
    if (!file) {
        throw InputError(std::string("cannot open it: ") + std::strerror(errno));
    }
    if (file->Size() > maximumBytes) {
        RefuseSize(maximumBytes);
    }
    // The file may grow while it is read: reading stops one byte past the bound.
    std::string bytes;
    char buffer[1 << 16];
    for (;;) {
        const ssize_t count = ::read(file->Descriptor(), buffer, sizeof buffer);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            throw InputError(std::string("cannot read it: ") + std::strerror(errno));
        }
        if (count == 0) {
            return bytes;
        }
        bytes.append(buffer, static_cast<std::size_t>(count));
        if (bytes.size() > maximumBytes) {
            RefuseSize(maximumBytes);
        }
    }
}

}  // namespace keltemporalxmp::tool
