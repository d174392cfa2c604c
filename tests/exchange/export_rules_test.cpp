// Markers a format cannot hold, and chapters that break the video
// platform's rules, are refused by name.

#include <gtest/gtest.h>

#include "exchange/exchange_test_support.hpp"

namespace keltemporalxmp::exchange {
namespace {

using testing::MakeMarker;

std::int64_t S(std::int64_t seconds) {
    return seconds * kTicksPerSecond;
}

std::string ExportError(const std::vector<ExchangeMarker>& markers, Format format, bool force = false) {
    ExportOptions options;
    options.force = force;
    try {
        ExportMarkers(markers, format, options);
    } catch (const exchange::ExportError& error) {
        return error.GetErrMsg();
    }
    return "";
}

TEST(YouTubeRules, EachRuleIsNamedWithTheMarkerThatBreaksIt) {
    const struct {
        std::vector<ExchangeMarker> markers;
        const char* message;
    } kBroken[] = {
        {{MakeMarker("a", 0, 0), MakeMarker("b", S(20), 0)},
         "youtube: breaks the rule that there are at least three chapters (there are 2)"},
        {{MakeMarker("a", S(1), 0), MakeMarker("b", S(20), 0), MakeMarker("c", S(40), 0)},
         "youtube: marker 1 \"a\": breaks the rule that the first chapter starts at 0:00"},
        {{MakeMarker("a", 0, 0), MakeMarker("b", S(20), 0), MakeMarker("c", S(25), 0)},
         "youtube: marker 2 \"b\": breaks the rule that each chapter is at least 10 s long"},
        {{MakeMarker("a", 0, 0), MakeMarker("b", S(20), 0), MakeMarker("c", S(20) + 1, 0)},
         "youtube: marker 3 \"c\": breaks the rule that chapters start at ascending times"},
        {{MakeMarker("a", 0, 0), MakeMarker("b", S(20), 0), MakeMarker("c", S(40), S(9))},
         "youtube: marker 3 \"c\": breaks the rule that each chapter is at least 10 s long"},
    };
    for (const auto& broken : kBroken) {
        EXPECT_EQ(ExportError(broken.markers, Format::kYouTube), broken.message);
        EXPECT_EQ(ExportError(broken.markers, Format::kYouTube, true), "");
    }
}

TEST(YouTubeRules, StartsRoundDown) {
    const std::vector<ExchangeMarker> markers = {MakeMarker("a", S(1) - 1, 0), MakeMarker("b", S(3599) + S(1) - 1, 0),
                                                 MakeMarker("c", S(3600), 0)};
    ExportOptions options;
    options.force = true;
    EXPECT_EQ(ExportMarkers(markers, Format::kYouTube, options), "0:00 a\n59:59 b\n1:00:00 c\n");
}

TEST(UnholdableMarkers, AreRefusedByFormatAndName) {
    const struct {
        ExchangeMarker marker;
        const char* reason;
    } kUnholdable[] = {
        {MakeMarker("early", -1, 0), "its start is before zero"},
        {MakeMarker("open", kTimeUnspecified, 0), "it has no start time"},
        {MakeMarker("reversed", S(5), -S(1)), "its duration is negative"},
        {MakeMarker("endless", INT64_MAX - 5, 10), "its end is past the largest time"},
    };
    for (const Format format : {Format::kYouTube, Format::kFFMetadata, Format::kWebVTT, Format::kSRT, Format::kEDL,
                                Format::kCSV, Format::kTSV, Format::kAudacity}) {
        for (const auto& unholdable : kUnholdable) {
            EXPECT_EQ(ExportError({MakeMarker("fine", 0, 0), unholdable.marker}, format, true),
                      std::string(FormatName(format)) + ": marker 2 \"" + unholdable.marker.name +
                          "\": " + unholdable.reason);
        }
    }
}

TEST(FFMetadataTimebase, IsExactOffTheFrame) {
    const struct {
        std::int64_t start;
        Rate rate;
        const char* timebase;
        const char* startLine;
    } kChoices[] = {
        {S(1), {30000, 1001}, "TIMEBASE=1/1\n", "START=1\n"},  // whole seconds: the coarsest exact unit
        {30030 * kTicksPerSecond / 30000, {30000, 1001}, "TIMEBASE=1001/30000\n", "START=30\n"},
        {S(1) / 1000 * 3, {25, 1}, "TIMEBASE=1/1000\n", "START=3\n"},
        {7, {25, 1}, "TIMEBASE=1/1000000000\n", "START=0\n"},  // a tick has no exact 32-bit unit
    };
    for (const auto& choice : kChoices) {
        ExchangeMarker marker = MakeMarker("m", choice.start, choice.start);
        marker.rate = choice.rate;
        const std::string text = ExportMarkers({marker}, Format::kFFMetadata);
        EXPECT_NE(text.find(choice.timebase), std::string::npos) << text;
        EXPECT_NE(text.find(choice.startLine), std::string::npos) << text;
    }
}

TEST(FFMetadataEnds, AMarkerWithoutDurationEndsAtTheNextStart) {
    const std::string text = ExportMarkers(
        {MakeMarker("b", S(10), 0), MakeMarker("a", 0, 0), MakeMarker("c", S(10), 0)}, Format::kFFMetadata);
    EXPECT_EQ(text,
              ";FFMETADATA1\n[CHAPTER]\nTIMEBASE=1/25\nSTART=0\nEND=250\ntitle=a\n"
              "[CHAPTER]\nTIMEBASE=1/25\nSTART=250\nEND=251\ntitle=b\n"
              "[CHAPTER]\nTIMEBASE=1/25\nSTART=250\nEND=251\ntitle=c\n");
}

TEST(EdlExport, CountsFromTheTimecodeStartInDropFrame) {
    ExchangeMarker marker = MakeMarker("ten", 17982LL * kTicksPerSecond * 1001 / 30000, 0);
    marker.rate = {30000, 1001};
    ExportOptions options;
    options.timecodeStart = "01:00:00;00";
    const std::string text = ExportMarkers({marker}, Format::kEDL, options);
    EXPECT_NE(text.find("FCM: DROP FRAME\n"), std::string::npos);
    EXPECT_NE(text.find("01:10:00;00 01:10:00;01 01:10:00;00 01:10:00;01"), std::string::npos) << text;
    options.timecodeStart = "01:00:00:00x";
    EXPECT_THROW(ExportMarkers({marker}, Format::kEDL, options), XMP_Error);
}

TEST(FormatNames, NamesAndExtensionsChooseTheFormat) {
    EXPECT_EQ(FormatFromName("webvtt"), Format::kWebVTT);
    EXPECT_EQ(FormatFromName("WebVTT"), std::nullopt);
    EXPECT_EQ(FormatFromPath("out/Chapters.VTT"), Format::kWebVTT);
    EXPECT_EQ(FormatFromPath("a.otio"), Format::kOTIO);
    EXPECT_EQ(FormatFromPath("a.txt"), std::nullopt);
    for (const Format format : {Format::kYouTube, Format::kEDL, Format::kAudacity, Format::kJSON}) {
        EXPECT_EQ(FormatFromName(FormatName(format)), format);
    }
}

}  // namespace
}  // namespace keltemporalxmp::exchange
