// The one unmangled export: segment boundaries stored by an analysis as
// "Segmentation" markers of the track named "Markers".

#include <string>
#include <string_view>

#include <keltemporalxmp/docops.hpp>
#include <keltemporalxmp/markers.hpp>

#include "timestrings/Arguments.hpp"
#include "timestrings/TickArithmetic.hpp"

namespace keltemporalxmp {
namespace {

constexpr const char* kOperation = "KELTemporalXMPGetSegmentationMarkers";
constexpr const char* kTrackName = "Markers";
constexpr std::string_view kSegmentationType = "Segmentation";

// By name: a track of that type under another name does not count.
const XMPTrack* FindTrackNamed(std::span<const XMPTrack> tracks, const char* trackName) {
    std::string name;
    for (const XMPTrack& track : tracks) {
        track.GetTrackName(&name);
        if (name == trackName) {
            return &track;
        }
    }
    return nullptr;
}

// A frame shorter than a tick is as unknown as no frame at all.
std::int64_t FrameDuration(const XMPTrack& track) {
    const std::int64_t numerator = track.GetFrameRateNumerator();
    const std::int64_t denominator = track.GetFrameRateDenominator();
    if (numerator == 0) {
        const std::string message = std::string(kOperation) + " failed on track \"" + kTrackName + "\": frame rate " +
                                    std::to_string(numerator) + "/" + std::to_string(denominator) +
                                    " has a zero numerator";
        throw XMP_Error(kXMPErr_BadValue, message.c_str());
    }
    const std::int64_t ticks = timestrings::Divide(
        timestrings::WrappingMultiply(denominator, kelmediatypes::TickTime::kTicksPerSecond), numerator);
    return ticks != 0 ? ticks : timestrings::kUnspecifiedTicks;
}

}  // namespace

void GetSegmentationMarkersOfTracks(std::span<const XMPTrack> tracks,
                                    std::vector<std::pair<std::int64_t, std::int64_t>>& segments,
                                    std::int64_t& frameDuration) {
    const XMPTrack* track = FindTrackNamed(tracks, kTrackName);
    if (track == nullptr) {
        frameDuration = timestrings::kUnspecifiedTicks;
        return;
    }
    frameDuration = FrameDuration(*track);
    for (const auto& entry : track->GetMarkers()) {
        const XMPTemporalMetadataInfo& marker = entry.second;
        if (*marker.GetMarkerFieldPtr(XMPTemporalMetadataInfo::kInfoField_MarkerType) == kSegmentationType) {
            segments.emplace_back(marker.GetStartTime(), marker.GetDuration());
        }
    }
}

}  // namespace keltemporalxmp

extern "C" void KELTemporalXMPGetSegmentationMarkers(const SXMPMeta* meta,
                                                     std::vector<std::pair<std::int64_t, std::int64_t>>* segments,
                                                     std::int64_t* frameDuration) {
    using namespace keltemporalxmp;
    auto& segmentList = Required(segments, kOperation, "segments output");
    std::int64_t& frameTicks = Required(frameDuration, kOperation, "frame duration output");
    XMPDocOpsTemporal doc;
    if (meta != nullptr) {
        // Another handle on the caller's tree; nothing here writes to it.
        SXMPMeta handle(*meta);
        doc.OpenXMP(&handle, "");
    }
    GetSegmentationMarkersOfTracks({doc.TrackListIteratorBegin(), doc.TrackListIteratorEnd()}, segmentList, frameTicks);
}
