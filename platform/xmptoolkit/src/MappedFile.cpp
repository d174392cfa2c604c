#include "MappedFile.hpp"

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <xmptoolkit/XMP_Const.hpp>

#include "ToolkitCall.hpp"

namespace xmptoolkit_detail {

MappedFile::MappedFile(const std::string& path, std::string_view operation) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) RaiseError(kXMPErr_FilePermission, operation, path, std::strerror(errno));
    struct stat status {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(descriptor);
        RaiseError(kXMPErr_BadFileFormat, operation, path, "not a regular file");
    }
    m_size = static_cast<std::size_t>(status.st_size);
    if (m_size > 0) {
        m_data = ::mmap(nullptr, m_size, PROT_READ, MAP_PRIVATE, descriptor, 0);
        if (m_data == MAP_FAILED) {
            const int error = errno;
            m_data = nullptr;
            ::close(descriptor);
            RaiseError(kXMPErr_FilePermission, operation, path, std::strerror(error));
        }
    }
    ::close(descriptor);
}

MappedFile::~MappedFile() {
    if (m_data != nullptr) ::munmap(m_data, m_size);
}

}  // namespace xmptoolkit_detail
