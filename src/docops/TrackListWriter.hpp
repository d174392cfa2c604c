#pragma once
// Writes a track list into XMP as `xmpDM:Tracks` (see TrackLayout.hpp).

#include <vector>

#include <keltemporalxmp/records.hpp>
#include <xmptoolkit/XMP.hpp>

namespace keltemporalxmp {
namespace docops {

// Replaces the whole property. Empty texts and a zero duration are left out;
// a marker's type is left out when it is its track's. Marker times are written
// at the track's rate unless the marker has a rate of its own, which is then
// appended to the time.
void WriteTrackList(SXMPMeta& meta, const std::vector<XMPTrack>& tracks);

}  // namespace docops
}  // namespace keltemporalxmp
