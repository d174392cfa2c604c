// Where collected records land: the range and its edges, unspecified times,
// and a chain of a reversed and a scaled ingredient worked out by hand.

#include <gtest/gtest.h>

#include "collector_test_support.hpp"

namespace {

using namespace collector_test;
using Lines = std::vector<std::string>;

constexpr unsigned char kMarkersOnly = XMPTemporalMetadataCollector::kCollectDocumentMarkers;

TEST(CollectorRange, MarkersOfTheDocumentAgainstTheRange) {
    const SXMPMeta meta = Document("doc", {{"before", 0, 2 * S},
                                           {"straddlesStart", 9 * S, 2 * S},
                                           {"zeroLength", 12 * S, 0},
                                           {"inside", 13 * S, S},
                                           {"straddlesEnd", 19 * S, 3 * S},
                                           {"atEnd", 20 * S, 0},
                                           {"after", 25 * S, S}});
    const struct {
        const char* m_what;
        std::int64_t m_start;
        std::int64_t m_duration;
        Lines m_expected;
    } cases[] = {
        {"[10, 20)",
         10 * S,
         10 * S,
         {"straddlesStart 9 2 | 10 1 | doc linear", "zeroLength 12 0 | 12 0 | doc linear",
          "inside 13 1 | 13 1 | doc linear", "straddlesEnd 19 3 | 19 1 | doc linear"}},
        {"counted back from 20",
         20 * S,
         -10 * S,
         {"straddlesStart 9 2 | 10 1 | doc linear", "zeroLength 12 0 | 12 0 | doc linear",
          "inside 13 1 | 13 1 | doc linear", "straddlesEnd 19 3 | 19 1 | doc linear"}},
        {"no end",
         10 * S,
         kUnspecified,
         {"straddlesStart 9 2 | 10 1 | doc linear", "zeroLength 12 0 | 12 0 | doc linear",
          "inside 13 1 | 13 1 | doc linear", "straddlesEnd 19 3 | 19 3 | doc linear", "atEnd 20 0 | 20 0 | doc linear",
          "after 25 1 | 25 1 | doc linear"}},
        {"a marker's own start and end", 12 * S, S, {"zeroLength 12 0 | 12 0 | doc linear"}},
        {"empty", 12 * S, 0, {}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Collect(meta, c.m_start, c.m_duration, kMarkersOnly), c.m_expected) << c.m_what;
    }
}

TEST(CollectorRange, BaseDocumentRecordCoversTheRangeAtUnitRates) {
    const SXMPMeta meta = Document("doc", {});
    XMPTemporalMetadataCollector collector(meta, 10 * S, 5 * S);
    ASSERT_EQ(collector.GetXMPTemporalMetadataInfoCollection().size(), 1u);
    const XMPTemporalMetadataInfo& base = collector.GetXMPTemporalMetadataInfoCollection().begin()->second;
    EXPECT_EQ(Line(base), "Base Document 10 5 | 10 5 | doc linear");
    EXPECT_EQ(Field(base, XMPTemporalMetadataInfo::kInfoField_ComponentMetadataInstanceId), "xmp.iid:doc");
    EXPECT_EQ(base.GetStartTimeFrameRateNumerator() * base.GetDurationFrameRateDenominator(), 1);
    EXPECT_EQ(Collect(meta, 10 * S, kUnspecified, XMPTemporalMetadataCollector::kCollectBaseDocument),
              Lines{"Base Document 10 max | 10 max | doc linear"});
}

TEST(CollectorRange, MarkerKeepsItsTextsAndCuePoints) {
    SXMPMeta meta;
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    XMPTrack track("Notes", "Comment", 25, 1);
    track.AddMarker(
        XMPTemporalMetadataInfo("m", "a comment", S, S, "Chapter", "loc", "tgt", "Event",
                                {XMPCuePointParam("keywordExtKELv1_k", "not json"), XMPCuePointParam("scene", "2")},
                                "Ann", "0.5", "first", nullptr));
    doc.AddTrack("Notes", track);
    doc.PrepareForSave("");

    XMPTemporalMetadataCollector collector(kMarkersOnly, meta, 0, kUnspecified);
    ASSERT_EQ(collector.GetXMPTemporalMetadataInfoCollection().size(), 1u);
    const XMPTemporalMetadataInfo& marker = collector.GetXMPTemporalMetadataInfoCollection().begin()->second;
    using I = XMPTemporalMetadataInfo;
    EXPECT_EQ(marker.GetInfoForm(), I::kInfoForm_MarkerReportback);
    const std::pair<I::_infoFieldEnum, const char*> fields[] = {
        {I::kInfoField_MarkerID, "first"},          {I::kInfoField_Comment, "a comment"},
        {I::kInfoField_MarkerType, "Chapter"},      {I::kInfoField_Speaker, "Ann"},
        {I::kInfoField_ReportedTrackName, "Notes"}, {I::kInfoField_ReportedTrackType, "Comment"}};
    for (const auto& [field, text] : fields) {
        EXPECT_EQ(Field(marker, field), text) << field;
    }
    // Cue points pass through as they are, keyword ones included; the ID does not.
    ASSERT_EQ(marker.GetCuePointParamList().size(), 2u);
    EXPECT_EQ(*marker.GetCuePointParamList()[0].GetKeyPtr(), "keywordExtKELv1_k");
    EXPECT_TRUE(marker.GetKeywords().empty());
}

// leaf:   a at 2 for 1, b at 7 (no length)
// mid:    own marker c at 25 for 2; uses leaf [0, 10) at [20, 40): twice as slow
// top:    own marker t at 5 for 1; uses mid [20, 40) backwards at [100, 110)
//
// mid on top: t' = 100 + (40 - t) / 2       leaf on top: t' = 110 - t
SXMPMeta Chain() {
    static const SXMPMeta leaf = Document("leaf", {{"a", 2 * S, S}, {"b", 7 * S, 0}});
    static SXMPMeta mid = [] {
        SXMPMeta meta = Document("mid", {{"c", 25 * S, 2 * S}});
        Compose(meta, {{&leaf, 0, 10 * S, 20 * S, 20 * S}});
        return meta;
    }();
    SXMPMeta top = Document("top", {{"t", 5 * S, S}});
    Compose(top, {{&mid, 40 * S, -20 * S, 100 * S, 10 * S}});
    return top;
}

TEST(CollectorChain, ReversedAndScaledIngredientsMapOntoTheTopTimeline) {
    using C = XMPTemporalMetadataCollector;
    const struct {
        std::int64_t m_end;
        unsigned char m_mask;
        Lines m_expected;
    } cases[] = {
        {200,
         C::kDefaultCollectionMask,
         {"Base Document 0 200 | 0 200 | top linear", "t 5 1 | 5 1 | top linear",
          "ComponentMetadata 100 10 | 100 10 | mid linear-reversed", "b 103 0 | 103 0 | leaf linear-reversed",
          "c 107.5 -1 | 107.5 -1 | mid linear-reversed", "a 108 -1 | 108 -1 | leaf linear-reversed",
          "ComponentMetadata 110 -10 | 110 -10 | leaf linear-reversed"}},
        // The range end cuts through every level.
        {106,
         C::kDefaultCollectionMask,
         {"Base Document 0 106 | 0 106 | top linear", "t 5 1 | 5 1 | top linear",
          "ComponentMetadata 100 10 | 100 6 | mid linear-reversed", "b 103 0 | 103 0 | leaf linear-reversed",
          "ComponentMetadata 110 -10 | 106 -6 | leaf linear-reversed"}},
        // Reversed components can start from their far end.
        {200,
         C::kCollectComponentMetadata | C::kReversedComponentFromEnd,
         {"ComponentMetadata 100 10 | 100 10 | leaf linear-reversed",
          "ComponentMetadata 110 -10 | 110 -10 | mid linear-reversed"}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Collect(Chain(), 0, c.m_end * S, c.m_mask), c.m_expected) << "end " << c.m_end;
    }
}

// A part string without a duration takes the other side's: no scaling.
TEST(CollectorChain, UseWithoutDurationsMapsOneToOne) {
    const SXMPMeta leaf = Document("leaf", {{"a", 2 * S, S}, {"late", 500 * S, S}});
    SXMPMeta top = Document("top", {});
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&top, "");
    doc.AddIngredientXMP(leaf, "time:0", "time:100d10", "", "", "", "", "", "", "", "");
    doc.AddIngredientXMP(leaf, "time:400", "time:200", "", "", "", "", "", "", "", "");
    SaveAs(doc, top, "top");
    EXPECT_EQ(Collect(top, 0, kUnspecified, XMPTemporalMetadataCollector::kCollectIngredientMarkers),
              (Lines{"a 102 1 | 102 1 | leaf linear", "late 300 1 | 300 1 | leaf linear"}));
}

}  // namespace
