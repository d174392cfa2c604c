#include "FileChecks.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include <xmptoolkit/XMP_Const.hpp>

#include "ToolkitCall.hpp"

namespace xmptoolkit_detail {
namespace fs = std::filesystem;

std::string SystemErrorText() {
    return std::generic_category().message(errno);
}

std::string ResolveWriteTarget(const std::string& path, std::string_view operation) {
    std::error_code error;
    const fs::path absolute = fs::absolute(path, error).lexically_normal();
    if (fs::exists(absolute, error)) return fs::canonical(absolute).string();
    if (fs::is_symlink(fs::symlink_status(absolute, error)))
        RaiseError(kXMPErr_NoFile, operation, path, "a symbolic link to a file that does not exist");
    const fs::path folder = fs::canonical(absolute.parent_path(), error);
    if (error) RaiseError(kXMPErr_NoFile, operation, path, "its folder cannot be used: " + error.message());
    return (folder / absolute.filename()).string();
}

void RequireWritableFile(const std::string& path, std::string_view operation) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) {
        if (errno == ENOENT) return;
        RaiseError(kXMPErr_FilePermission, operation, path, SystemErrorText());
    }
    if (!S_ISREG(status.st_mode)) RaiseError(kXMPErr_FilePermission, operation, path, "not a regular file");
    // Even where permissions do not bind (root), a file nobody may write is
    // meant to stay as it is.
    if (::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0 || (status.st_mode & 0222) == 0) {
        char mode[8];
        std::snprintf(mode, sizeof mode, "%04o", static_cast<unsigned>(status.st_mode & 07777));
        RaiseError(kXMPErr_FilePermission, operation, path,
                   std::string("the file is read-only (mode ") + mode +
                       "): permission denied; it is left as it is, make it writable to change it");
    }
}

}  // namespace xmptoolkit_detail
