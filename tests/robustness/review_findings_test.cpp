// What a review found lost or hidden: a save after a failed read, a still
// frame in a composition, an empty marker ID, an unsigned keyword colour.

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include <kelcore/Exceptions.hpp>
#include <keltemporalxmp/docops.hpp>
#include <keltemporalxmp/markers.hpp>

#include "collector/collector_test_support.hpp"
#include "records/KeywordCuePoints.hpp"

using namespace keltemporalxmp;
using namespace collector_test;

namespace {

using C = XMPTemporalMetadataCollector;

void AppendCuePoint(SXMPMeta& meta, const std::string& markerPath, const char* key, const char* value) {
    const std::string params = markerPath + "/xmpDM:cuePointParams";
    meta.AppendArrayItem(kXMP_NS_DM, params.c_str(), kXMP_PropArrayIsOrdered, "", kXMP_PropValueIsStruct);
    const std::string item = params + "[last()]";
    meta.SetStructField(kXMP_NS_DM, item.c_str(), kXMP_NS_DM, "key", key);
    meta.SetStructField(kXMP_NS_DM, item.c_str(), kXMP_NS_DM, "value", value);
}

SXMPMeta ThreeTracks() {
    SXMPMeta meta;
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    for (const char* name : {"one", "two", "three"}) {
        XMPTrack track(name, "Comment", 25, 1);
        track.AddMarker(XMPTemporalMetadataInfo(name, "", S, 0, "", "", "", "", {}, "", "", nullptr, nullptr));
        doc.AddTrack(name, track);
    }
    doc.PrepareForSave("");
    return meta;
}

TEST(ReviewFindings, ASaveAfterAFailedTrackReadKeepsTheTracksNotRead) {
    SXMPMeta meta = ThreeTracks();
    AppendCuePoint(meta, "xmpDM:Tracks[2]/xmpDM:markers[1]", "keywordExtKELv1_k", "not json");
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    EXPECT_THROW(doc.TrackListIteratorBegin(), kelcore::parse_exception);
    doc.AddTrack("four", XMPTrack("four", 25, 1));
    try {
        doc.PrepareForSave("");
        ADD_FAILURE() << "saved";
    } catch (const XMP_Error& error) {
        const std::string message = error.GetErrMsg();
        EXPECT_NE(message.find("xmpDM:Tracks is not written back"), std::string::npos) << message;
    }
    EXPECT_EQ(meta.CountArrayItems(kXMP_NS_DM, "Tracks"), 3);
}

// A still frame: the leaf's instant at 2 s held from 10 s for 5 s.
TEST(ReviewFindings, AStillFrameKeepsItsRecordAndTheMarkersAtItsInstant) {
    const SXMPMeta leaf = Document("leaf", {{"covers", S, 2 * S}, {"before", 0, S}, {"after", 3 * S, S}});
    SXMPMeta top = Document("top", {});
    Compose(top, {{&leaf, 2 * S, S, 10 * S, 5 * S}});
    std::string stillFrame;
    XMPDocOpsTemporal::CreatePartString(&stillFrame, 2 * S, 0, 0, 0, 0, 0, kUnspecified, "");
    top.SetStructField(kXMP_NS_XMP_MM, "xmpMM:Ingredients[1]", kXMP_NS_XMP_ResourceRef, "fromPart", stillFrame.c_str());
    EXPECT_EQ(
        Collect(top, 0, kUnspecified, C::kCollectComponentMetadata | C::kCollectIngredientMarkers),
        (std::vector<std::string>{"ComponentMetadata 10 5 | 10 5 | leaf linear", "covers 10 5 | 10 5 | leaf linear"}))
        << stillFrame;
}

TEST(ReviewFindings, AnEmptyMarkerIdIsNoId) {
    SXMPMeta meta = ThreeTracks();
    AppendCuePoint(meta, "xmpDM:Tracks[1]/xmpDM:markers[1]", "marker_guid", "");
    AppendCuePoint(meta, "xmpDM:Tracks[1]/xmpDM:markers[1]", "marker_guid", "the-id");
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    const XMPTemporalMetadataInfo& marker = doc.TrackListIteratorBegin()->GetMarkers().begin()->second;
    EXPECT_EQ(*marker.GetMarkerFieldPtr(XMPTemporalMetadataInfo::kInfoField_MarkerID), "the-id");
}

TEST(ReviewFindings, KeywordColoursReadAsTheir32Bits) {
    const std::string key = kKeywordExtKELPrefixV1 + "id";
    const struct {
        const char* m_value;
        std::int32_t m_color;
    } readable[] = {
        {R"({"color":4294901760})", static_cast<std::int32_t>(0xFFFF0000u)},
        {R"({"color":4294967295})", -1},
        {R"({"color":2147483648})", INT32_MIN},
        {R"({"color":-2147483648})", INT32_MIN},
        {R"({"color":16711680})", 0x00FF0000},
    };
    for (const auto& entry : readable) {
        EXPECT_EQ(
            CuePointToKeyword(XMPCuePointParam(key.c_str(), entry.m_value)).m_Extension.m_TagDescription.m_ARGBColor,
            entry.m_color)
            << entry.m_value;
    }
    for (const char* value : {R"({"color":4294967296})", R"({"color":-2147483649})", R"({"color":1.5})"}) {
        EXPECT_THROW(CuePointToKeyword(XMPCuePointParam(key.c_str(), value)), kelcore::missing_key_exception) << value;
    }
}

}  // namespace
