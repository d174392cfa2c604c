// The markers of one document's tracks, as report-backs on the top timeline.

#include <utility>

#include "collector/Walk.hpp"

namespace keltemporalxmp::collector {

void Walk::CollectMarkers(const std::vector<XMPTrack>& tracks, const Visit& visit, const std::string& instanceID) {
    const char* partMapping = visit.m_mapping.m_scale < 0.0 ? "linear-reversed" : "linear";
    std::string trackName;
    std::string trackType;
    for (const XMPTrack& track : tracks) {
        track.GetTrackName(&trackName);
        track.GetTrackType(&trackType);
        for (const auto& [key, marker] : track.GetMarkers()) {
            Step(instanceID);
            const std::int64_t start = visit.m_mapping(marker.GetStartTime());
            const std::int64_t end = visit.m_mapping(SaturatingAdd(marker.GetStartTime(), marker.GetDuration()));
            const Interval extent = Interval::ForOverlap(start, end);
            if (!extent.Overlaps(visit.m_mappedFromSpanForOverlap) || !extent.Overlaps(visit.m_clipRange)) {
                continue;
            }
            File(marker, MarkerPlacement{Span{start, SaturatingSubtract(end, start)}, visit.Clipped(start, end), instanceID,
                                         trackName, trackType, partMapping});
        }
    }
}

void Walk::File(XMPTemporalMetadataInfo marker, const MarkerPlacement& placement) {
    marker.m_infoForm = XMPTemporalMetadataInfo::kInfoForm_MarkerReportback;
    marker.m_startTime = placement.m_mapped.m_start;
    marker.m_duration = placement.m_mapped.m_duration;
    marker.m_reportedClippedStartTime = placement.m_clipped.m_start;
    marker.m_reportedClippedDuration = placement.m_clipped.m_duration;
    marker.m_reportedContainingInstanceID = placement.m_instanceID;
    marker.m_reportedTrackName = placement.m_trackName;
    marker.m_reportedTrackType = placement.m_trackType;
    marker.m_reportedPartMapping = placement.m_partMapping;
    Insert(placement.m_clipped.m_start, std::move(marker));
}

}  // namespace keltemporalxmp::collector
