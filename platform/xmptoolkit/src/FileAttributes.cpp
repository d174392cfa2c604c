#include "FileAttributes.hpp"

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <vector>

#include <xmptoolkit/XMP_Const.hpp>

#include "FileChecks.hpp"
#include "ToolkitCall.hpp"

namespace xmptoolkit_detail {
namespace {

constexpr std::string_view kOperation = "TXMPFiles::CloseFile";

// Attributes this process may not read or set (another user's, a file
// system without them) are left out rather than failing the write.
bool IsUnsupportedOrForbidden(int error) {
    return error == ENOTSUP || error == EPERM || error == EACCES;
}

void KeepExtendedAttributes(int from, int to, std::string_view path) {
    const ssize_t listSize = ::flistxattr(from, nullptr, 0);
    if (listSize <= 0) return;
    std::vector<char> names(static_cast<std::size_t>(listSize));
    const ssize_t listed = ::flistxattr(from, names.data(), names.size());
    if (listed < 0) return;
    for (std::size_t at = 0; at < static_cast<std::size_t>(listed);) {
        const std::string name(names.data() + at);
        at += name.size() + 1;
        const ssize_t size = ::fgetxattr(from, name.c_str(), nullptr, 0);
        if (size < 0) continue;
        std::vector<char> value(static_cast<std::size_t>(size));
        const ssize_t read = ::fgetxattr(from, name.c_str(), value.data(), value.size());
        if (read < 0) continue;
        if (::fsetxattr(to, name.c_str(), value.data(), static_cast<std::size_t>(read), 0) != 0 &&
            !IsUnsupportedOrForbidden(errno))
            RaiseError(kXMPErr_ExternalFailure, kOperation, path,
                       "cannot keep the extended attribute " + name + ": " + SystemErrorText());
    }
}

}  // namespace

void KeepAttributes(int from, int to, std::string_view path) {
    struct stat status {};
    if (::fstat(from, &status) != 0) RaiseError(kXMPErr_ExternalFailure, kOperation, path, SystemErrorText());
    // Only root may give a file away; anyone may keep a group they belong to.
    // Keeping neither leaves the file this user's: no reason to fail the write.
    [[maybe_unused]] const bool ownerKept =
        ::fchown(to, status.st_uid, status.st_gid) == 0 || ::fchown(to, static_cast<uid_t>(-1), status.st_gid) == 0;
    KeepExtendedAttributes(from, to, path);
    // Last: a change of owner clears the set-id bits.
    if (::fchmod(to, status.st_mode & 07777) != 0)
        RaiseError(kXMPErr_ExternalFailure, kOperation, path, "cannot set the mode: " + SystemErrorText());
}

}  // namespace xmptoolkit_detail
