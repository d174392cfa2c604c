#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <keltemporalxmp/docops.hpp>
#include <keltemporalxmp/markers.hpp>

using keltemporalxmp::XMPDocOpsTemporal;
using keltemporalxmp::XMPTemporalMetadataInfo;
using keltemporalxmp::XMPTrack;

namespace {

using Segments = std::vector<std::pair<std::int64_t, std::int64_t>>;

constexpr std::int64_t kUnknown = std::numeric_limits<std::int64_t>::max();

struct TypedMarker {
    const char* type;
    std::int64_t start;
    std::int64_t duration;
};

SXMPMeta PacketWithTrack(const char* trackName, std::int64_t numerator, std::int64_t denominator,
                         const std::vector<TypedMarker>& markers = {}) {
    XMPTrack track("", "Comment", numerator, denominator);
    for (const TypedMarker& marker : markers) {
        track.AddMarker(XMPTemporalMetadataInfo("", "", marker.start, marker.duration, marker.type, "", "", "", {}, "",
                                                "", nullptr, nullptr));
    }
    SXMPMeta meta;
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    doc.AddTrack(trackName, track);
    doc.PrepareForSave("");
    return meta;
}

}  // namespace

TEST(SegmentationMarkers, FrameDurationOfTheMarkersTrack) {
    const struct {
        std::int64_t numerator;
        std::int64_t denominator;
        std::int64_t frameDuration;
    } cases[] = {{25, 1, 10160640000},
                 {30000, 1001, 8475667200},
                 {1, 1, 254016000000},
                 {254016000001, 1, kUnknown}};  // shorter than a tick
    for (const auto& rate : cases) {
        const SXMPMeta meta = PacketWithTrack("Markers", rate.numerator, rate.denominator);
        Segments segments;
        std::int64_t frameDuration = 0;
        KELTemporalXMPGetSegmentationMarkers(&meta, &segments, &frameDuration);
        EXPECT_EQ(frameDuration, rate.frameDuration) << rate.numerator << "/" << rate.denominator;
        EXPECT_TRUE(segments.empty());
    }
}

TEST(SegmentationMarkers, OnlySegmentationMarkersInStartOrderAreAppended) {
    constexpr std::int64_t kFrame = 10160640000;
    const SXMPMeta meta = PacketWithTrack("Markers", 25, 1,
                                          {{"Segmentation", 50 * kFrame, 5 * kFrame},
                                           {"Chapter", 20 * kFrame, 0},
                                           {"Segmentation", 10 * kFrame, 2 * kFrame},
                                           {"segmentation", 30 * kFrame, 0},
                                           {"Segmentation", 10 * kFrame, 0}});
    Segments segments = {{-1, -1}};
    std::int64_t frameDuration = 0;
    KELTemporalXMPGetSegmentationMarkers(&meta, &segments, &frameDuration);
    EXPECT_EQ(segments, (Segments{{-1, -1}, {10 * kFrame, 2 * kFrame}, {10 * kFrame, 0}, {50 * kFrame, 5 * kFrame}}));
}

TEST(SegmentationMarkers, NothingWithoutATrackNamedMarkersAndNullOutputsAreBadParameters) {
    const SXMPMeta otherName = PacketWithTrack("Markers2", 25, 1, {{"Segmentation", 0, 10}});
    for (const SXMPMeta* meta : {&otherName, static_cast<const SXMPMeta*>(nullptr)}) {
        Segments segments = {{1, 2}};
        std::int64_t frameDuration = 0;
        KELTemporalXMPGetSegmentationMarkers(meta, &segments, &frameDuration);
        EXPECT_EQ(frameDuration, kUnknown);
        EXPECT_EQ(segments, (Segments{{1, 2}}));
        EXPECT_THROW(KELTemporalXMPGetSegmentationMarkers(meta, nullptr, &frameDuration), XMP_Error);
        EXPECT_THROW(KELTemporalXMPGetSegmentationMarkers(meta, &segments, nullptr), XMP_Error);
    }
}

TEST(SegmentationMarkers, ZeroFrameRateNumeratorIsABadValue) {
    // A marker time with a rate of its own still needs the track's rate for the frame duration.
    SXMPMeta meta = PacketWithTrack("Markers", 25, 1, {{"Segmentation", 0, 0}});
    meta.SetProperty(kXMP_NS_DM, "xmpDM:Tracks[1]/xmpDM:frameRate", "f0");
    meta.SetProperty(kXMP_NS_DM, "xmpDM:Tracks[1]/xmpDM:markers[1]/xmpDM:startTime", "10f25");
    Segments segments;
    std::int64_t frameDuration = 7;
    try {
        KELTemporalXMPGetSegmentationMarkers(&meta, &segments, &frameDuration);
        FAIL() << "no error";
    } catch (const XMP_Error& error) {
        EXPECT_EQ(error.GetID(), kXMPErr_BadValue);
        EXPECT_NE(std::string(error.GetErrMsg()).find("frame rate 0/1"), std::string::npos) << error.GetErrMsg();
    }
    EXPECT_EQ(frameDuration, 7);
    EXPECT_TRUE(segments.empty());
}

TEST(SegmentationMarkers, ExportedUnderItsPlainName) {
    if (std::system("command -v nm >/dev/null 2>&1") != 0) {
        GTEST_SKIP() << "nm is not installed";
    }
    const std::string command = "nm -D --defined-only " KELTXMP_BINARY_DIR "/src/libkeltemporalxmp.so";
    FILE* symbols = popen(command.c_str(), "r");
    ASSERT_NE(symbols, nullptr);
    bool found = false;
    char line[1024];
    while (fgets(line, sizeof line, symbols) != nullptr) {
        found = found || std::string(line).ends_with(" T KELTemporalXMPGetSegmentationMarkers\n");
    }
    EXPECT_EQ(pclose(symbols), 0) << command;
    EXPECT_TRUE(found);
}
