#include <gtest/gtest.h>

#include <map>

#include "xmp_test_packets.hpp"

namespace {

using xmp_test::Value;

TEST(XMPUtils, DuplicatesWithinOneTreeAndReplacesTheDestination) {
    SXMPMeta meta;
    xmp_test::AddMarkers(&meta, 2);
    meta.SetProperty(kXMP_NS_DM, "copy", "old");
    SXMPUtils::DuplicateSubtree(meta, &meta, kXMP_NS_DM, "Tracks[1]", kXMP_NS_DM, "copy");
    EXPECT_EQ(meta.CountArrayItems(kXMP_NS_DM, "copy/xmpDM:markers"), 2);
    EXPECT_EQ(Value(meta, kXMP_NS_DM, "copy/xmpDM:markers[2]/xmpDM:name"), "m2");

    EXPECT_THROW(SXMPUtils::DuplicateSubtree(meta, nullptr, "*", "*"), XMP_Error);
    EXPECT_THROW(SXMPUtils::DuplicateSubtree(meta, &meta, kXMP_NS_DM, "missing"), XMP_Error);
}

// One line per property the template touches; "-" when absent, the item count for arrays.
std::string Summary(const SXMPMeta& meta) {
    std::string summary;
    for (const char* name : {"source", "coverage", "type", "format", "subject"}) {
        XMP_OptionBits options = 0;
        std::string value = "-";
        if (meta.GetProperty(kXMP_NS_DC, name, &value, &options) && (options & kXMP_PropValueIsArray) != 0) {
            value = std::to_string(meta.CountArrayItems(kXMP_NS_DC, name));
        }
        summary += std::string(name) + "=" + value + " ";
    }
    return summary + "album=" + (meta.DoesPropertyExist(kXMP_NS_DM, "album") ? Value(meta, kXMP_NS_DM, "album") : "-") +
           " tool=" + (meta.DoesPropertyExist(kXMP_NS_XMP, "CreatorTool") ? "yes" : "-");
}

TEST(XMPUtils, ApplyTemplateFollowsEachActionBit) {
    SXMPMeta templ;
    templ.SetProperty(kXMP_NS_DC, "source", "t");
    templ.SetProperty(kXMP_NS_DC, "type", "t");
    templ.SetProperty(kXMP_NS_DC, "format", "t");
    templ.SetProperty(kXMP_NS_DM, "album", "");
    for (const char* keyword : {"a", "b"}) {
        templ.AppendArrayItem(kXMP_NS_DC, "subject", kXMP_PropArrayIsUnordered, keyword);
    }
    const std::map<XMP_OptionBits, std::string> expected = {
        {0, "source=w coverage=w type=- format=w subject=1 album=w tool=yes"},
        {kXMPTemplate_ClearUnnamedProperties, "source=w coverage=- type=- format=w subject=1 album=w tool=yes"},
        {kXMPTemplate_ClearUnnamedProperties | kXMPTemplate_IncludeInternalProperties,
         "source=w coverage=- type=- format=w subject=1 album=w tool=-"},
        {kXMPTemplate_ReplaceExistingProperties, "source=t coverage=w type=- format=w subject=2 album= tool=yes"},
        {kXMPTemplate_ReplaceExistingProperties | kXMPTemplate_IncludeInternalProperties,
         "source=t coverage=w type=- format=t subject=2 album= tool=yes"},
        {kXMPTemplate_ReplaceWithDeleteEmpty, "source=t coverage=w type=- format=w subject=2 album=- tool=yes"},
        {kXMPTemplate_AddNewProperties, "source=w coverage=w type=t format=w subject=2 album=w tool=yes"},
    };
    for (const auto& [actions, summary] : expected) {
        SXMPMeta working;
        for (const char* name : {"source", "coverage", "format"}) {
            working.SetProperty(kXMP_NS_DC, name, "w");
        }
        working.AppendArrayItem(kXMP_NS_DC, "subject", kXMP_PropArrayIsUnordered, "a");
        working.SetProperty(kXMP_NS_DM, "album", "w");
        working.SetProperty(kXMP_NS_XMP, "CreatorTool", "w");
        SXMPUtils::ApplyTemplate(&working, templ, actions);
        EXPECT_EQ(Summary(working), summary) << "actions " << actions;
    }
}

TEST(XMPUtils, WritesDatesAsXmpText) {
    const auto date = [](XMP_Int32 year, XMP_Int32 month, XMP_Int32 day, bool hasTime, XMP_Int32 nano,
                         XMP_Int8 tzSign) {
        XMP_DateTime value;
        value.year = year, value.month = month, value.day = day, value.hour = 13, value.minute = 45;
        value.second = nano == 0 ? 0 : 10;
        value.nanoSecond = nano, value.hasDate = true, value.hasTime = hasTime, value.hasTimeZone = hasTime;
        value.tzSign = tzSign, value.tzHour = 2, value.tzMinute = 30;
        return value;
    };
    const std::pair<XMP_DateTime, std::string> cases[] = {
        {date(2024, 0, 0, false, 0, 0), "2024"},
        {date(2024, 5, 0, false, 0, 0), "2024-05"},
        {date(2024, 5, 17, false, 0, 0), "2024-05-17"},
        {date(2024, 5, 17, true, 0, 0), "2024-05-17T13:45Z"},
        {date(2024, 5, 17, true, 250000000, 1), "2024-05-17T13:45:10.25+02:30"},
        {date(2024, 5, 17, true, 1, -1), "2024-05-17T13:45:10.000000001-02:30"},
    };
    for (const auto& [value, text] : cases) {
        std::string converted;
        SXMPUtils::ConvertFromDate(value, &converted);
        EXPECT_EQ(converted, text);
    }
    XMP_DateTime now;
    SXMPUtils::CurrentDateTime(&now);
    EXPECT_GE(now.year, 2024);
    EXPECT_TRUE(now.hasDate && now.hasTime && now.hasTimeZone);
}

}  // namespace
