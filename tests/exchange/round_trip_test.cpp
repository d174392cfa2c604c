// Export then import gives back what each format carries: names always,
// comments and types where the format has a place for them, times to the
// format's precision.

#include <gtest/gtest.h>

#include "exchange/exchange_test_support.hpp"

namespace keltemporalxmp::exchange {
namespace {

using testing::kFrame25;
using testing::MakeMarker;

struct RoundTripCase {
    Format format;
    bool comments;
    bool types;
    bool durations;
    std::int64_t precision;  // ticks a time may move by
};

const RoundTripCase kRoundTrips[] = {
    {Format::kYouTube, false, false, false, kTicksPerSecond - 1},
    {Format::kFFMetadata, false, false, true, 0},
    {Format::kWebVTT, true, false, true, kTicksPerSecond / 2000},
    {Format::kSRT, true, false, true, kTicksPerSecond / 2000},
    {Format::kEDL, false, false, true, 0},
    {Format::kCSV, true, true, true, 0},
    {Format::kTSV, true, true, true, 0},
    {Format::kAudacity, false, false, true, kTicksPerSecond / 2000000},
    {Format::kOTIO, true, true, true, 0},
    {Format::kJSON, true, true, true, 0},
};

// At least 10 s apart, each at least a frame long: every format can hold them.
std::vector<ExchangeMarker> TimelineMarkers() {
    return {MakeMarker("Opening", 0, 250 * kFrame25, "first line", "Speech"),
            MakeMarker("Caf\xC3\xA9 & <b>, \"q\"; #1 = \\", 11 * kTicksPerSecond + 7 * kFrame25, 12 * kFrame25,
                       "a \"comment\", with commas", "Speech"),
            MakeMarker("Late", 3 * 3600 * kTicksPerSecond + 24 * kFrame25, 30 * kTicksPerSecond, "", "Speech")};
}

class RoundTrip : public ::testing::TestWithParam<RoundTripCase> {};

TEST_P(RoundTrip, GivesBackWhatTheFormatCarries) {
    const RoundTripCase& format = GetParam();
    const std::vector<ExchangeMarker> markers = TimelineMarkers();
    ImportOptions options;
    options.rate = testing::kRate25;
    const std::vector<ExchangeMarker> back =
        ImportMarkers(ExportMarkers(markers, format.format), format.format, options);
    ASSERT_EQ(back.size(), markers.size());
    for (std::size_t i = 0; i < markers.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(back[i].name, markers[i].name);
        EXPECT_EQ(back[i].comment, format.comments ? markers[i].comment : "");
        EXPECT_EQ(back[i].type, format.types ? markers[i].type : DefaultMarkerType(format.format));
        EXPECT_NEAR(back[i].start, markers[i].start, format.precision);
        if (format.durations) {
            EXPECT_NEAR(back[i].duration, markers[i].duration, format.precision);
        }
        EXPECT_EQ(back[i].rate, testing::kRate25);
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, RoundTrip, ::testing::ValuesIn(kRoundTrips),
                         [](const auto& test) { return std::string(FormatName(test.param.format)); });

// Everything, off-frame times and unspecified ones included.
TEST(RoundTripWhole, OtioAndJsonLoseNothing) {
    ExchangeMarker marker = MakeMarker("Cue", 1234567, kTimeUnspecified, "c", "Cue");
    marker.id = "4d76d99a-f555-46d2-94ea-ad09a40b23d2";
    marker.rate = {30000, 1001};
    marker.cuePoints = {{"keywordExtKELv1_a", "{\"b\":1}"}, {"empty", ""}};
    ExchangeMarker odd = MakeMarker("Negative", -5 * kFrame25, -kFrame25);
    odd.rate = {25, 0};  // unusable, yet given back as it was
    const std::vector<ExchangeMarker> markers = {marker, odd};
    for (const Format format : {Format::kOTIO, Format::kJSON}) {
        SCOPED_TRACE(FormatName(format));
        EXPECT_EQ(ImportMarkers(ExportMarkers(markers, format), format), markers);
    }
}

// A cue's text ends at its first empty line.
// A rate of 0/0 is no rate, which an export leaves out: read, it takes the
// import's rate, as it does when read back after an export.
TEST(RoundTripWhole, AZeroOverZeroRateReadsAsNoRate) {
    const std::string zeroRate = R"({"markers": [{"start": {"ticks": 0}, "rate": {"numerator": -0, "denominator": 0}}]})";
    const std::string otio = ExportMarkers(ImportMarkers(zeroRate, Format::kJSON, {}), Format::kOTIO, {});
    ImportOptions options;
    options.rate = testing::kRate25;
    for (const auto& [text, format] : {std::pair{zeroRate, Format::kJSON}, std::pair{otio, Format::kOTIO}}) {
        SCOPED_TRACE(FormatName(format));
        const std::vector<ExchangeMarker> read = ImportMarkers(text, format, options);
        ASSERT_EQ(read.size(), 1u);
        EXPECT_EQ(read[0].rate, testing::kRate25);
        EXPECT_EQ(ImportMarkers(ExportMarkers(read, format, {}), format, options), read);
    }
}

TEST(RoundTripWhole, SubtitlesWithoutANameKeepTheirComment) {
    for (const Format format : {Format::kWebVTT, Format::kSRT}) {
        const std::vector<ExchangeMarker> back = ImportMarkers(
            ExportMarkers({MakeMarker("", 0, kFrame25, "only a comment"), MakeMarker("", kFrame25, kFrame25)}, format),
            format);
        ASSERT_EQ(back.size(), 2u) << FormatName(format);
        EXPECT_EQ(back[0].name, "only a comment");
        EXPECT_EQ(back[1].name, "");
    }
}

// A timeline edited elsewhere: the moved time wins over the kept ticks.
TEST(RoundTripWhole, OtioTakesAMovedTimeOverItsKeptTicks) {
    std::string text = ExportMarkers({MakeMarker("Moved", 0, kFrame25)}, Format::kOTIO);
    const std::string from = "\"value\": 0.0";
    text.replace(text.rfind(from), from.size(), "\"value\": 50.0");
    EXPECT_EQ(ImportMarkers(text, Format::kOTIO).at(0).start, 2 * kTicksPerSecond);
}

// Frame-based formats at drop-frame rates stay exact to the frame.
TEST(RoundTripWhole, DropFrameTimecodeIsExactToTheFrame) {
    for (const Rate rate : {Rate{30000, 1001}, Rate{60000, 1001}}) {
        for (const Format format : {Format::kEDL, Format::kCSV}) {
            SCOPED_TRACE(std::string(FormatName(format)) + " " + std::to_string(rate.numerator));
            std::vector<ExchangeMarker> markers;
            const std::int64_t frame = kTicksPerSecond * rate.denominator / rate.numerator;
            for (const std::int64_t frames : {0, 1799, 1800, 17981, 17982, 17983, 107892, 3600 * 60}) {
                markers.push_back(MakeMarker("m", frames * frame, 3 * frame));
                markers.back().rate = rate;
            }
            // At 29.97 the text itself says it is drop-frame; 59.94 must be named.
            ImportOptions options;
            options.rate = rate.numerator == 30000 ? Rate{} : rate;
            const std::vector<ExchangeMarker> back = ImportMarkers(ExportMarkers(markers, format), format, options);
            ASSERT_EQ(back.size(), markers.size());
            for (std::size_t i = 0; i < markers.size(); ++i) {
                EXPECT_EQ(back[i].start, markers[i].start) << i;
                EXPECT_EQ(back[i].duration, markers[i].duration) << i;
            }
        }
    }
}

}  // namespace
}  // namespace keltemporalxmp::exchange
