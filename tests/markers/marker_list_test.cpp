#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include <keltemporalxmp/markers.hpp>

using kelmediatypes::TickTime;
using keltemporalxmp::Marker;
using keltemporalxmp::MarkerList;
using keltemporalxmp::ReadAllMarkers;
using keltemporalxmp::UTF16String;
using keltemporalxmp::WriteAllMarkers;

namespace {

constexpr std::int64_t kFrame = 254016000000 / 25;

std::shared_ptr<Marker> MakeMarker(const char16_t* type, std::int64_t startFrame, const char16_t* name) {
    auto marker = std::make_shared<Marker>();
    marker->SetType(type);
    marker->SetStartTime(TickTime(startFrame * kFrame));
    marker->SetName(name);
    return marker;
}

MarkerList Read(SXMPMeta& meta) {
    MarkerList read;
    ReadAllMarkers(meta, read);
    return read;
}

std::vector<UTF16String> Names(const MarkerList& markers) {
    std::vector<UTF16String> names;
    for (const auto& marker : markers) names.push_back(marker->GetName());
    return names;
}

std::string Property(const SXMPMeta& meta, const char* ns, const char* path) {
    std::string value;
    meta.GetProperty(ns, path, &value, nullptr);
    return value;
}

}  // namespace

TEST(MarkerList, EveryFieldComesBackInAnyScript) {
    auto marker = MakeMarker(u"Chapitre – 章", 90, u"Café déjà vu");
    marker->SetDuration(TickTime(12 * kFrame));
    marker->SetComment(u"夜の場面 \U0001F319 with a moon");
    marker->SetLocation(u"Zürich");
    marker->SetTarget(u"https://example.com/ü");
    marker->SetCuePointType(u"Event");
    marker->SetSpeaker(u"Åsa \U0001F600");
    marker->SetProbability(u"0.75");
    marker->SetCuePointList({{u"scène", u"第一"}, {u"keywordExtKELv1_k1", u"{\"name\":\"Rain\"}"}, {u"", u""}});
    SXMPMeta meta;
    WriteAllMarkers({marker}, meta, 25, 1);
    const MarkerList read = Read(meta);
    ASSERT_EQ(read.size(), 1u);
    EXPECT_EQ(*read[0], *marker);
    EXPECT_EQ(read[0]->GetCuePointList().size(), 3u);
}

TEST(MarkerList, OneTrackPerTypeInTypeOrderThenStartOrder) {
    // UTF-16 order puts the emoji (D83D DE00) before U+FF5E; UTF-8 order would not.
    const MarkerList input = {MakeMarker(u"Speech", 40, u"s40"),      MakeMarker(u"Chapter", 30, u"c30a"),
                              MakeMarker(u"～", 1, u"wave"),          MakeMarker(u"Chapter", 10, u"c10"),
                              MakeMarker(u"\U0001F600", 5, u"smile"), MakeMarker(u"Chapter", 30, u"c30b"),
                              MakeMarker(u"Speech", 0, u"s0")};
    SXMPMeta meta;
    WriteAllMarkers(input, meta, 25, 1);
    const MarkerList read = Read(meta);
    EXPECT_EQ(Names(read), (std::vector<UTF16String>{u"c10", u"c30a", u"c30b", u"s0", u"s40", u"smile", u"wave"}));
    ASSERT_EQ(meta.CountArrayItems(kXMP_NS_DM, "xmpDM:Tracks"), 4);
    EXPECT_EQ(Property(meta, kXMP_NS_DM, "xmpDM:Tracks[1]/xmpDM:trackType"), "Chapter");
    EXPECT_EQ(Property(meta, kXMP_NS_DM, "xmpDM:Tracks[1]/xmpDM:frameRate"), "f25");
    EXPECT_EQ(Property(meta, kXMP_NS_DM, "xmpDM:Tracks[3]/xmpDM:trackName"), "\xF0\x9F\x98\x80");
    // The type lives on the track only.
    EXPECT_FALSE(meta.DoesPropertyExist(kXMP_NS_DM, "xmpDM:Tracks[1]/xmpDM:markers[1]/xmpDM:type"));
    EXPECT_EQ(read[6]->GetType(), u"～");
    // A type another writer put on the marker wins over the track's.
    meta.SetProperty(kXMP_NS_DM, "xmpDM:Tracks[1]/xmpDM:markers[1]/xmpDM:type", "Own");
    EXPECT_EQ(Read(meta)[0]->GetType(), u"Own");
}

TEST(MarkerList, WritingReplacesAllTracksAndNotesTheChange) {
    SXMPMeta meta;
    WriteAllMarkers({MakeMarker(u"Old", 1, u"old")}, meta, 25, 1);
    const std::string firstInstance = Property(meta, kXMP_NS_XMP_MM, "xmpMM:InstanceID");
    WriteAllMarkers({MakeMarker(u"New", 2, u"new")}, meta, 25, 1);
    EXPECT_EQ(Names(Read(meta)), std::vector<UTF16String>{u"new"});
    EXPECT_EQ(Property(meta, kXMP_NS_XMP_MM, "xmpMM:History[last()]/stEvt:changed"), "/metadata/xmpDM");
    EXPECT_NE(Property(meta, kXMP_NS_XMP_MM, "xmpMM:InstanceID"), firstInstance);

    WriteAllMarkers({}, meta, 25, 1);
    EXPECT_FALSE(meta.DoesPropertyExist(kXMP_NS_DM, "xmpDM:Tracks"));
    MarkerList read = {MakeMarker(u"Kept", 0, u"kept")};
    ReadAllMarkers(meta, read);
    EXPECT_EQ(Names(read), std::vector<UTF16String>{u"kept"});  // nothing to read, nothing dropped
}

TEST(MarkerList, NullMarkerIsRejectedBeforeAnythingIsWritten) {
    SXMPMeta meta;
    WriteAllMarkers({MakeMarker(u"Chapter", 1, u"one")}, meta, 25, 1);
    try {
        WriteAllMarkers({MakeMarker(u"Chapter", 2, u"two"), nullptr}, meta, 25, 1);
        FAIL() << "no error";
    } catch (const XMP_Error& error) {
        EXPECT_EQ(error.GetID(), kXMPErr_BadParam);
        EXPECT_NE(std::string(error.GetErrMsg()).find("index 1"), std::string::npos) << error.GetErrMsg();
    }
    EXPECT_EQ(Names(Read(meta)), std::vector<UTF16String>{u"one"});
}
