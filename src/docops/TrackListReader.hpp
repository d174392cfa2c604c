#pragma once
// Reads a track list out of XMP (see TrackLayout.hpp). Written to accept what
// other writers produce: Bag or Seq arrays, fields in any order, absent
// fields, fields of other schemas. Items that are not structs, and a
// `markers` or `cuePointParams` that is not an array, are passed over.

#include <vector>

#include <keltemporalxmp/records.hpp>
#include <xmptoolkit/XMP.hpp>

namespace keltemporalxmp {
namespace docops {

// What becomes of a cue point that carries a keyword.
enum class KeywordCuePoints { kToKeywords, kKeptAsCuePoints };

// Appends the tracks of the array at tracksPath, each once it is complete.
// Times are read at the track's rate unless they carry their own; every marker
// keeps the rate its times were read at. A rate that cannot convert a time
// raises XMP_Error kXMPErr_BadValue naming the marker.
void ReadTrackList(const SXMPMeta& meta, const char* schemaNS, const char* tracksPath, std::vector<XMPTrack>& tracks,
                   KeywordCuePoints keywords = KeywordCuePoints::kToKeywords);

}  // namespace docops
}  // namespace keltemporalxmp
