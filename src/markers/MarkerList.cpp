// The whole marker list of a document, read and written in one call through
// a document of its own over the caller's metadata.

#include <iterator>
#include <map>
#include <string>

#include <kelcore/UTF.hpp>
#include <kelmetadata/NamespaceDefinition.hpp>
#include <keltemporalxmp/docops.hpp>
#include <keltemporalxmp/markers.hpp>

#include "markers/MarkerRecords.hpp"

namespace keltemporalxmp {
namespace {

// Type, then start time; equal starts keep input order. Points into the
// caller's list, which outlives the grouping.
using MarkersByStart = std::multimap<std::int64_t, const Marker*>;
using MarkersByType = std::map<UTF16String, MarkersByStart>;

MarkersByType GroupByTypeAndStart(const MarkerList& markers) {
    MarkersByType groups;
    for (std::size_t index = 0; index < markers.size(); ++index) {
        const Marker* marker = markers[index].get();
        if (marker == nullptr) {
            const std::string message = "WriteAllMarkers: null marker at index " + std::to_string(index);
            throw XMP_Error(kXMPErr_BadParam, message.c_str());
        }
        MarkersByStart& group = groups[marker->GetType()];
        group.emplace_hint(group.end(), marker->GetStartTime().GetTicks(), marker);
    }
    return groups;
}

// The part whose change the write notes: the Dynamic Media schema of the metadata.
const char* DynamicMediaPart() {
    static const std::string part =
        std::string("/metadata") + "/" + kelmetadata::NamespaceDefinition(kXMP_NS_DM)->GetSchemaText();
    return part.c_str();
}

}  // namespace

void ReadAllMarkers(SXMPMeta& meta, MarkerList& markers) {
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    AppendMarkersOfTracks({doc.TrackListIteratorBegin(), doc.TrackListIteratorEnd()}, markers);
}

void AppendMarkersOfTracks(std::span<const XMPTrack> tracks, MarkerList& markers) {
    std::string trackType;
    for (const XMPTrack& track : tracks) {
        track.GetTrackType(&trackType);
        for (const auto& entry : track.GetMarkers()) {
            markers.push_back(markers::MarkerFromRecord(entry.second, trackType));
        }
    }
}

void WriteAllMarkers(const MarkerList& markers, SXMPMeta& meta, std::int64_t frameRateNumerator,
                     std::int64_t frameRateDenominator) {
    const MarkersByType groups = GroupByTypeAndStart(markers);
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    doc.DeleteAllTracks();
    for (const auto& [type, group] : groups) {
        const std::string trackName = kelcore::UTF16to8(type);
        doc.AddTrack(trackName.c_str(), XMPTrack("", trackName.c_str(), frameRateNumerator, frameRateDenominator));
        XMPTrack& track = *std::prev(doc.TrackListIteratorEnd());
        for (const auto& entry : group) {
            track.AddMarker(track.GetMarkers().end(), markers::RecordFromMarker(*entry.second));
        }
    }
    doc.TrackListChanged();
    doc.NoteChange(DynamicMediaPart());
    doc.PrepareForSave("", 0);
}

}  // namespace keltemporalxmp
