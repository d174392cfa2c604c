#include "SafeReplace.hpp"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <unistd.h>

#include <xmptoolkit/XMP_Const.hpp>

#include "ToolkitCall.hpp"

namespace xmptoolkit_detail {
namespace fs = std::filesystem;

namespace {

constexpr XMP_StringPtr kOperation = "TXMPFiles::CloseFile";

std::string CreateTempSibling(const fs::path& target) {
    const std::string extension = target.extension().string();
    std::string pattern = (target.parent_path() / ("." + target.stem().string() + "-XXXXXX")).string() + extension;
    const int fd = ::mkstemps(pattern.data(), static_cast<int>(extension.size()));
    if (fd < 0) RaiseError(kXMPErr_ExternalFailure, kOperation, target.string(), "cannot create a temporary file");
    ::close(fd);
    return pattern;
}

// A new file gets the usual rw-r--r--; a replaced one keeps its own.
fs::perms PermissionsFor(const fs::path& target) {
    std::error_code error;
    const fs::file_status status = fs::status(target, error);
    if (fs::exists(status)) return status.permissions();
    return fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read | fs::perms::others_read;
}

}  // namespace

void ReplaceFileSafely(const std::string& path, const std::function<void(const std::string& tempPath)>& writeTemp) {
    const std::string temp = CreateTempSibling(path);
    try {
        writeTemp(temp);
        std::error_code error;
        fs::permissions(temp, PermissionsFor(path), error);
        if (!error) fs::rename(temp, path, error);
        if (error) RaiseError(kXMPErr_ExternalFailure, kOperation, path, error.message());
    } catch (...) {
        std::error_code ignored;
        fs::remove(temp, ignored);
        throw;
    }
}

}  // namespace xmptoolkit_detail
