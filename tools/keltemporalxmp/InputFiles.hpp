#pragma once
// Files the tool reads: regular files only (a symlink to one is fine), of a
// bounded size. A FIFO or a device is refused without blocking on it or
// reading from it.

#include <cstdint>
#include <string>

namespace keltemporalxmp::tool {

// InputError when `path` opens as anything but a regular file, or as one
// larger than `maximumBytes`. A path that does not open at all passes: the
// caller's own open then says why.
void CheckInputFile(const std::string& path, std::uintmax_t maximumBytes);

// The bytes of the regular file at `path`, at most `maximumBytes`; InputError
// says why it cannot be read.
std::string ReadRegularFile(const std::string& path, std::uintmax_t maximumBytes);

}  // namespace keltemporalxmp::tool
