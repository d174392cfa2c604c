#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <keltemporalxmp/records.hpp>
#include <xmptoolkit/XMP_Error.hpp>

namespace {

using keltemporalxmp::XMPCuePointParam;
using keltemporalxmp::XMPTemporalMetadataInfo;
using Info = XMPTemporalMetadataInfo;

constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();

Info MakeMarker(std::int64_t start, std::int64_t duration, const char* markerID = "id-1",
                std::shared_ptr<void> extension = nullptr) {
    const std::vector<XMPCuePointParam> params{{"k1", "v1"}, {"k2", "v2"}};
    return Info("name", "comment", start, duration, "Chapter", "loc", "target", "cue", params, "speaker", "0.5",
                markerID, std::move(extension));
}

TEST(MarkerRecord, NegativeDurationIsStoredForwardsWithANote) {
    const Info marker = MakeMarker(1000, -400);
    EXPECT_EQ(marker.GetStartTime(), 600);
    EXPECT_EQ(marker.GetDuration(), 400);
    EXPECT_EQ(*marker.GetMarkerFieldPtr(Info::kInfoField_ReportedPartMapping), "(debug:reversed)");

    for (const std::int64_t duration : {std::int64_t{0}, kMax}) {
        const Info forwards = MakeMarker(1000, duration);
        EXPECT_EQ(forwards.GetStartTime(), 1000);
        EXPECT_EQ(forwards.GetDuration(), duration);
        EXPECT_EQ(*forwards.GetMarkerFieldPtr(Info::kInfoField_ReportedPartMapping), "");
    }
}

TEST(MarkerRecord, ConstructorsSetFormAndRates) {
    const Info plain = MakeMarker(5, 10);
    EXPECT_EQ(plain.GetInfoForm(), Info::kInfoForm_Marker);
    EXPECT_EQ(plain.GetStartTimeFrameRateNumerator(), 0);
    EXPECT_EQ(*plain.GetCuePointParamList()[1].GetValuePtr(), "v2");

    const Info withRates("n", "c", 5, 25, 1, -10, 30000, 1001, "t", "l", "g", "cp", {}, "s", "p", nullptr, nullptr);
    EXPECT_EQ(withRates.GetStartTime(), -5);
    EXPECT_EQ(withRates.GetStartTimeFrameRateNumerator(), 25);
    EXPECT_EQ(withRates.GetDurationFrameRateNumerator(), 30000);  // reversal leaves rates alone
    EXPECT_EQ(withRates.GetDurationFrameRateDenominator(), 1001);

    const Info reportBack("ComponentMetadata", "xmp.iid:1", 10, 1, 1, -20, 1, 1, 3, 4, "linear-reversed",
                          "xmp.iid:2", nullptr);
    EXPECT_EQ(reportBack.GetInfoForm(), Info::kInfoForm_ComponentMetadataReportback);
    EXPECT_EQ(reportBack.GetDuration(), -20);  // no reversal here
    EXPECT_EQ(reportBack.GetReportedClippedStartTime(), 3);
    EXPECT_EQ(reportBack.GetReportedClippedDuration(), 4);
    EXPECT_EQ(*reportBack.GetMarkerFieldPtr(Info::kInfoField_ReportedContainingInstanceID), "xmp.iid:1");
    EXPECT_EQ(*reportBack.GetMarkerFieldPtr(Info::kInfoField_ComponentMetadataInstanceId), "xmp.iid:2");
    EXPECT_EQ(*reportBack.GetMarkerFieldPtr(Info::kInfoField_ReportedPartMapping), "linear-reversed");
}

TEST(MarkerRecord, FieldSelectorsFollowTheirFixedNumbering) {
    const Info marker = MakeMarker(0, 1);
    const struct {
        int field;
        const char* value;
    } cases[] = {{1, "name"},  {2, "comment"}, {3, ""},       {4, ""},      {5, ""},   {6, ""}, {7, "Chapter"},
                 {8, "loc"},   {9, "target"},  {10, "cue"},   {11, "speaker"}, {12, "0.5"}, {13, ""}, {14, "id-1"}};
    for (const auto& c : cases) {
        const auto field = static_cast<Info::_infoFieldEnum>(c.field);
        std::string value = "previous";
        marker.GetMarkerField(&value, field);
        EXPECT_EQ(value, c.value) << c.field;
        EXPECT_EQ(*marker.GetMarkerFieldPtr(field), c.value) << c.field;
    }
    for (const int outside : {0, 15, -1}) {
        std::string value = "previous";
        marker.GetMarkerField(&value, static_cast<Info::_infoFieldEnum>(outside));
        EXPECT_EQ(value, "");
        EXPECT_EQ(marker.GetMarkerFieldPtr(static_cast<Info::_infoFieldEnum>(outside)), nullptr);
    }
}

TEST(MarkerRecord, NullOrEmptyMarkerIDLeavesItEmpty) {
    EXPECT_EQ(*MakeMarker(0, 1, nullptr).GetMarkerFieldPtr(Info::kInfoField_MarkerID), "");
    EXPECT_EQ(*MakeMarker(0, 1, "").GetMarkerFieldPtr(Info::kInfoField_MarkerID), "");
}

TEST(MarkerRecord, CopiesShareTheExtension) {
    const auto extension = std::make_shared<int>(7);
    const Info original = MakeMarker(0, 1, "id", extension);
    EXPECT_EQ(extension.use_count(), 2);
    Info copy = original;
    EXPECT_EQ(copy.GetExtension(), original.GetExtension());
    EXPECT_EQ(extension.use_count(), 3);
    copy = MakeMarker(0, 1);
    EXPECT_EQ(extension.use_count(), 2);
    EXPECT_EQ(*copy.GetMarkerFieldPtr(Info::kInfoField_Name), "name");
}

TEST(MarkerRecord, NullRequiredTextIsABadParameter) {
    EXPECT_THROW(Info("n", nullptr, 0, 1, "t", "l", "g", "c", {}, "s", "p", nullptr, nullptr), XMP_Error);
    EXPECT_THROW(XMPCuePointParam(nullptr, "v"), XMP_Error);
}

}  // namespace
