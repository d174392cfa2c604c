// Any bytes through the packet guard and the toolkit's parser: no crash, no
// overflow, bad input only as XMP_Error; and what parses serializes into a
// packet that parses again, or is refused as one that would not (nothing
// written that cannot be read).

#include <string>

#include "FuzzInput.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    SXMPMeta meta;
    if (!keltemporalxmp::fuzz::ParsePacket(data, size, &meta)) {
        return 0;
    }
    std::string packet;
    try {
        meta.SerializeToBuffer(&packet);
    } catch (const XMP_Error& error) {
        keltemporalxmp::fuzz::CheckError(error);
        if (error.GetID() != kXMPErr_BadSerialize) __builtin_trap();
        return 0;
    }
    SXMPMeta again;
    if (!keltemporalxmp::fuzz::ParsePacket(reinterpret_cast<const std::uint8_t*>(packet.data()), packet.size(),
                                           &again)) {
        __builtin_trap();
    }
    return 0;
}
