#pragma once
// A file's bytes, mapped read-only: media files may be far larger than memory
// should hold, and the packet guard only needs to look at them once.

#include <cstddef>
#include <string>
#include <string_view>

namespace xmptoolkit_detail {

class MappedFile {
public:
    // XMP_Error when the file cannot be opened or mapped.
    MappedFile(const std::string& path, std::string_view operation);
    ~MappedFile();
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    std::string_view Bytes() const { return {static_cast<const char*>(m_data), m_size}; }

private:
    void* m_data = nullptr;
    std::size_t m_size = 0;
};

}  // namespace xmptoolkit_detail
