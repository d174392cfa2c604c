// XMPDocOpsTemporal's track list: read at its first use, edited in memory,
// written back by PrepareForSave.

#include <keltemporalxmp/docops.hpp>

#include <algorithm>

#include "docops/ListRead.hpp"
#include "docops/TrackLayout.hpp"
#include "docops/TrackListReader.hpp"
#include "docops/TrackListWriter.hpp"
#include "timestrings/Arguments.hpp"

namespace keltemporalxmp {
namespace {

bool HasType(const XMPTrack& track, const std::string& trackType, std::string& scratch) {
    track.GetTrackType(&scratch);
    return scratch == trackType;
}

}  // namespace

// The flag goes first: a read that fails part-way is not tried again.
void XMPDocOpsTemporal::CacheTrackList() {
    if (m_cachedTrackData) {
        return;
    }
    m_cachedTrackData = true;
    if (m_xmpMetaPtr != nullptr) {
        docops::ReadKeepingFailure(m_trackReadFailure, [&] {
            docops::ReadTrackList(*m_xmpMetaPtr, kXMP_NS_DM, docops::kTracksPath, m_tracks);
        });
    }
}

void XMPDocOpsTemporal::WriteTrackList() {
    if (m_xmpMetaPtr == nullptr) {
        throw XMP_Error(kXMPErr_BadParam, "Null output SXMPMeta pointer");
    }
    docops::RequireCompleteRead(m_trackReadFailure, docops::kTracksPath);
    docops::WriteTrackList(*m_xmpMetaPtr, m_tracks);
}

void XMPDocOpsTemporal::TrackListChanged() {
    CacheTrackList();
    m_hasTrackDataChanged = true;
}

void XMPDocOpsTemporal::AddTrack(const char* trackName, const XMPTrack& track) {
    const char* name = RequiredText(trackName, "XMPDocOpsTemporal::AddTrack", "track name");
    CacheTrackList();
    m_tracks.push_back(track);
    m_tracks.back().SetTrackName(name);
    m_hasTrackDataChanged = true;
}

bool XMPDocOpsTemporal::DeleteTrack(const XMPTrack* track) {
    if (track == nullptr) {
        return false;
    }
    CacheTrackList();
    const auto found =
        std::find_if(m_tracks.begin(), m_tracks.end(), [track](const XMPTrack& cached) { return &cached == track; });
    if (found == m_tracks.end()) {
        return false;
    }
    m_tracks.erase(found);
    m_hasTrackDataChanged = true;
    return true;
}

bool XMPDocOpsTemporal::DeleteTrack(const std::string* trackType) {
    XMPTrack* track = GetTrack(trackType);
    return track != nullptr && DeleteTrack(track);
}

void XMPDocOpsTemporal::DeleteAllTracks() {
    CacheTrackList();
    m_tracks.clear();
    m_hasTrackDataChanged = true;
}

XMPTrack* XMPDocOpsTemporal::GetTrack(const std::string* trackType) {
    if (trackType == nullptr) {
        return nullptr;
    }
    CacheTrackList();
    std::string scratch;
    const auto found = std::find_if(m_tracks.begin(), m_tracks.end(),
                                    [&](const XMPTrack& track) { return HasType(track, *trackType, scratch); });
    return found != m_tracks.end() ? &*found : nullptr;
}

XMPDocOpsTemporal::TrackList::iterator XMPDocOpsTemporal::TrackListIteratorBegin() {
    CacheTrackList();
    return m_tracks.begin();
}

XMPDocOpsTemporal::TrackList::iterator XMPDocOpsTemporal::TrackListIteratorEnd() {
    CacheTrackList();
    return m_tracks.end();
}

}  // namespace keltemporalxmp
