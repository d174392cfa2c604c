// What each format writes for the same three markers, byte for byte.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "exchange/exchange_test_support.hpp"

namespace keltemporalxmp::exchange {
namespace {

using testing::SampleMarkers;

struct ExportCase {
    Format format;
    const char* expected;
};

const ExportCase kExports[] = {
    {Format::kYouTube,
     "0:00 Intro\n"
     "0:12 Q&A <live>, \"quoted\"\n"
     "1:02:03 Caf\xC3\xA9 = ; # \\ end\n"},
    {Format::kFFMetadata,
     ";FFMETADATA1\n"
     "[CHAPTER]\nTIMEBASE=1/25\nSTART=0\nEND=250\ntitle=Intro\n"
     "[CHAPTER]\nTIMEBASE=1/25\nSTART=300\nEND=800\ntitle=Q&A <live>, \"quoted\"\n"
     "[CHAPTER]\nTIMEBASE=1/25\nSTART=93080\nEND=93081\ntitle=Caf\xC3\xA9 \\= \\; \\# \\\\ end\n"},
    {Format::kWebVTT,
     "WEBVTT\n\n"
     "00:00:00.000 --> 00:00:10.000\nIntro\n\n"
     "00:00:12.000 --> 00:00:32.000\nQ&amp;A &lt;live&gt;, \"quoted\"\nwith a comment\n\n"
     "01:02:03.200 --> 01:02:03.240\nCaf\xC3\xA9 = ; # \\ end\n\n"},
    {Format::kSRT,
     "1\n00:00:00,000 --> 00:00:10,000\nIntro\n\n"
     "2\n00:00:12,000 --> 00:00:32,000\nQ&A <live>, \"quoted\"\nwith a comment\n\n"
     "3\n01:02:03,200 --> 01:02:03,240\nCaf\xC3\xA9 = ; # \\ end\n\n"},
    {Format::kEDL,
     "TITLE: Markers\nFCM: NON-DROP FRAME\n\n"
     "001  001      V     C        00:00:00:00 00:00:00:01 00:00:00:00 00:00:00:01\n"
     " |C:ResolveColorBlue |M:Intro |D:250\n\n"
     "002  001      V     C        00:00:12:00 00:00:12:01 00:00:12:00 00:00:12:01\n"
     " |C:ResolveColorBlue |M:Q&A <live>, \"quoted\" |D:500\n\n"
     "003  001      V     C        01:02:03:05 01:02:03:06 01:02:03:05 01:02:03:06\n"
     " |C:ResolveColorBlue |M:Caf\xC3\xA9 = ; # \\ end |D:0\n\n"},
    {Format::kCSV,
     "Marker Name,Description,In,Out,Duration,Marker Type\r\n"
     "Intro,,00:00:00:00,00:00:10:00,00:00:10:00,Chapter\r\n"
     "\"Q&A <live>, \"\"quoted\"\"\",with a comment,00:00:12:00,00:00:32:00,00:00:20:00,Chapter\r\n"
     "Caf\xC3\xA9 = ; # \\ end,,01:02:03:05,01:02:03:05,00:00:00:00,Chapter\r\n"},
    {Format::kTSV,
     "Marker Name\tDescription\tIn\tOut\tDuration\tMarker Type\r\n"
     "Intro\t\t00:00:00:00\t00:00:10:00\t00:00:10:00\tChapter\r\n"
     "\"Q&A <live>, \"\"quoted\"\"\"\twith a comment\t00:00:12:00\t00:00:32:00\t00:00:20:00\tChapter\r\n"
     "Caf\xC3\xA9 = ; # \\ end\t\t01:02:03:05\t01:02:03:05\t00:00:00:00\tChapter\r\n"},
    {Format::kAudacity,
     "0.000000\t10.000000\tIntro\n"
     "12.000000\t32.000000\tQ&A <live>, \"quoted\"\n"
     "3723.200000\t3723.200000\tCaf\xC3\xA9 = ; # \\ end\n"},
};

class ExportFormat : public ::testing::TestWithParam<ExportCase> {};

TEST_P(ExportFormat, WritesTheFormatsText) {
    ExportOptions options;
    options.force = true;  // two chapters of the sample are shorter than the platform wants
    EXPECT_EQ(ExportMarkers(SampleMarkers(), GetParam().format, options), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Formats, ExportFormat, ::testing::ValuesIn(kExports),
                         [](const auto& test) { return std::string(FormatName(test.param.format)); });

}  // namespace
}  // namespace keltemporalxmp::exchange

namespace keltemporalxmp::exchange {
namespace {

// The interchange timeline's published schema names and members.
TEST(OtioExport, UsesThePublishedSchema) {
    const auto timeline = nlohmann::json::parse(ExportMarkers({testing::SampleMarkers()[1]}, Format::kOTIO));
    EXPECT_EQ(timeline["OTIO_SCHEMA"], "Timeline.1");
    EXPECT_TRUE(timeline["global_start_time"].is_null());
    const auto& stack = timeline["tracks"];
    EXPECT_EQ(stack["OTIO_SCHEMA"], "Stack.1");
    EXPECT_TRUE(stack["children"].is_array());
    const auto& marker = stack["markers"].at(0);
    EXPECT_EQ(marker["OTIO_SCHEMA"], "Marker.2");
    EXPECT_EQ(marker["name"], "Q&A <live>, \"quoted\"");
    EXPECT_EQ(marker["comment"], "with a comment");
    EXPECT_EQ(marker["color"], "GREEN");
    const auto& range = marker["marked_range"];
    EXPECT_EQ(range["OTIO_SCHEMA"], "TimeRange.1");
    EXPECT_EQ(range["start_time"],
              nlohmann::json::parse(R"({"OTIO_SCHEMA": "RationalTime.1", "rate": 25.0, "value": 300.0})"));
    EXPECT_EQ(range["duration"]["value"], 500.0);
    const auto& own = marker["metadata"]["keltemporalxmp"];
    EXPECT_EQ(own["type"], "Chapter");
    EXPECT_EQ(own["rate"], nlohmann::json::parse(R"({"numerator": 25, "denominator": 1})"));
}

}  // namespace
}  // namespace keltemporalxmp::exchange
