#pragma once
// Shared pieces of the collector tests: small documents with named instance
// IDs, composed through the library's own ingredient operations, and the
// collection written out one line per record.

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include <keltemporalxmp/collector.hpp>
#include <keltemporalxmp/docops.hpp>

namespace collector_test {

using keltemporalxmp::XMPCuePointParam;
using keltemporalxmp::XMPDocOpsTemporal;
using keltemporalxmp::XMPTemporalMetadataCollector;
using keltemporalxmp::XMPTemporalMetadataInfo;
using keltemporalxmp::XMPTrack;

inline constexpr std::int64_t S = 254016000000;  // one second
inline constexpr std::int64_t kUnspecified = INT64_MAX;

struct MarkerSpec {
    const char* m_name;
    std::int64_t m_start;
    std::int64_t m_duration;
};

// Saving gives a document a fresh instance ID; tests want to name it.
inline void SaveAs(XMPDocOpsTemporal& doc, SXMPMeta& meta, const std::string& name) {
    doc.PrepareForSave("");
    meta.SetProperty(kXMP_NS_XMP_MM, "xmpMM:InstanceID", ("xmp.iid:" + name).c_str());
}

// A document "xmp.iid:<name>" with one track "Notes" of type "Comment".
inline SXMPMeta Document(const std::string& name, const std::vector<MarkerSpec>& markers) {
    SXMPMeta meta;
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    XMPTrack track("Notes", "Comment", 25, 1);
    for (const MarkerSpec& marker : markers) {
        track.AddMarker(XMPTemporalMetadataInfo(marker.m_name, "", marker.m_start, marker.m_duration, "", "", "", "",
                                                {}, "", "", nullptr, nullptr));
    }
    doc.AddTrack("Notes", track);
    SaveAs(doc, meta, name);
    return meta;
}

struct Use {
    const SXMPMeta* m_source;
    std::int64_t m_fromStart;
    std::int64_t m_fromDuration;  // negative: used backwards
    std::int64_t m_toStart;
    std::int64_t m_toDuration;
    bool m_maskMarkers = false;
};

// Adds the uses to the document and saves it under its name again.
inline void Compose(SXMPMeta& meta, const std::vector<Use>& uses) {
    std::string name;
    meta.GetProperty(kXMP_NS_XMP_MM, "xmpMM:InstanceID", &name, nullptr);
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    for (const Use& use : uses) {
        doc.AddIngredientXMPTemporal(*use.m_source, use.m_fromStart, 1, 1, use.m_fromDuration, 1, 1, use.m_toStart, 1,
                                     1, use.m_toDuration, 1, 1, "", "", "linear", use.m_maskMarkers);
    }
    SaveAs(doc, meta, name.substr(std::string("xmp.iid:").size()));
}

inline std::string Seconds(std::int64_t ticks) {
    if (ticks == kUnspecified) {
        return "max";
    }
    char text[32];
    std::snprintf(text, sizeof text, "%g", static_cast<double>(ticks) / static_cast<double>(S));
    return text;
}

inline std::string Field(const XMPTemporalMetadataInfo& info, XMPTemporalMetadataInfo::_infoFieldEnum field) {
    return *info.GetMarkerFieldPtr(field);
}

// "name start duration | clippedStart clippedDuration | instance mapping",
// times in seconds, instance IDs without their "xmp.iid:".
inline std::string Line(const XMPTemporalMetadataInfo& info) {
    const std::string instance = Field(info, XMPTemporalMetadataInfo::kInfoField_ReportedContainingInstanceID);
    return Field(info, XMPTemporalMetadataInfo::kInfoField_Name) + " " + Seconds(info.GetStartTime()) + " " +
           Seconds(info.GetDuration()) + " | " + Seconds(info.GetReportedClippedStartTime()) + " " +
           Seconds(info.GetReportedClippedDuration()) + " | " + instance.substr(instance.find(':') + 1) + " " +
           Field(info, XMPTemporalMetadataInfo::kInfoField_ReportedPartMapping);
}

// The collection in its order, checking that each record is filed under its
// clipped start (markers) or its start (component records).
inline std::vector<std::string> Collect(const SXMPMeta& meta, std::int64_t start, std::int64_t duration,
                                        unsigned char mask = XMPTemporalMetadataCollector::kDefaultCollectionMask) {
    XMPTemporalMetadataCollector collector(mask, meta, start, duration);
    std::vector<std::string> lines;
    for (const auto& [key, info] : collector.GetXMPTemporalMetadataInfoCollection()) {
        const bool marker = info.GetInfoForm() == XMPTemporalMetadataInfo::kInfoForm_MarkerReportback;
        const std::int64_t expectedKey = marker ? info.GetReportedClippedStartTime() : info.GetStartTime();
        lines.push_back(Line(info) + (key == expectedKey ? "" : " (filed under " + Seconds(key) + ")"));
    }
    return lines;
}

}  // namespace collector_test
