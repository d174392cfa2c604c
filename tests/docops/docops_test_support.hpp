#pragma once
// Shared pieces of the document-operation tests.

#include <cstdint>
#include <string>
#include <vector>

#include <keltemporalxmp/docops.hpp>

namespace docops_test {

using keltemporalxmp::XMPCuePointParam;
using keltemporalxmp::XMPDocOpsTemporal;
using keltemporalxmp::XMPTemporalMetadataInfo;
using keltemporalxmp::XMPTrack;

inline constexpr std::int64_t kSecond = 254016000000;

// Every node of the track list, in document order: "path=value" for a simple
// value, "path {}" for a struct, "path [seq]" / "path [bag]" for an array.
inline std::vector<std::string> TrackNodes(const SXMPMeta& meta) {
    std::vector<std::string> nodes;
    SXMPIterator walk(meta, kXMP_NS_DM, "xmpDM:Tracks", kXMP_IterOmitQualifiers);
    std::string path;
    std::string value;
    XMP_OptionBits options = 0;
    while (walk.Next(nullptr, &path, &value, &options)) {
        if ((options & kXMP_PropValueIsStruct) != 0) {
            nodes.push_back(path + " {}");
        } else if ((options & kXMP_PropValueIsArray) != 0) {
            nodes.push_back(path + ((options & kXMP_PropArrayIsOrdered) != 0 ? " [seq]" : " [bag]"));
        } else {
            nodes.push_back(path + "=" + value);
        }
    }
    return nodes;
}

// A marker with the given texts; every other text empty, no rates of its own.
inline XMPTemporalMetadataInfo Marker(const char* name, std::int64_t start, std::int64_t duration = 0,
                                      const std::vector<XMPCuePointParam>& params = {}, const char* markerID = nullptr,
                                      const char* type = "") {
    return XMPTemporalMetadataInfo(name, "", start, duration, type, "", "", "", params, "", "", markerID, nullptr);
}

// Writes the tracks into a fresh document over `meta`.
inline void WriteTracks(SXMPMeta& meta, const std::vector<XMPTrack>& tracks) {
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    for (const XMPTrack& track : tracks) {
        std::string name;
        track.GetTrackName(&name);
        doc.AddTrack(name.c_str(), track);
    }
    doc.PrepareForSave("");
}

// The tracks a fresh document reads from `meta`.
inline std::vector<XMPTrack> ReadTracks(SXMPMeta& meta) {
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    return std::vector<XMPTrack>(doc.TrackListIteratorBegin(), doc.TrackListIteratorEnd());
}

inline std::string Text(const XMPTemporalMetadataInfo& marker, XMPTemporalMetadataInfo::_infoFieldEnum field) {
    return *marker.GetMarkerFieldPtr(field);
}

}  // namespace docops_test
