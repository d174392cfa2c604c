// A whole XMP packet (a composed document with its ingredients and pantry)
// through the collector, with a mask and a range taken from the input.

#include <keltemporalxmp/collector.hpp>

#include <kelcore/Exceptions.hpp>

#include "FuzzInput.hpp"

using namespace keltemporalxmp;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::FuzzInput input(data, size);
    const auto mask = static_cast<unsigned char>(input.TakeInt64());
    const std::int64_t rangeStart = input.TakeInt64();
    const std::int64_t rangeDuration = input.TakeInt64();
    const std::string packet = input.TakeText();
    SXMPMeta meta;
    if (!fuzz::ParsePacket(reinterpret_cast<const std::uint8_t*>(packet.data()), packet.size(), &meta)) {
        return 0;
    }
    try {
        // A small bound keeps every input fast; the bound's own checks are the same at any size.
        constexpr std::size_t kMaxRecords = 10000;
        XMPTemporalMetadataCollector collector(mask, meta, rangeStart, rangeDuration, kMaxRecords);
    } catch (const XMP_Error& error) {
        fuzz::CheckError(error);
    } catch (const kelcore::parse_exception&) {
        // a keyword cue point whose value is not JSON
    } catch (const kelcore::missing_key_exception&) {
        // a keyword member of the wrong type
    }
    return 0;
}
