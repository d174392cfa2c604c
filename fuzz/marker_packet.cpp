// A whole XMP packet through the marker list reader, the segmentation query,
// and the markers read written back into the packet.

#include <keltemporalxmp/markers.hpp>

#include <kelcore/Exceptions.hpp>

#include "FuzzInput.hpp"

using namespace keltemporalxmp;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    SXMPMeta meta;
    if (!fuzz::ParsePacket(data, size, &meta)) {
        return 0;
    }
    try {
        std::vector<std::pair<std::int64_t, std::int64_t>> segments;
        std::int64_t frameDuration = 0;
        KELTemporalXMPGetSegmentationMarkers(&meta, &segments, &frameDuration);
    } catch (const XMP_Error& error) {
        fuzz::CheckError(error);
    } catch (const kelcore::parse_exception&) {
        // a keyword cue point whose value is not JSON
    } catch (const kelcore::missing_key_exception&) {
        // a keyword member of the wrong type
    }
    try {
        MarkerList markers;
        ReadAllMarkers(meta, markers);
        WriteAllMarkers(markers, meta, 25, 1);
    } catch (const XMP_Error& error) {
        fuzz::CheckError(error);
    } catch (const kelcore::parse_exception&) {
        // a keyword cue point whose value is not JSON
    } catch (const kelcore::missing_key_exception&) {
        // a keyword member of the wrong type
    }
    return 0;
}
