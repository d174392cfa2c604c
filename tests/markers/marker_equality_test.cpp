#include <gtest/gtest.h>

#include <functional>
#include <string>

#include <kelcore/DebugDatabase.hpp>
#include <keltemporalxmp/markers.hpp>

using keltemporalxmp::CustomMarkerParamList;
using keltemporalxmp::Marker;
using kelmediatypes::TickTime;

namespace {

const std::string kRemoveRedundantTags = "BE.Marker.EnableRemoveRedundantTags";

class MarkerEquality : public testing::Test {
protected:
    // Switched off by value: an entry that disappears keeps its last value.
    void TearDown() override { SetRemoveRedundantTags("false"); }

    static void SetRemoveRedundantTags(const std::string& value) {
        kelcore::DebugDatabase::Instance().SetEntry(kRemoveRedundantTags, value);
    }

    static Marker FullMarker() {
        Marker marker("marker-1");
        marker.SetStartTime(TickTime(1000));
        marker.SetDuration(TickTime(400));
        marker.SetType(u"Chapter");
        marker.SetName(u"Intro");
        marker.SetComment(u"first");
        marker.SetLocation(u"here");
        marker.SetTarget(u"_blank");
        marker.SetCuePointType(u"Event");
        marker.SetCuePointList({{u"a", u"1"}, {u"b", u"2"}});
        marker.SetSpeaker(u"Ann");
        marker.SetProbability(u"0.9");
        return marker;
    }
};

struct Change {
    const char* field;
    std::function<void(Marker&)> apply;
    bool isCuePointData;
};

const Change kChanges[] = {
    {"guid", [](Marker& m) { m.SetGuid(kelcore::Guid::CreateUnique()); }, false},
    {"start", [](Marker& m) { m.SetStartTime(TickTime(1001)); }, false},
    {"duration", [](Marker& m) { m.SetDuration(TickTime(-400)); }, false},
    {"type", [](Marker& m) { m.SetType(u"chapter"); }, false},
    {"name", [](Marker& m) { m.SetName(u"Intro "); }, false},
    {"comment", [](Marker& m) { m.SetComment(u""); }, false},
    {"location", [](Marker& m) { m.SetLocation(u"there"); }, false},
    {"target", [](Marker& m) { m.SetTarget(u"_self"); }, false},
    {"speaker", [](Marker& m) { m.SetSpeaker(u"Bob"); }, false},
    {"probability", [](Marker& m) { m.SetProbability(u"0.90"); }, false},
    {"cue point type", [](Marker& m) { m.SetCuePointType(u"Navigation"); }, true},
    {"cue point value", [](Marker& m) { m.SetCuePointList({{u"a", u"1"}, {u"b", u"3"}}); }, true},
    {"cue point key", [](Marker& m) { m.SetCuePointList({{u"a", u"1"}, {u"c", u"2"}}); }, true},
    {"cue point count", [](Marker& m) { m.SetCuePointList({{u"a", u"1"}}); }, true},
    {"repeated key", [](Marker& m) { m.SetCuePointList({{u"a", u"1"}, {u"a", u"2"}}); }, true},
};

}  // namespace

TEST_F(MarkerEquality, EveryFieldButTheExtensionCounts) {
    const Marker base = FullMarker();
    for (const Change& change : kChanges) {
        Marker changed = base;
        change.apply(changed);
        EXPECT_FALSE(changed == base) << change.field;
        EXPECT_TRUE(changed != base) << change.field;
    }
}

TEST_F(MarkerEquality, RemoveRedundantTagsIgnoresCuePointData) {
    SetRemoveRedundantTags("true");
    const Marker base = FullMarker();
    for (const Change& change : kChanges) {
        Marker changed = base;
        change.apply(changed);
        EXPECT_EQ(changed == base, change.isCuePointData) << change.field;
    }
}

TEST_F(MarkerEquality, CuePointOrderAndLaterRepeatsDoNotCount) {
    Marker a = FullMarker();
    Marker b = FullMarker();
    a.SetCuePointList({{u"a", u"1"}, {u"b", u"2"}, {u"a", u"x"}});
    b.SetCuePointList({{u"b", u"2"}, {u"a", u"1"}, {u"a", u"y"}});
    EXPECT_EQ(a, b);
    b.SetCuePointList({{u"b", u"2"}, {u"a", u"y"}, {u"a", u"1"}});
    EXPECT_NE(a, b);
}

TEST_F(MarkerEquality, SettingIsReadAgainWhenTheDatabaseChanges) {
    const Marker base = FullMarker();
    Marker changed = base;
    changed.SetCuePointType(u"Navigation");

    const struct {
        const char* value;
        bool equal;
    } steps[] = {{"true", true}, {"TRUE", false}, {"true", true}, {"false", false}, {"", false}, {"true", true}};
    for (const auto& step : steps) {
        SetRemoveRedundantTags(step.value);
        EXPECT_EQ(changed == base, step.equal) << step.value;
    }
    kelcore::DebugDatabase::Instance().SetEntry("another setting", "x");
    EXPECT_EQ(changed, base);
    kelcore::DebugDatabase::Instance().RemoveEntry(kRemoveRedundantTags);
    EXPECT_EQ(changed, base);
}
