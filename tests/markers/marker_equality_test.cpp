#include <gtest/gtest.h>

#include <functional>
#include <string>

#include <kelcore/DebugDatabase.hpp>
#include <keltemporalxmp/markers.hpp>

using kelmediatypes::TickTime;
using keltemporalxmp::Marker;

namespace {

const std::string kRemoveRedundantTags = "BE.Marker.EnableRemoveRedundantTags";

void SetRemoveRedundantTags(const std::string& value) {
    kelcore::DebugDatabase::Instance().SetEntry(kRemoveRedundantTags, value);
}

class MarkerEquality : public testing::Test {
protected:
    // Switched off by value: an entry that disappears keeps its last value.
    void TearDown() override { SetRemoveRedundantTags("false"); }

    static Marker FullMarker() {
        Marker marker("marker-1");
        marker.SetStartTime(TickTime(1000));
        marker.SetDuration(TickTime(400));
        marker.SetType(u"Chapter");
        marker.SetName(u"Intro");
        marker.SetComment(u"first");
        marker.SetTarget(u"_blank");
        marker.SetCuePointType(u"Event");
        marker.SetCuePointList({{u"a", u"1"}, {u"b", u"2"}});
        marker.SetProbability(u"0.9");
        return marker;
    }
};

// Each change of one field; "cue:" marks cue point data, which the setting ignores.
const std::pair<const char*, std::function<void(Marker&)>> kChanges[] = {
    {"guid", [](Marker& m) { m.SetGuid(kelcore::Guid::CreateUnique()); }},
    {"start", [](Marker& m) { m.SetStartTime(TickTime(1001)); }},
    {"duration", [](Marker& m) { m.SetDuration(TickTime(-400)); }},
    {"type", [](Marker& m) { m.SetType(u"chapter"); }},
    {"name", [](Marker& m) { m.SetName(u"Intro "); }},
    {"comment", [](Marker& m) { m.SetComment(u""); }},
    {"location", [](Marker& m) { m.SetLocation(u"there"); }},
    {"target", [](Marker& m) { m.SetTarget(u"_self"); }},
    {"speaker", [](Marker& m) { m.SetSpeaker(u"Bob"); }},
    {"probability", [](Marker& m) { m.SetProbability(u"0.90"); }},
    {"cue: type", [](Marker& m) { m.SetCuePointType(u"Navigation"); }},
    {"cue: value",
     [](Marker& m) {
         m.SetCuePointList({{u"a", u"1"}, {u"b", u"3"}});
     }},
    {"cue: key",
     [](Marker& m) {
         m.SetCuePointList({{u"a", u"1"}, {u"c", u"2"}});
     }},
    {"cue: count",
     [](Marker& m) {
         m.SetCuePointList({{u"a", u"1"}});
     }},
    {"cue: repeated key",
     [](Marker& m) {
         m.SetCuePointList({{u"a", u"1"}, {u"a", u"2"}});
     }},
};

}  // namespace

TEST_F(MarkerEquality, EveryFieldCountsUnlessRemoveRedundantTagsIgnoresCuePointData) {
    const Marker base = FullMarker();
    for (const bool removeRedundant : {false, true}) {
        SetRemoveRedundantTags(removeRedundant ? "true" : "false");
        for (const auto& [field, apply] : kChanges) {
            Marker changed = base;
            apply(changed);
            const bool ignored = removeRedundant && std::string(field).starts_with("cue:");
            EXPECT_EQ(changed == base, ignored) << field << " with the setting " << removeRedundant;
            EXPECT_EQ(changed != base, !ignored) << field;
        }
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
    const std::pair<const char*, bool> steps[] = {{"true", true}, {"TRUE", false}, {"", false}, {"true", true}};
    for (const auto& [value, equal] : steps) {
        SetRemoveRedundantTags(value);
        EXPECT_EQ(changed == base, equal) << value;
    }
    kelcore::DebugDatabase::Instance().RemoveEntry(kRemoveRedundantTags);
    EXPECT_EQ(changed, base);
}
