// The markers of one document's tracks, as report-backs on the top timeline.

#include <keltemporalxmp/collector.hpp>

#include <utility>
#include <vector>

#include "collector/Visit.hpp"
#include "docops/TrackLayout.hpp"
#include "docops/TrackListReader.hpp"

namespace keltemporalxmp {

using collector::Interval;
using collector::Span;

void XMPTemporalMetadataCollector::CollectMarkers(const SXMPMeta& xmp, const Visit& visit,
                                                  const std::string& instanceID) {
    std::vector<XMPTrack> tracks;
    docops::ReadTrackList(xmp, visit.PathNamespace(kXMP_NS_DM), visit.PropertyPath(docops::kTracksPath).c_str(), tracks,
                          docops::KeywordCuePoints::kKeptAsCuePoints);
    const char* partMapping = visit.m_mapping.m_scale < 0.0 ? "linear-reversed" : "linear";
    std::string trackName;
    std::string trackType;
    for (XMPTrack& track : tracks) {
        track.GetTrackName(&trackName);
        track.GetTrackType(&trackType);
        for (auto entry = track.MarkerListIteratorBegin(); entry != track.MarkerListIteratorEnd(); ++entry) {
            XMPTemporalMetadataInfo& marker = entry->second;
            const std::optional<Span> mapped = visit.m_mapping.MapSpan(
                marker.GetStartTime(), collector::AddTimes(marker.GetStartTime(), marker.GetDuration()));
            if (!mapped) {
                continue;
            }
            const std::int64_t start = mapped->m_start;
            const std::int64_t end = mapped->End();
            const Interval extent = Interval::ForOverlap(start, end);
            if (!extent.Overlaps(visit.m_mappedFromSpanForOverlap) || !extent.Overlaps(visit.m_clipRange)) {
                continue;
            }
            File(std::move(marker),
                 MarkerPlacement{Span{start, collector::SubtractTimes(end, start)}, visit.Clipped(start, end),
                                 instanceID, trackName, trackType, partMapping});
        }
    }
}

void XMPTemporalMetadataCollector::File(XMPTemporalMetadataInfo&& marker, const MarkerPlacement& placement) {
    marker.m_infoForm = XMPTemporalMetadataInfo::kInfoForm_MarkerReportback;
    marker.m_startTime = placement.m_mapped.m_start;
    marker.m_duration = placement.m_mapped.m_duration;
    marker.m_reportedClippedStartTime = placement.m_clipped.m_start;
    marker.m_reportedClippedDuration = placement.m_clipped.m_duration;
    marker.m_reportedContainingInstanceID = placement.m_instanceID;
    marker.m_reportedTrackName = placement.m_trackName;
    marker.m_reportedTrackType = placement.m_trackType;
    marker.m_reportedPartMapping = placement.m_partMapping;
    m_collection.emplace(placement.m_clipped.m_start, std::move(marker));
}

}  // namespace keltemporalxmp
