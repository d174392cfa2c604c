#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <keltemporalxmp/records.hpp>
#include <xmptoolkit/XMP_Error.hpp>

namespace {

using keltemporalxmp::XMPCuePointParam;
using Info = keltemporalxmp::XMPTemporalMetadataInfo;

constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();

Info MakeMarker(std::int64_t start, std::int64_t duration, const char* markerID = "id-1") {
    return Info("name", "comment", start, duration, "Chapter", "loc", "target", "cue", {{"k1", "v1"}}, "speaker", "0.5",
                markerID, nullptr);
}

TEST(MarkerRecord, NegativeDurationIsStoredForwardsWithANote) {
    const Info marker = MakeMarker(1000, -400);
    EXPECT_EQ(marker.GetStartTime(), 600);
    EXPECT_EQ(marker.GetDuration(), 400);
    EXPECT_EQ(*marker.GetMarkerFieldPtr(Info::kInfoField_ReportedPartMapping), "(debug:reversed)");
    for (const std::int64_t duration : {std::int64_t{0}, kMax}) {
        const Info forwards = MakeMarker(1000, duration);
        EXPECT_EQ(forwards.GetStartTime(), 1000);
        EXPECT_EQ(*forwards.GetMarkerFieldPtr(Info::kInfoField_ReportedPartMapping), "");
    }
    // With rates, the rates stay where they were; a report-back record is never reversed.
    const Info withRates("n", "c", 5, 25, 1, -10, 30000, 1001, "t", "l", "g", "cp", {}, "s", "p", nullptr, nullptr);
    EXPECT_EQ(withRates.GetStartTime(), -5);
    EXPECT_EQ(withRates.GetStartTimeFrameRateNumerator(), 25);
    EXPECT_EQ(withRates.GetDurationFrameRateNumerator(), 30000);
    const Info reportBack("ComponentMetadata", "xmp.iid:1", 10, 1, 1, -20, 1, 1, 3, 4, "linear-reversed", "xmp.iid:2",
                          nullptr);
    EXPECT_EQ(reportBack.GetInfoForm(), Info::kInfoForm_ComponentMetadataReportback);
    EXPECT_EQ(reportBack.GetDuration(), -20);
}

TEST(MarkerRecord, FieldSelectorsFollowTheirFixedNumbering) {
    const Info marker = MakeMarker(0, 1);
    const char* const values[] = {"name", "comment", "",    "",        "",    "", "Chapter",
                                  "loc",  "target",  "cue", "speaker", "0.5", "", "id-1"};
    for (int field = 1; field <= 14; ++field) {
        std::string value = "previous";
        marker.GetMarkerField(&value, static_cast<Info::_infoFieldEnum>(field));
        EXPECT_EQ(value, values[field - 1]) << field;
    }
    for (const int outside : {0, 15, -1}) {
        std::string value = "previous";
        marker.GetMarkerField(&value, static_cast<Info::_infoFieldEnum>(outside));
        EXPECT_EQ(value, "");
        EXPECT_EQ(marker.GetMarkerFieldPtr(static_cast<Info::_infoFieldEnum>(outside)), nullptr);
    }
    EXPECT_EQ(*MakeMarker(0, 1, nullptr).GetMarkerFieldPtr(Info::kInfoField_MarkerID), "");
}

TEST(MarkerRecord, NullRequiredTextIsABadParameter) {
    EXPECT_THROW(Info("n", nullptr, 0, 1, "t", "l", "g", "c", {}, "s", "p", nullptr, nullptr), XMP_Error);
    EXPECT_THROW(XMPCuePointParam(nullptr, "v"), XMP_Error);
}

}  // namespace
