#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ingredients_test_support.hpp"

namespace {

using namespace ingredients_test;

// A document that uses `sources` and so carries them in its pantry.
SXMPMeta Composed(const char* instanceID, const std::vector<SXMPMeta>& sources) {
    SXMPMeta meta = SourceDocument(instanceID, instanceID);
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    for (const SXMPMeta& source : sources) {
        doc.AddIngredientXMPTemporal(source, 0, S, 0, S, "", "", "");
    }
    doc.PrepareForSave("");
    return meta;
}

TEST(Pantry, LookupFindsTheDocumentItselfFirstThenItemsInOrder) {
    const SXMPMeta meta = Composed("xmp.iid:top", {SourceDocument("xmp.iid:a", "A"), SourceDocument("xmp.iid:b", "B")});
    std::string path = "stale";
    EXPECT_TRUE(XMPDocOpsTemporal::LookupXMPPantryPathGivenInstanceId(meta, "xmp.iid:top", &path));
    EXPECT_EQ(path, "");
    EXPECT_TRUE(XMPDocOpsTemporal::LookupXMPPantryPathGivenInstanceId(meta, "xmp.iid:b", &path));
    EXPECT_EQ(path, "xmpMM:Pantry[2]");
    EXPECT_FALSE(XMPDocOpsTemporal::LookupXMPPantryPathGivenInstanceId(meta, "xmp.iid:none", &path));
    EXPECT_FALSE(XMPDocOpsTemporal::LookupXMPPantryPathGivenInstanceId(meta, "", &path));
    EXPECT_EQ(path, "xmpMM:Pantry[2]");
}

TEST(Pantry, NestedPantryIsFlattenedAndTheSourceIsSharedNotCopied) {
    SXMPMeta source = Composed("xmp.iid:s", {SourceDocument("xmp.iid:a", "A"), SourceDocument("xmp.iid:b", "B")});
    SXMPMeta meta = SourceDocument("xmp.iid:top", "Top");
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    doc.RemoveIngredient(1);  // reads a document without a pantry
    EXPECT_FALSE(doc.IsDirty());
    doc.AddIngredientXMPTemporal(source, 0, S, 0, S, "", "", "");
    source.SetProperty(kXMP_NS_DC, "dc:rights", "edited after adding");
    doc.PrepareForSave("");
    EXPECT_EQ(PantryIDs(meta), (std::vector<std::string>{"xmp.iid:a", "xmp.iid:b", "xmp.iid:s"}));
    const SXMPMeta stored = Extracted(meta, "xmp.iid:s");
    EXPECT_EQ(Property(stored, kXMP_NS_DC, "dc:rights"), "edited after adding");
    EXPECT_FALSE(stored.DoesPropertyExist(kXMP_NS_XMP_MM, "xmpMM:Pantry"));
    const SXMPMeta sourceA = SourceDocument("xmp.iid:a", "A");
    ASSERT_EQ(sourceA.CountArrayItems(kXMP_NS_DC, "dc:title"), 4);  // the trap entry is really there
    EXPECT_EQ(Nodes(Extracted(meta, "xmp.iid:a")), Nodes(sourceA));
}

TEST(Pantry, ExtractCopiesTheWholeDocumentOrRefusesANullOutput) {
    SXMPMeta meta = Composed("xmp.iid:top", {SourceDocument("xmp.iid:a", "A")});
    SXMPMeta copy;
    XMPDocOpsTemporal::ExtractXMPMetaFromPantry(&copy, meta, "");
    EXPECT_EQ(Nodes(copy), Nodes(meta));
    SXMPMeta sameTree(meta);  // extracting into a handle on the document itself
    XMPDocOpsTemporal::ExtractXMPMetaFromPantry(&sameTree, meta, "xmpMM:Pantry[1]");
    EXPECT_EQ(Nodes(meta), Nodes(SourceDocument("xmp.iid:a", "A")));
    EXPECT_THROW(XMPDocOpsTemporal::ExtractXMPMetaFromPantry(nullptr, meta, ""), XMP_Error);
}

TEST(Pantry, TemplateIsAppliedToEveryStoredDocumentAndSurvivesTheSave) {
    SXMPMeta meta;
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    SXMPMeta source = SourceDocument("xmp.iid:a", "A");
    doc.AddIngredientXMPTemporal(source, 0, S, 0, S, "", "", "");  // pending until applied
    doc.AddIngredientXMPTemporal(SourceDocument("xmp.iid:b", "B"), 0, S, 0, S, "", "", "");
    SXMPMeta templ;
    templ.SetProperty(kXMP_NS_DC, "dc:rights", "licensed");
    templ.SetLocalizedText(kXMP_NS_DC, "dc:title", "", "x-default", "Template title");
    doc.ApplyTemplateToPantry(templ, kXMPTemplate_ClearUnnamedProperties | kXMPTemplate_AddNewProperties);
    doc.PrepareForSave("");
    for (const char* id : {"xmp.iid:a", "xmp.iid:b"}) {
        const SXMPMeta stored = Extracted(meta, id);
        EXPECT_EQ(Property(stored, kXMP_NS_DC, "dc:rights"), "licensed");
        EXPECT_FALSE(stored.DoesPropertyExist(kXMP_NS_DM, "xmpDM:Tracks"));  // not named by the template
        EXPECT_TRUE(stored.DoesPropertyExist(kXMP_NS_DC, "dc:title"));
        EXPECT_EQ(Property(stored, kXMP_NS_XMP_MM, "xmpMM:InstanceID"), id);  // identity is left alone
    }
    EXPECT_FALSE(source.DoesPropertyExist(kXMP_NS_DC, "dc:rights"));  // the caller's document is untouched
}

TEST(Pantry, StripLeavesOnlyTheInstanceID) {
    SXMPMeta meta = Composed("xmp.iid:top", {SourceDocument("xmp.iid:a", "A")});
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    doc.AddIngredientXMPTemporal(SourceDocument("xmp.iid:b", "B"), 0, S, 0, S, "", "", "");
    doc.StripXMPExceptInstanceID();
    EXPECT_TRUE(Ingredients(doc).empty());
    EXPECT_EQ(doc.TrackListIteratorBegin(), doc.TrackListIteratorEnd());
    doc.PrepareForSave("");
    EXPECT_EQ(Nodes(meta), (std::vector<std::string>{"xmpMM:InstanceID=xmp.iid:top (0)"}));

    SXMPMeta anonymous;
    anonymous.SetProperty(kXMP_NS_DC, "dc:source", "x");
    XMPDocOpsTemporal other;
    other.OpenXMP(&anonymous, "");
    other.StripXMPExceptInstanceID();
    EXPECT_TRUE(Nodes(anonymous).empty());
}

}  // namespace
