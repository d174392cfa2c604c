#pragma once
// Between the UTF-16 Marker and the UTF-8 marker record that tracks hold.

#include <memory>
#include <string>

#include <keltemporalxmp/markers.hpp>
#include <keltemporalxmp/records.hpp>

namespace keltemporalxmp {
namespace markers {

// The record's ID becomes the marker's identity (see Marker(id)); a record
// without a type of its own takes trackType. Cue points come first, then the
// keywords in their cue point form.
std::shared_ptr<Marker> MarkerFromRecord(const XMPTemporalMetadataInfo& record, const std::string& trackType);

// A record without type, since the type lives on the track; its times take
// the track's rate. Cue points are copied as they are, keyword ones included.
// The extension is shared.
XMPTemporalMetadataInfo RecordFromMarker(const Marker& marker);

}  // namespace markers
}  // namespace keltemporalxmp
