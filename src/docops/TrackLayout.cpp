#include "docops/TrackLayout.hpp"

#include <charconv>

namespace keltemporalxmp::docops {

void AppendItemIndex(std::string& path, std::size_t index) {
    char digits[24];
    const auto written = std::to_chars(digits, digits + sizeof digits, index);
    path += '[';
    path.append(digits, written.ptr);
    path += ']';
}

void RethrowAt(const XMP_Error& error, std::string_view operation, std::string_view path) {
    std::string message(operation);
    message.append(" failed on ").append(path).append(": ").append(error.GetErrMsg());
    throw XMP_Error(error.GetID(), message.c_str());
}

}  // namespace keltemporalxmp::docops
