// Any bytes as a media file: the first byte picks how the file is named (a
// JPEG, a WAV file, or one only packet scanning reads), the rest is the file.
// Opening and reading it never crashes; bad files come out as XMP_Error.

#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "FuzzInput.hpp"

namespace {

const char* const kExtensions[] = {".jpg", ".wav", ".dat"};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::string path =
        "/tmp/fuzz-media-" + std::to_string(::getpid()) + kExtensions[data[0] % std::size(kExtensions)];
    std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(data + 1),
                                                static_cast<std::streamsize>(size - 1));
    try {
        SXMPFiles file(path.c_str(), kXMP_UnknownFile, kXMPFiles_OpenForRead | kXMPFiles_OpenUsePacketScanning);
        SXMPMeta meta;
        file.GetXMP(&meta);
    } catch (const XMP_Error& error) {
        keltemporalxmp::fuzz::CheckError(error);
    }
    std::remove(path.c_str());
    return 0;
}
