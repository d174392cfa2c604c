#include <gtest/gtest.h>

#include <regex>
#include <string>

#include <xmptoolkit/XMP.hpp>

namespace {

std::string Get(const SXMPMeta& meta, const std::string& path, XMP_StringPtr ns = kXMP_NS_XMP_MM) {
    std::string value;
    meta.GetProperty(ns, path.c_str(), &value, nullptr);
    return value;
}

std::string EventField(const SXMPMeta& meta, XMP_Index index, const std::string& field) {
    return Get(meta, "History[" + std::to_string(index) + "]/stEvt:" + field);
}

const std::regex kGuidText("[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}");
const std::regex kDateWithZone(R"(\d{4}-\d\d-\d\dT\d\d:\d\d(:\d\d(\.\d+)?)?(Z|[+-]\d\d:\d\d))");

bool IsID(const std::string& id, const std::string& prefix) {
    return id.starts_with(prefix) && std::regex_match(id.substr(prefix.size()), kGuidText);
}

TEST(DocOps, NewXMPGivesIdsFormatAndACreatedEvent) {
    SXMPMeta meta;
    SXMPDocOps doc;
    doc.SetAppName("docops test 1.0");
    doc.NewXMP(&meta, "video/mp4");

    EXPECT_TRUE(doc.IsDirty());
    EXPECT_TRUE(IsID(Get(meta, "DocumentID"), "xmp.did:"));
    EXPECT_EQ(Get(meta, "OriginalDocumentID"), Get(meta, "DocumentID"));
    EXPECT_TRUE(IsID(Get(meta, "InstanceID"), "xmp.iid:"));
    EXPECT_EQ(Get(meta, "format", kXMP_NS_DC), "video/mp4");
    ASSERT_EQ(meta.CountArrayItems(kXMP_NS_XMP_MM, "History"), 1);
    EXPECT_EQ(EventField(meta, 1, "action"), "created");
    EXPECT_EQ(EventField(meta, 1, "instanceID"), Get(meta, "InstanceID"));
    EXPECT_EQ(EventField(meta, 1, "softwareAgent"), "docops test 1.0");
    EXPECT_TRUE(std::regex_match(EventField(meta, 1, "when"), kDateWithZone)) << EventField(meta, 1, "when");
}

TEST(DocOps, SavesRecordNotedPartsAndAnswerPartQueries) {
    SXMPMeta meta;
    SXMPDocOps doc;
    doc.NewXMP(&meta, "");
    const std::string created = Get(meta, "InstanceID");
    doc.PrepareForSave("");  // nothing noted: the event names no parts
    const std::string save1 = Get(meta, "InstanceID");
    doc.NoteChange("/metadata");
    doc.NoteChange({"/content/audio", "/metadata"});
    EXPECT_TRUE(doc.IsDirty());
    doc.PrepareForSave("audio/wav");
    const std::string save2 = Get(meta, "InstanceID");
    doc.NoteChange("/content/video");
    doc.PrepareForSave("");
    const std::string save3 = Get(meta, "InstanceID");
    EXPECT_FALSE(doc.IsDirty());
    doc.PrepareForSave("");  // clean: no event

    ASSERT_EQ(meta.CountArrayItems(kXMP_NS_XMP_MM, "History"), 4);
    EXPECT_EQ(EventField(meta, 2, "action"), "saved");
    EXPECT_EQ(EventField(meta, 2, "changed"), "");
    EXPECT_EQ(EventField(meta, 3, "changed"), "/metadata;/content/audio");
    EXPECT_EQ(EventField(meta, 4, "changed"), "/content/video");
    EXPECT_EQ(EventField(meta, 4, "instanceID"), save3);
    EXPECT_TRUE(created != save1 && save1 != save2 && save2 != save3);
    EXPECT_EQ(Get(meta, "format", kXMP_NS_DC), "audio/wav");
    for (const char* name : {"MetadataDate", "ModifyDate"})
        EXPECT_TRUE(std::regex_match(Get(meta, name, kXMP_NS_XMP), kDateWithZone)) << name;

    const struct {
        std::vector<XMP_StringPtr> parts;
        std::string changeID;
    } changeIDs[] = {
        {{"/metadata"}, save2},           {{"/metadata/xmpDM"}, save2},
        {{"/content/audio"}, save2},      {{"/content"}, save3},
        {{"/content/video/left"}, save3}, {{"/"}, save3},
        {{"/thumbnail"}, save1},          {{"/metadata", "/content/audio"}, save2},
    };
    for (const auto& row : changeIDs) {
        std::string id;
        EXPECT_TRUE(doc.GetPartChangeID(row.parts, &id));
        EXPECT_EQ(id, row.changeID) << row.parts.front();
    }

    const struct {
        std::string since;
        std::vector<XMP_StringPtr> parts;
        bool changed;
    } hasChanged[] = {
        {save2, {"/metadata"}, false},
        {save2, {"/content/video"}, true},
        {save2, {"/content/audio"}, false},
        {save1, {"/metadata"}, true},
        {save3, {"/"}, false},
        {save2, {"/metadata", "/content"}, true},
        {"xmp.iid:unknown", {"/metadata"}, true},
    };
    for (const auto& row : hasChanged)
        EXPECT_EQ(doc.HasPartChanged(row.since.c_str(), row.parts), row.changed)
            << row.since << " " << row.parts.back();
}

TEST(DocOps, BranchXMPMakesAnIndependentDerivedDocument) {
    SXMPMeta sourceMeta;
    SXMPDocOps source;
    source.NewXMP(&sourceMeta, "video/mp4");
    source.PrepareForSave("");
    std::string sourcePacket;
    sourceMeta.SerializeToBuffer(&sourcePacket);

    SXMPMeta derivedMeta;
    SXMPDocOps derived;
    source.BranchXMP(&derived, &derivedMeta, "image/png");

    EXPECT_TRUE(derived.IsDirty());
    EXPECT_TRUE(IsID(Get(derivedMeta, "DocumentID"), "xmp.did:"));
    EXPECT_NE(Get(derivedMeta, "DocumentID"), Get(sourceMeta, "DocumentID"));
    EXPECT_NE(Get(derivedMeta, "InstanceID"), Get(sourceMeta, "InstanceID"));
    EXPECT_EQ(Get(derivedMeta, "OriginalDocumentID"), Get(sourceMeta, "OriginalDocumentID"));
    for (const auto& [field, property] : {std::pair{"instanceID", "InstanceID"}, std::pair{"documentID", "DocumentID"},
                                          std::pair{"originalDocumentID", "OriginalDocumentID"}})
        EXPECT_EQ(Get(derivedMeta, std::string("DerivedFrom/stRef:") + field), Get(sourceMeta, property)) << field;
    ASSERT_EQ(derivedMeta.CountArrayItems(kXMP_NS_XMP_MM, "History"), 3);
    EXPECT_EQ(EventField(derivedMeta, 3, "action"), "derived");
    EXPECT_EQ(EventField(derivedMeta, 3, "instanceID"), Get(derivedMeta, "InstanceID"));

    derivedMeta.SetProperty(kXMP_NS_DC, "source", "edited");
    EXPECT_TRUE(derived.GetMeta().DoesPropertyExist(kXMP_NS_DC, "source")) << "the derived document is bound";
    std::string sourceAfter;
    sourceMeta.SerializeToBuffer(&sourceAfter);
    EXPECT_EQ(sourceAfter, sourcePacket) << "the source is not touched";

    EXPECT_THROW(source.BranchXMP(nullptr, &derivedMeta, ""), XMP_Error);
}

TEST(DocOps, PartNamesMustStartWithASlash) {
    SXMPMeta meta;
    SXMPDocOps doc;
    doc.OpenXMP(&meta, "");
    for (const char* part : {"metadata", "", static_cast<const char*>(nullptr)}) {
        try {
            doc.NoteChange(std::vector<XMP_StringPtr>{"/content", part});
            ADD_FAILURE() << "no error for a bad part name";
        } catch (const XMP_Error& error) {
            EXPECT_EQ(error.GetID(), kXMPErr_BadParam);
            EXPECT_NE(std::string(error.GetErrMsg()).find(part ? part : "(null)"), std::string::npos);
        }
    }
    EXPECT_FALSE(doc.IsDirty()) << "a rejected note notes nothing";
    EXPECT_THROW(doc.GetPartChangeID("content", nullptr), XMP_Error);
}

TEST(DocOps, OpenXMPLeavesTheDocumentAloneAndEnsureIDsExistFillsOnlyWhatIsMissing) {
    SXMPMeta meta;
    meta.SetProperty(kXMP_NS_XMP_MM, "DocumentID", "xmp.did:kept");
    SXMPDocOps doc;
    doc.OpenXMP(&meta, "");
    doc.PrepareForSave("image/png");
    EXPECT_FALSE(meta.DoesPropertyExist(kXMP_NS_DC, "format")) << "a clean document is not saved";
    EXPECT_FALSE(doc.GetPartChangeID("/", nullptr));
    EXPECT_TRUE(doc.HasPartChanged("xmp.iid:1", "/metadata")) << "an instance missing from the history";
    doc.EnsureIDsExist();
    EXPECT_EQ(Get(meta, "DocumentID"), "xmp.did:kept");
    EXPECT_EQ(Get(meta, "OriginalDocumentID"), "xmp.did:kept");
    EXPECT_TRUE(IsID(Get(meta, "InstanceID"), "xmp.iid:"));
    EXPECT_TRUE(doc.IsDirty());
    std::string first;
    SXMPDocOps::CreateID("urn:test:", &first);
    EXPECT_TRUE(IsID(first, "urn:test:"));
}

}  // namespace
