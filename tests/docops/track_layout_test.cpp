#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "docops_test_support.hpp"

namespace {

using namespace docops_test;
using Nodes = std::vector<std::string>;

TEST(TrackLayout, EveryFieldInOrderWithTheTypeOfTheTrackLeftOut) {
    XMPTrack track("Chapters", "Chapter", 25, 1);
    track.AddMarker(XMPTemporalMetadataInfo("Intro", "first words", 2 * kSecond, kSecond, "Chapter", "here", "there",
                                            "Event", {XMPCuePointParam("k", "v")}, "Ann", "0.5", "id-1", nullptr));
    track.AddMarker(
        XMPTemporalMetadataInfo("Aside", "", 3 * kSecond, 0, "Note", "", "", "", {}, "", "", nullptr, nullptr));
    SXMPMeta meta;
    WriteTracks(meta, {track});
    EXPECT_EQ(TrackNodes(meta), (Nodes{
                                    "xmpDM:Tracks [bag]",
                                    "xmpDM:Tracks[1] {}",
                                    "xmpDM:Tracks[1]/xmpDM:trackName=Chapters",
                                    "xmpDM:Tracks[1]/xmpDM:trackType=Chapter",
                                    "xmpDM:Tracks[1]/xmpDM:frameRate=f25",
                                    "xmpDM:Tracks[1]/xmpDM:markers [seq]",
                                    "xmpDM:Tracks[1]/xmpDM:markers[1] {}",
                                    "xmpDM:Tracks[1]/xmpDM:markers[1]/xmpDM:startTime=50",
                                    "xmpDM:Tracks[1]/xmpDM:markers[1]/xmpDM:duration=25",
                                    "xmpDM:Tracks[1]/xmpDM:markers[1]/xmpDM:comment=first words",
                                    "xmpDM:Tracks[1]/xmpDM:markers[1]/xmpDM:name=Intro",
                                    "xmpDM:Tracks[1]/xmpDM:markers[1]/xmpDM:location=here",
                                    "xmpDM:Tracks[1]/xmpDM:markers[1]/xmpDM:target=there",
                                    "xmpDM:Tracks[1]/xmpDM:markers[1]/xmpDM:cuePointType=Event",
                                    "xmpDM:Tracks[1]/xmpDM:markers[1]/xmpDM:speaker=Ann",
                                    "xmpDM:Tracks[1]/xmpDM:markers[1]/xmpDM:probability=0.5",
                                    "xmpDM:Tracks[1]/xmpDM:markers[1]/xmpDM:cuePointParams [seq]",
                                    "xmpDM:Tracks[1]/xmpDM:markers[1]/xmpDM:cuePointParams[1] {}",
                                    "xmpDM:Tracks[1]/xmpDM:markers[1]/xmpDM:cuePointParams[1]/xmpDM:key=k",
                                    "xmpDM:Tracks[1]/xmpDM:markers[1]/xmpDM:cuePointParams[1]/xmpDM:value=v",
                                    "xmpDM:Tracks[1]/xmpDM:markers[1]/xmpDM:cuePointParams[2] {}",
                                    "xmpDM:Tracks[1]/xmpDM:markers[1]/xmpDM:cuePointParams[2]/xmpDM:key=marker_guid",
                                    "xmpDM:Tracks[1]/xmpDM:markers[1]/xmpDM:cuePointParams[2]/xmpDM:value=id-1",
                                    "xmpDM:Tracks[1]/xmpDM:markers[2] {}",
                                    "xmpDM:Tracks[1]/xmpDM:markers[2]/xmpDM:startTime=75",
                                    "xmpDM:Tracks[1]/xmpDM:markers[2]/xmpDM:name=Aside",
                                    "xmpDM:Tracks[1]/xmpDM:markers[2]/xmpDM:type=Note",
                                }));
}

TEST(TrackLayout, TracksWithoutNameTypeOrMarkers) {
    XMPTrack unnamed(30000, 1001);
    unnamed.AddMarker(Marker("m", 0));
    SXMPMeta meta;
    WriteTracks(meta, {unnamed, XMPTrack("Empty", "Kind", 24, 1)});
    EXPECT_EQ(TrackNodes(meta), (Nodes{
                                    "xmpDM:Tracks [bag]",
                                    "xmpDM:Tracks[1] {}",
                                    "xmpDM:Tracks[1]/xmpDM:frameRate=f30000s1001",
                                    "xmpDM:Tracks[1]/xmpDM:markers [seq]",
                                    "xmpDM:Tracks[1]/xmpDM:markers[1] {}",
                                    "xmpDM:Tracks[1]/xmpDM:markers[1]/xmpDM:startTime=0",
                                    "xmpDM:Tracks[1]/xmpDM:markers[1]/xmpDM:name=m",
                                    "xmpDM:Tracks[2] {}",
                                    "xmpDM:Tracks[2]/xmpDM:trackName=Empty",
                                    "xmpDM:Tracks[2]/xmpDM:trackType=Kind",
                                    "xmpDM:Tracks[2]/xmpDM:frameRate=f24",
                                }));
}

// Times go at the track's rate unless the marker has a set rate of its own.
TEST(TrackLayout, MarkerTimesAtTheTrackRateOrTheirOwn) {
    const struct {
        std::int64_t numerator, denominator;
        const char* start;
        const char* duration;
    } cases[] = {
        {0, 0, "50", "25"},         {25, 1, "50", "25"},           {0, 1, "50", "25"},
        {50, 1, "100f50", "50f50"}, {25, 2, "25f25s2", "13f25s2"},  // 12.5 frames: halves round up
    };
    for (const auto& c : cases) {
        XMPTrack track("T", 25, 1);
        track.AddMarker(XMPTemporalMetadataInfo("m", "", 2 * kSecond, c.numerator, c.denominator, kSecond, c.numerator,
                                                c.denominator, "", "", "", "", {}, "", "", nullptr, nullptr));
        SXMPMeta meta;
        WriteTracks(meta, {track});
        std::string start;
        std::string duration;
        meta.GetProperty(kXMP_NS_DM, "xmpDM:Tracks[1]/xmpDM:markers[1]/xmpDM:startTime", &start, nullptr);
        meta.GetProperty(kXMP_NS_DM, "xmpDM:Tracks[1]/xmpDM:markers[1]/xmpDM:duration", &duration, nullptr);
        EXPECT_EQ(start, c.start) << c.numerator << "/" << c.denominator;
        EXPECT_EQ(duration, c.duration) << c.numerator << "/" << c.denominator;
    }
}

TEST(TrackLayout, KeywordsTravelAsCuePointsBeforeTheMarkerId) {
    XMPTemporalMetadataInfo marker = Marker("m", 0, 0, {XMPCuePointParam("own", "1")}, "the-id");
    keltemporalxmp::XMPKeywordExtension extension;
    extension.m_TagDescription.m_ARGBColor = 255;
    marker.AddKeyword(keltemporalxmp::XMPKeywordData("Tag", extension));
    XMPTrack track;
    track.AddMarker(marker);
    SXMPMeta meta;
    WriteTracks(meta, {track});
    const Nodes nodes = TrackNodes(meta);
    const std::string params = "xmpDM:Tracks[1]/xmpDM:markers[1]/xmpDM:cuePointParams";
    EXPECT_EQ(Nodes(nodes.end() - 6, nodes.end()),
              (Nodes{params + "[2] {}", params + "[2]/xmpDM:key=keywordExtKELv1_" + marker.GetKeywords().front().id,
                     params + "[2]/xmpDM:value={\"name\":\"Tag\",\"color\":255}", params + "[3] {}",
                     params + "[3]/xmpDM:key=marker_guid", params + "[3]/xmpDM:value=the-id"}));
}

TEST(TrackLayout, WritingTwiceGivesTheSamePacketAndEmptyListRemovesTheProperty) {
    XMPTrack track("T", "Kind", 25, 1);
    track.AddMarker(Marker("m", kSecond, kSecond, {XMPCuePointParam("k", "v")}, "id"));
    SXMPMeta meta;
    meta.SetProperty(kXMP_NS_DM, "xmpDM:Tracks", "", kXMP_PropArrayIsUnordered);
    meta.AppendArrayItem(kXMP_NS_DM, "xmpDM:Tracks", 0, nullptr, kXMP_PropValueIsStruct);
    meta.SetProperty(kXMP_NS_DM, "xmpDM:Tracks[1]/xmpDM:trackName", "stale");

    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    doc.DeleteAllTracks();
    doc.AddTrack("T", track);
    doc.PrepareForSave("");
    const Nodes once = TrackNodes(meta);
    doc.PrepareForSave("");
    EXPECT_EQ(TrackNodes(meta), once);
    EXPECT_EQ(once.at(2), "xmpDM:Tracks[1]/xmpDM:trackName=T");

    doc.DeleteAllTracks();
    doc.PrepareForSave("");
    EXPECT_FALSE(meta.DoesPropertyExist(kXMP_NS_DM, "xmpDM:Tracks"));
}

}  // namespace
