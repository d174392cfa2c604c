#include <keltemporalxmp/records.hpp>

#include <stdexcept>
#include <utility>

#include "timestrings/Arguments.hpp"

namespace keltemporalxmp {
namespace {

void RequireRoomForOneMore(const XMPTrack::MarkerMap& markers) {
    if (markers.size() >= markers.max_size()) {
        throw std::length_error("XMPTrack::AddMarker: marker list is full");
    }
}

}  // namespace

XMPTrack::XMPTrack(std::int64_t frameRateNumerator, std::int64_t frameRateDenominator)
    : XMPTrack("", "", frameRateNumerator, frameRateDenominator) {}

XMPTrack::XMPTrack(const char* trackName, std::int64_t frameRateNumerator, std::int64_t frameRateDenominator)
    : XMPTrack(trackName, "", frameRateNumerator, frameRateDenominator) {}

XMPTrack::XMPTrack(const char* trackName, const char* trackType, std::int64_t frameRateNumerator,
                   std::int64_t frameRateDenominator)
    : m_TrackName(RequiredText(trackName, "XMPTrack", "track name")),
      m_TrackType(RequiredText(trackType, "XMPTrack", "track type")),
      m_FrameRateNumerator(frameRateNumerator),
      m_FrameRateDenominator(frameRateDenominator) {}

void XMPTrack::AddMarker(const XMPTemporalMetadataInfo& marker) {
    RequireRoomForOneMore(m_markers);
    m_markers.emplace(marker.GetStartTime(), marker);
}

void XMPTrack::AddMarker(MarkerMap::const_iterator hint, const XMPTemporalMetadataInfo& marker) {
    RequireRoomForOneMore(m_markers);
    m_markers.emplace_hint(hint, marker.GetStartTime(), marker);
}

void XMPTrack::AddMarker(MarkerMap::const_iterator hint, XMPTemporalMetadataInfo&& marker) {
    RequireRoomForOneMore(m_markers);
    const std::int64_t startTime = marker.GetStartTime();
    m_markers.emplace_hint(hint, startTime, std::move(marker));
}

void XMPTrack::RemoveMarker(MarkerMap::const_iterator position) {
    m_markers.erase(position);
}

void XMPTrack::ClearMarkers() {
    m_markers.clear();
}

void XMPTrack::GetTrackName(std::string* trackName) const {
    Required(trackName, "XMPTrack::GetTrackName", "output string") = m_TrackName;
}

void XMPTrack::GetTrackType(std::string* trackType) const {
    Required(trackType, "XMPTrack::GetTrackType", "output string") = m_TrackType;
}

void XMPTrack::SetTrackName(const char* trackName) {
    m_TrackName = RequiredText(trackName, "XMPTrack::SetTrackName", "track name");
}

void XMPTrack::SetTrackType(const char* trackType) {
    m_TrackType = RequiredText(trackType, "XMPTrack::SetTrackType", "track type");
}

}  // namespace keltemporalxmp
