// A save that fails part-way: the caller's markers stay as they were, what
// is written is whole (a list is either as before or as a clean save writes
// it), the failed save leaves no instance ID or history event of its own, and
// a retry once the cause is gone succeeds.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include <keltemporalxmp/docops.hpp>
#include <keltemporalxmp/markers.hpp>

using namespace keltemporalxmp;
using kelmediatypes::TickTime;

namespace {

constexpr std::int64_t kSecond = 254016000000;

MarkerList SomeMarkers() {
    MarkerList markers;
    for (int i = 0; i < 6; ++i) {
        auto marker = std::make_shared<Marker>();
        marker->SetType(i % 2 == 0 ? u"Chapter" : u"Comment");
        marker->SetStartTime(TickTime((10 - i) * kSecond));
        marker->SetName(i % 2 == 0 ? u"even" : u"odd");
        markers.push_back(marker);
    }
    return markers;
}

// What a caller can see of its list: order, identity and fields.
std::vector<std::string> Snapshot(const MarkerList& markers) {
    std::vector<std::string> rows;
    for (const auto& marker : markers) {
        rows.push_back(std::to_string(reinterpret_cast<std::uintptr_t>(marker.get())) + " " +
                       std::to_string(marker->GetStartTime().GetTicks()) + " " +
                       std::to_string(marker->GetType().size()) + " " + std::to_string(marker->GetName().size()));
    }
    return rows;
}

std::string Property(const SXMPMeta& meta, const char* ns, const char* path) {
    std::string value;
    meta.GetProperty(ns, path, &value, nullptr);
    return value;
}

// Every node under one top-level property: "path=value".
std::vector<std::string> Subtree(const SXMPMeta& meta, const char* ns, const char* path) {
    std::vector<std::string> nodes;
    SXMPIterator walk(meta, ns, path);
    std::string nodePath, value;
    while (walk.Next(nullptr, &nodePath, &value, nullptr)) {
        nodes.push_back(nodePath + "=" + value);
    }
    return nodes;
}

std::string Packet(const SXMPMeta& meta) {
    std::string packet;
    meta.SerializeToBuffer(&packet, kXMP_OmitPacketWrapper);
    return packet;
}

// A history the save cannot append its event to.
void MendHistory(SXMPMeta& meta) {
    meta.DeleteProperty(kXMP_NS_XMP_MM, "xmpMM:History");
}
void BreakHistory(SXMPMeta& meta) {
    MendHistory(meta);
    meta.SetProperty(kXMP_NS_XMP_MM, "xmpMM:History", "not an array");
}

SXMPMeta DocumentWithMarkers(const MarkerList& markers) {
    SXMPMeta meta;
    WriteAllMarkers(markers, meta, 25, 1);
    return meta;
}

}  // namespace

TEST(InterruptedSave, WriteAllMarkersWithAnUnusableRateChangesNothing) {
    const MarkerList markers = SomeMarkers();
    SXMPMeta meta = DocumentWithMarkers(markers);
    const std::string before = Packet(meta);
    const std::vector<std::string> listBefore = Snapshot(markers);

    try {
        WriteAllMarkers(markers, meta, 0, 1);
        FAIL() << "a zero frame rate was written";
    } catch (const XMP_Error& error) {
        EXPECT_EQ(error.GetID(), kXMPErr_BadValue);
        EXPECT_NE(std::string(error.GetErrMsg()).find("xmpDM:Tracks[1]/xmpDM:frameRate: frame rate 0/1"),
                  std::string::npos)
            << error.GetErrMsg();
    }
    EXPECT_EQ(Packet(meta), before);
    EXPECT_EQ(Snapshot(markers), listBefore);
}

TEST(InterruptedSave, WriteAllMarkersFailingInTheSaveLeavesWholeTracksAndNoSave) {
    const MarkerList markers = SomeMarkers();
    SXMPMeta meta = DocumentWithMarkers(SomeMarkers());
    const std::string instanceID = Property(meta, kXMP_NS_XMP_MM, "xmpMM:InstanceID");
    const std::string metadataDate = Property(meta, kXMP_NS_XMP, "xmp:MetadataDate");
    SXMPMeta clean = meta.Clone();
    WriteAllMarkers(markers, clean, 25, 1);
    const std::vector<std::string> listBefore = Snapshot(markers);

    BreakHistory(meta);
    EXPECT_THROW(WriteAllMarkers(markers, meta, 25, 1), XMP_Error);

    EXPECT_EQ(Snapshot(markers), listBefore);
    EXPECT_EQ(Subtree(meta, kXMP_NS_DM, "xmpDM:Tracks"), Subtree(clean, kXMP_NS_DM, "xmpDM:Tracks"));
    EXPECT_EQ(Property(meta, kXMP_NS_XMP_MM, "xmpMM:InstanceID"), instanceID);
    EXPECT_EQ(Property(meta, kXMP_NS_XMP, "xmp:MetadataDate"), metadataDate);

    MendHistory(meta);
    WriteAllMarkers(markers, meta, 25, 1);
    EXPECT_NE(Property(meta, kXMP_NS_XMP_MM, "xmpMM:InstanceID"), instanceID);
    EXPECT_EQ(Subtree(meta, kXMP_NS_DM, "xmpDM:Tracks"), Subtree(clean, kXMP_NS_DM, "xmpDM:Tracks"));
}

TEST(InterruptedSave, PrepareForSaveKeepsTheListsItWroteAndCanBeRetried) {
    SXMPMeta source;
    source.SetProperty(kXMP_NS_XMP_MM, "xmpMM:InstanceID", "xmp.iid:source");
    source.SetProperty(kXMP_NS_DC, "dc:format", "video/mp4");
    SXMPMeta meta;
    meta.SetProperty(kXMP_NS_XMP_MM, "xmpMM:InstanceID", "xmp.iid:before");
    SXMPMeta clean = meta.Clone();
    auto edit = [&](XMPDocOpsTemporal& doc, SXMPMeta& target) {
        doc.OpenXMP(&target, "");
        doc.AddTrack("Markers", XMPTrack("Markers", 25, 1));
        doc.AddIngredientXMPTemporal(source, 0, 10 * kSecond, 5 * kSecond, 10 * kSecond, "", "", "linear");
        doc.NoteChange("/metadata");
    };
    XMPDocOpsTemporal cleanDoc;
    edit(cleanDoc, clean);
    cleanDoc.PrepareForSave("");

    XMPDocOpsTemporal doc;
    edit(doc, meta);
    BreakHistory(meta);
    EXPECT_THROW(doc.PrepareForSave(""), XMP_Error);

    for (const char* list : {"xmpMM:Ingredients", "xmpMM:Pantry"}) {
        EXPECT_EQ(Subtree(meta, kXMP_NS_XMP_MM, list), Subtree(clean, kXMP_NS_XMP_MM, list)) << list;
    }
    EXPECT_EQ(Subtree(meta, kXMP_NS_DM, "xmpDM:Tracks"), Subtree(clean, kXMP_NS_DM, "xmpDM:Tracks"));
    EXPECT_EQ(Property(meta, kXMP_NS_XMP_MM, "xmpMM:InstanceID"), "xmp.iid:before");

    MendHistory(meta);
    doc.PrepareForSave("");
    EXPECT_NE(Property(meta, kXMP_NS_XMP_MM, "xmpMM:InstanceID"), "xmp.iid:before");
}
