#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "docops_test_support.hpp"

namespace {

using namespace docops_test;
using Info = XMPTemporalMetadataInfo;

std::string Name(const XMPTrack& track) {
    std::string name;
    track.GetTrackName(&name);
    return name;
}

std::string Type(const XMPTrack& track) {
    std::string type;
    track.GetTrackType(&type);
    return type;
}

// One node of a hand-built packet; an item is appended when `path` ends in "[]".
void Put(SXMPMeta& meta, const std::string& path, const char* value = "", XMP_OptionBits options = 0) {
    if (path.ends_with("[]")) {
        meta.AppendArrayItem(kXMP_NS_DM, path.substr(0, path.size() - 2).c_str(), 0, value, options);
    } else {
        meta.SetProperty(kXMP_NS_DM, path.c_str(), value, options);
    }
}

std::vector<std::string> CuePoints(const Info& marker) {
    std::vector<std::string> pairs;
    for (const XMPCuePointParam& param : marker.GetCuePointParamList()) {
        pairs.push_back(*param.GetKeyPtr() + "=" + *param.GetValuePtr());
    }
    return pairs;
}

TEST(TrackRoundTrip, EveryFieldKeywordsIdsAndOwnRatesComeBack) {
    XMPTrack chapters("Chapters", "Chapter", 30000, 1001);
    Info full("Intro", "first words", 2 * kSecond, kSecond, "Scene", "here", "there", "Event",
              {XMPCuePointParam("a", "1"), XMPCuePointParam("b", "")}, "Ann", "0.5", "id-1", nullptr);
    keltemporalxmp::XMPKeywordExtension extension;
    extension.m_TagDescription = {"payload", 255, 3};
    full.AddKeyword(keltemporalxmp::XMPKeywordData("Tag", extension));
    chapters.AddMarker(full);
    chapters.AddMarker(Marker("same type", 5 * kSecond, 0, {}, nullptr, "Chapter"));
    chapters.AddMarker(Info("own rate", "", 6 * kSecond, 50, 1, 3 * kSecond, 30000, 1001, "", "", "", "", {}, "", "",
                            nullptr, nullptr));
    chapters.AddMarker(Marker("unbounded", std::numeric_limits<std::int64_t>::max()));

    SXMPMeta meta;
    WriteTracks(meta, {chapters, XMPTrack("Other", 25, 1)});
    const std::vector<XMPTrack> tracks = ReadTracks(meta);
    ASSERT_EQ(tracks.size(), 2u);
    EXPECT_EQ(Name(tracks[0]), "Chapters");
    EXPECT_EQ(Type(tracks[0]), "Chapter");
    EXPECT_EQ(tracks[0].GetFrameRateDenominator(), 1001);
    EXPECT_EQ(Name(tracks[1]), "Other");
    EXPECT_TRUE(tracks[1].GetMarkers().empty());

    ASSERT_EQ(tracks[0].GetMarkers().size(), 4u);
    auto entry = tracks[0].GetMarkers().begin();
    const Info& intro = entry->second;
    // 2 s and 1 s are whole frames at 29.97 only after rounding.
    EXPECT_EQ(intro.GetStartTime(), 2002 * kSecond / 1000);
    EXPECT_EQ(intro.GetDuration(), 1001 * kSecond / 1000);
    EXPECT_EQ(intro.GetStartTimeFrameRateNumerator(), 30000);
    for (const int field : {1, 2, 7, 8, 9, 10, 11, 12, 14}) {  // the written texts, not the reported ones
        const auto f = static_cast<Info::_infoFieldEnum>(field);
        EXPECT_EQ(Text(intro, f), Text(full, f)) << field;
    }
    EXPECT_EQ(CuePoints(intro), (std::vector<std::string>{"a=1", "b="}));
    ASSERT_EQ(intro.GetKeywords().size(), 1u);
    const keltemporalxmp::XMPKeywordData& keyword = intro.GetKeywords().front();
    EXPECT_EQ(keyword.id, full.GetKeywords().front().id);
    EXPECT_EQ(keyword.m_Extension.m_TagDescription.m_Payload, "payload");
    EXPECT_EQ(keyword.m_Extension.m_TagDescription.m_Index, 3);

    const Info& sameType = (++entry)->second;
    EXPECT_EQ(Text(sameType, Info::kInfoField_MarkerType), "");  // it lives on the track
    EXPECT_EQ(Text(sameType, Info::kInfoField_MarkerID), "");
    const Info& ownRate = (++entry)->second;
    EXPECT_EQ(ownRate.GetStartTimeFrameRateNumerator(), 50);
    EXPECT_EQ(ownRate.GetDuration(), 3003 * kSecond / 1000);  // 90 frames at 29.97
    EXPECT_EQ(ownRate.GetDurationFrameRateDenominator(), 1001);
    EXPECT_EQ((++entry)->second.GetStartTime(), std::numeric_limits<std::int64_t>::max());
}

// Hand-built the way other writers do it: Seq of tracks, fields in another
// order, extra fields of this and of other schemas, no rate, no duration.
TEST(TrackReading, PacketOfAnotherWriter) {
    SXMPMeta meta;
    SXMPMeta::RegisterNamespace("http://example.com/other/", "other", nullptr);
    const std::string marker = "xmpDM:Tracks[1]/xmpDM:markers[1]";
    Put(meta, "xmpDM:Tracks", "", kXMP_PropArrayIsOrdered);
    Put(meta, "xmpDM:Tracks[]", nullptr, kXMP_PropValueIsStruct);
    Put(meta, "xmpDM:Tracks[1]/xmpDM:markers", "", kXMP_PropArrayIsUnordered);
    Put(meta, "xmpDM:Tracks[1]/xmpDM:markers[]", nullptr, kXMP_PropValueIsStruct);
    Put(meta, marker + "/xmpDM:name", "late rate");
    Put(meta, marker + "/xmpDM:startTime", "50");
    Put(meta, marker + "/xmpDM:tempo", "120");
    Put(meta, marker + "/other:note", "", kXMP_PropValueIsStruct);
    Put(meta, marker + "/other:note/other:text", "ignored");
    Put(meta, marker + "/xmpDM:cuePointParams", "", kXMP_PropArrayIsUnordered);
    Put(meta, marker + "/xmpDM:cuePointParams[]", nullptr, kXMP_PropValueIsStruct);
    Put(meta, marker + "/xmpDM:cuePointParams[1]/xmpDM:value", "v");
    Put(meta, marker + "/xmpDM:cuePointParams[1]/xmpDM:key", "k");
    Put(meta, "xmpDM:Tracks[1]/xmpDM:frameRate", "f25");
    Put(meta, "xmpDM:Tracks[1]/xmpDM:trackName", "Named last");
    Put(meta, "xmpDM:Tracks[1]/other:label", "x");
    Put(meta, "xmpDM:Tracks[]", nullptr, kXMP_PropValueIsStruct);
    Put(meta, "xmpDM:Tracks[2]/xmpDM:trackName", "No rate, no markers");

    const std::vector<XMPTrack> tracks = ReadTracks(meta);
    ASSERT_EQ(tracks.size(), 2u);
    EXPECT_EQ(Name(tracks[0]), "Named last");
    ASSERT_EQ(tracks[0].GetMarkers().size(), 1u);
    const Info& read = tracks[0].GetMarkers().begin()->second;
    EXPECT_EQ(Text(read, Info::kInfoField_Name), "late rate");
    EXPECT_EQ(read.GetStartTime(), 2 * kSecond);  // at the rate that came after the markers
    EXPECT_EQ(read.GetDuration(), 0);
    EXPECT_EQ(CuePoints(read), (std::vector<std::string>{"k=v"}));
    EXPECT_EQ(Name(tracks[1]), "No rate, no markers");
    EXPECT_EQ(tracks[1].GetFrameRateNumerator(), 1);
    EXPECT_EQ(tracks[1].GetFrameRateDenominator(), 1);
}

// Broken pieces are passed over; the rest reads.
TEST(TrackReading, StructurallyBrokenPiecesAreSkipped) {
    SXMPMeta meta;
    const std::string markers = "xmpDM:Tracks[3]/xmpDM:markers";
    Put(meta, "xmpDM:Tracks", "", kXMP_PropArrayIsUnordered);
    Put(meta, "xmpDM:Tracks[]", "a plain item");
    Put(meta, "xmpDM:Tracks[]", nullptr, kXMP_PropValueIsStruct);
    Put(meta, "xmpDM:Tracks[2]/xmpDM:trackName", "markers not an array");
    Put(meta, "xmpDM:Tracks[2]/xmpDM:markers", "text");
    Put(meta, "xmpDM:Tracks[]", nullptr, kXMP_PropValueIsStruct);
    Put(meta, "xmpDM:Tracks[3]/xmpDM:frameRate", "f25");
    Put(meta, markers, "", kXMP_PropArrayIsOrdered);
    Put(meta, markers + "[]", "not a struct");
    Put(meta, markers + "[]", nullptr, kXMP_PropValueIsStruct);
    Put(meta, markers + "[2]/xmpDM:startTime", "abc");
    Put(meta, markers + "[2]/xmpDM:duration", "2x");
    Put(meta, markers + "[2]/xmpDM:name", "", kXMP_PropValueIsStruct);
    Put(meta, markers + "[2]/xmpDM:name/xmpDM:inner", "a struct where text belongs");
    Put(meta, markers + "[2]/xmpDM:cuePointParams", "not an array");
    Put(meta, markers + "[]", nullptr, kXMP_PropValueIsStruct);
    Put(meta, markers + "[3]/xmpDM:startTime", "25");
    Put(meta, markers + "[3]/xmpDM:cuePointParams", "", kXMP_PropArrayIsOrdered);
    Put(meta, markers + "[3]/xmpDM:cuePointParams[]", "plain");
    Put(meta, markers + "[3]/xmpDM:cuePointParams[]", nullptr, kXMP_PropValueIsStruct);
    Put(meta, markers + "[3]/xmpDM:cuePointParams[2]/xmpDM:key", "only a key");

    const std::vector<XMPTrack> tracks = ReadTracks(meta);
    ASSERT_EQ(tracks.size(), 2u);
    SXMPMeta simple;  // a track list that is no array reads as none
    simple.SetProperty(kXMP_NS_DM, "xmpDM:Tracks", "text");
    EXPECT_TRUE(ReadTracks(simple).empty());
    EXPECT_EQ(Name(tracks[0]), "markers not an array");
    EXPECT_TRUE(tracks[0].GetMarkers().empty());
    ASSERT_EQ(tracks[1].GetMarkers().size(), 2u);
    auto entry = tracks[1].GetMarkers().begin();
    EXPECT_EQ(entry->second.GetStartTime(), 0);
    EXPECT_EQ(entry->second.GetDuration(), 2 * kSecond / 25);  // digits up to the first other character
    EXPECT_EQ(Text(entry->second, Info::kInfoField_Name), "");
    EXPECT_TRUE(entry->second.GetCuePointParamList().empty());
    EXPECT_EQ((++entry)->second.GetStartTime(), kSecond);
    EXPECT_EQ(CuePoints(entry->second), (std::vector<std::string>{"only a key="}));
}

TEST(TrackReading, FirstMarkerGuidWinsAndIsNotACuePoint) {
    SXMPMeta meta;
    WriteTracks(meta, {[] {
                    XMPTrack track;
                    track.AddMarker(Marker(
                        "m", 0, 0, {XMPCuePointParam("marker_guid", "first"), XMPCuePointParam("k", "v")}, "second"));
                    return track;
                }()});
    const std::vector<XMPTrack> tracks = ReadTracks(meta);
    const Info& marker = tracks.at(0).GetMarkers().begin()->second;
    EXPECT_EQ(Text(marker, Info::kInfoField_MarkerID), "first");
    EXPECT_EQ(CuePoints(marker), (std::vector<std::string>{"k=v"}));
}

TEST(TrackReading, ZeroRateNamesTheMarker) {
    SXMPMeta meta;
    Put(meta, "xmpDM:Tracks", "", kXMP_PropArrayIsUnordered);
    Put(meta, "xmpDM:Tracks[]", nullptr, kXMP_PropValueIsStruct);
    Put(meta, "xmpDM:Tracks[1]/xmpDM:frameRate", "fabc");
    Put(meta, "xmpDM:Tracks[1]/xmpDM:markers", "", kXMP_PropArrayIsOrdered);
    Put(meta, "xmpDM:Tracks[1]/xmpDM:markers[]", nullptr, kXMP_PropValueIsStruct);
    Put(meta, "xmpDM:Tracks[1]/xmpDM:markers[1]/xmpDM:startTime", "10");
    try {
        ReadTracks(meta);
        FAIL() << "no error";
    } catch (const XMP_Error& error) {
        EXPECT_EQ(error.GetID(), kXMPErr_BadValue);
        EXPECT_NE(std::string(error.GetErrMsg()).find("xmpDM:Tracks[1]/xmpDM:markers[1]"), std::string::npos)
            << error.GetErrMsg();
    }
}

}  // namespace
