#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "docops_test_support.hpp"

namespace {

using namespace docops_test;

constexpr const char* kFirstTrackName = "xmpDM:Tracks[1]/xmpDM:trackName";

std::string Property(const SXMPMeta& meta, const char* ns, const char* path) {
    std::string value;
    meta.GetProperty(ns, path, &value, nullptr);
    return value;
}

// A packet with one track of the given type (its name too).
SXMPMeta WithTrack(const char* type) {
    SXMPMeta meta;
    WriteTracks(meta, {XMPTrack(type, type, 25, 1)});
    return meta;
}

TEST(Document, TrackListIsReadAtFirstUseOnly) {
    SXMPMeta meta = WithTrack("Before");
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    meta.SetProperty(kXMP_NS_DM, kFirstTrackName, "Edited before first use");
    ASSERT_EQ(doc.TrackListIteratorEnd() - doc.TrackListIteratorBegin(), 1);
    std::string name;
    doc.TrackListIteratorBegin()->GetTrackName(&name);
    EXPECT_EQ(name, "Edited before first use");

    meta.SetProperty(kXMP_NS_DM, kFirstTrackName, "Edited after");
    doc.TrackListIteratorBegin()->GetTrackName(&name);
    EXPECT_EQ(name, "Edited before first use");
    EXPECT_FALSE(doc.IsDirty());  // reading changes nothing
}

TEST(Document, ChangedTrackListStaysChangedAndIsWrittenOnEverySave) {
    SXMPMeta meta = WithTrack("Kept");
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    doc.TrackListIteratorBegin();
    meta.SetProperty(kXMP_NS_DM, kFirstTrackName, "Outside edit");
    doc.PrepareForSave("");
    EXPECT_EQ(Property(meta, kXMP_NS_DM, kFirstTrackName), "Outside edit");  // unchanged lists are not written

    doc.TrackListChanged();
    EXPECT_TRUE(doc.IsDirty());
    doc.PrepareForSave("");
    EXPECT_EQ(Property(meta, kXMP_NS_DM, kFirstTrackName), "Kept");  // the list read before the edit
    EXPECT_TRUE(doc.IsDirty());
    meta.SetProperty(kXMP_NS_DM, kFirstTrackName, "Outside edit");
    doc.PrepareForSave("");
    EXPECT_EQ(Property(meta, kXMP_NS_DM, kFirstTrackName), "Kept");
}

TEST(Document, EveryTrackEditMarksTheListChanged) {
    const std::string kind = "Kind", other = "Other";
    const std::vector<bool (*)(XMPDocOpsTemporal&)> edits = {
        [](XMPDocOpsTemporal& doc) {
            doc.AddTrack("n", XMPTrack());
            return true;
        },
        [](XMPDocOpsTemporal& doc) {
            doc.DeleteAllTracks();
            return true;
        },
        [](XMPDocOpsTemporal& doc) { return doc.DeleteTrack(&*doc.TrackListIteratorBegin()); },
    };
    for (const auto& edit : edits) {
        SXMPMeta meta = WithTrack("Kind");
        XMPDocOpsTemporal doc;
        doc.OpenXMP(&meta, "");
        EXPECT_TRUE(edit(doc));
        EXPECT_TRUE(doc.IsDirty());
    }
    SXMPMeta meta = WithTrack("Kind");
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    const XMPTrack foreign;
    EXPECT_FALSE(doc.DeleteTrack(&other));
    EXPECT_FALSE(doc.DeleteTrack(&foreign));
    EXPECT_FALSE(doc.DeleteTrack(static_cast<const XMPTrack*>(nullptr)));
    EXPECT_FALSE(doc.IsDirty());
    EXPECT_TRUE(doc.DeleteTrack(&kind));
    EXPECT_TRUE(doc.IsDirty());
}

TEST(Document, TracksAreFoundByTypeNotByName) {
    SXMPMeta meta;
    XMPDocOpsTemporal doc;
    doc.NewXMP(&meta, "video/mp4");
    doc.AddTrack("Comments", XMPTrack("", "Chapter", 25, 1));
    doc.AddTrack("Chapter", XMPTrack("", "Comment", 25, 1));
    doc.AddTrack("Second", XMPTrack("", "Chapter", 25, 1));
    const std::string chapter = "Chapter";
    const std::string comments = "Comments";
    std::string name;
    ASSERT_NE(doc.GetTrack(&chapter), nullptr);
    doc.GetTrack(&chapter)->GetTrackName(&name);
    EXPECT_EQ(name, "Comments");
    EXPECT_EQ(doc.GetTrack(&comments), nullptr);
    EXPECT_TRUE(doc.DeleteTrack(&chapter));
    doc.GetTrack(&chapter)->GetTrackName(&name);
    EXPECT_EQ(name, "Second");
}

TEST(Document, SavingWithoutMetadataFailsOnlyWhenTracksChanged) {
    XMPDocOpsTemporal doc;
    doc.NewXMP(nullptr, "");
    doc.PrepareForSave("");
    doc.AddTrack("t", XMPTrack());
    EXPECT_THROW(doc.PrepareForSave(""), XMP_Error);
}

TEST(Document, OpenKeepsTheFirstMetadataNewReplacesIt) {
    SXMPMeta first = WithTrack("First");
    SXMPMeta second = WithTrack("Second");
    XMPDocOpsTemporal opened;
    opened.OpenXMP(&first, "");
    opened.OpenXMP(&second, "");
    opened.TrackListChanged();
    opened.DeleteAllTracks();
    opened.PrepareForSave("");
    EXPECT_FALSE(first.DoesPropertyExist(kXMP_NS_DM, "xmpDM:Tracks"));
    EXPECT_TRUE(second.DoesPropertyExist(kXMP_NS_DM, "xmpDM:Tracks"));

    SXMPMeta third = WithTrack("Third");
    XMPDocOpsTemporal created;
    created.OpenXMP(&first, "");
    created.NewXMP(&third, "");
    created.DeleteAllTracks();
    created.PrepareForSave("");
    EXPECT_FALSE(third.DoesPropertyExist(kXMP_NS_DM, "xmpDM:Tracks"));
}

TEST(Document, BranchSavesPendingTrackEditsIntoTheDerivedCopy) {
    SXMPMeta meta;
    XMPDocOpsTemporal doc;
    doc.NewXMP(&meta, "video/mp4");
    doc.PrepareForSave("");
    doc.AddTrack("Pending", XMPTrack("", "Kind", 25, 1));

    SXMPMeta derivedMeta;
    XMPDocOpsTemporal derived;
    doc.BranchXMP(&derived, &derivedMeta, "video/mp4");
    EXPECT_EQ(Property(derivedMeta, kXMP_NS_DM, kFirstTrackName), "Pending");
    EXPECT_NE(Property(derivedMeta, kXMP_NS_XMP_MM, "DocumentID"), Property(meta, kXMP_NS_XMP_MM, "DocumentID"));
    EXPECT_EQ(Property(meta, kXMP_NS_DM, kFirstTrackName), "Pending");  // the source was saved first

    const std::string kind = "Kind";
    EXPECT_TRUE(derived.DeleteTrack(&kind));  // the derived document reads the derived metadata
    derived.PrepareForSave("");
    EXPECT_FALSE(derivedMeta.DoesPropertyExist(kXMP_NS_DM, "xmpDM:Tracks"));
    EXPECT_TRUE(meta.DoesPropertyExist(kXMP_NS_DM, "xmpDM:Tracks"));

    EXPECT_THROW(doc.BranchXMP(nullptr, &derivedMeta, ""), XMP_Error);
}

}  // namespace
