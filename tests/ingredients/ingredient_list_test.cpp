#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ingredients_test_support.hpp"

namespace {

using namespace ingredients_test;

std::string Item(int index, const char* field) {
    return "xmpMM:Ingredients[" + std::to_string(index) + "]/stRef:" + field;
}

TEST(IngredientList, WriteAndReadBackKeepsTheRequiredAsymmetries) {
    SXMPMeta meta;
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    doc.AddIngredientXMP(SourceDocument("xmp.iid:src", "Source"), "time:0d10", "time:5d10", "form", "category",
                         "/clip.mov", "alt", "2024-01-01", "72", "73", "inch");
    doc.PrepareForSave("");
    EXPECT_EQ(Property(meta, kXMP_NS_XMP_MM, Item(1, "lastModifyDate")), "2024-01-01");
    EXPECT_EQ(Property(meta, kXMP_NS_XMP_MM, Item(1, "placedXResolution")), "72");
    EXPECT_EQ(Property(meta, kXMP_NS_XMP_MM, Item(1, "documentID")), "xmp.did:Source");  // from the source
    EXPECT_EQ(Property(meta, kXMP_NS_XMP_MM, Item(1, "maskMarkers")), "None");
    EXPECT_FALSE(meta.DoesPropertyExist(kXMP_NS_XMP_MM, Item(1, "fileModTime").c_str()));

    // Field 18 reads from fileModTime, 19..21 from top-level properties.
    meta.SetStructField(kXMP_NS_XMP_MM, "xmpMM:Ingredients[1]", kXMP_NS_XMP_ResourceRef, "fileModTime", "modtime");
    meta.SetProperty(kXMP_NS_XMP_MM, "xmpMM:placedYResolution", "top");
    XMPDocOpsTemporal reader;
    reader.OpenXMP(&meta, "");
    const std::vector<I> read = Ingredients(reader);
    ASSERT_EQ(read.size(), 1u);
    EXPECT_EQ(Text(read[0], I::kIngredientFieldLastModifyDate), "modtime");
    EXPECT_EQ(Text(read[0], I::kIngredientFieldPlacedXResolution), "");
    EXPECT_EQ(Text(read[0], I::kIngredientFieldPlacedYResolution), "top");
    EXPECT_EQ(Text(read[0], I::kIngredientFieldKey), "xmp.iid:src/time:0d10");
}

TEST(IngredientList, EmptyListWritesNothingAndEmptyFieldsGiveAnEmptyItem) {
    SXMPMeta meta;
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    doc.IngredientListChanged();
    doc.PrepareForSave("");
    EXPECT_FALSE(meta.DoesPropertyExist(kXMP_NS_XMP_MM, "xmpMM:Ingredients"));

    doc.AddIngredientXMP(SXMPMeta(), "", "", "", "", "", "", "", "", "", "");
    I& ingredient = doc.IngredientListIteratorBegin()->second;
    for (int field = 2; field <= 22; ++field) {
        ingredient.SetIngredientField(static_cast<Field>(field), "");
    }
    for (const int outside : {0, 23}) {  // fields outside the numbering are ignored
        ingredient.SetIngredientField(static_cast<Field>(outside), "ignored");
        EXPECT_EQ(ingredient.GetIngredientFieldPtr(static_cast<Field>(outside)), nullptr);
    }
    doc.PrepareForSave("");
    ASSERT_EQ(meta.CountArrayItems(kXMP_NS_XMP_MM, "xmpMM:Ingredients"), 1);
    SXMPIterator fields(meta, kXMP_NS_XMP_MM, "xmpMM:Ingredients[1]", kXMP_IterJustChildren);
    EXPECT_FALSE(fields.Next());
}

TEST(IngredientList, ReversedSpansAreHeldForwardsWithTheMappingFlipped) {
    struct Case {
        std::int64_t fromStart, fromDuration, toStart, toDuration;
        const char* mapping;
        std::int64_t fromStartHeld, fromDurationHeld, toStartHeld, toDurationHeld;
        const char* mappingHeld;
    };
    const Case cases[] = {
        {500, -100, 0, 100, "linear", 400, 100, 0, 100, "linear-reversed"},
        {500, -100, 0, 100, "", 400, 100, 0, 100, "linear-reversed"},
        {500, -100, 0, 100, "linear-reversed", 400, 100, 0, 100, "linear"},
        {0, 100, 300, -100, "linear", 0, 100, 200, 100, "linear-reversed"},
        {500, -100, 300, -100, "linear", 400, 100, 200, 100, "linear"},
        {500, -100, 0, 100, "custom", 400, 100, 0, 100, "custom"},
    };
    for (const Case& c : cases) {
        XMPDocOpsTemporal doc;
        doc.AddIngredientXMPTemporal(SourceDocument("xmp.iid:r", "R"), c.fromStart * S, c.fromDuration * S,
                                     c.toStart * S, c.toDuration * S, "", "", c.mapping);
        EXPECT_EQ(Column(doc, I::kIngredientFieldFromPart),
                  std::vector<std::string>{Part(c.fromStartHeld, c.fromDurationHeld)});
        EXPECT_EQ(Column(doc, I::kIngredientFieldToPart),
                  std::vector<std::string>{Part(c.toStartHeld, c.toDurationHeld)});
        EXPECT_EQ(Column(doc, I::kIngredientFieldPartMapping), std::vector<std::string>{c.mappingHeld});
    }
}

TEST(IngredientList, SourceWithoutInstanceIDIsGivenOneAndEmptyFieldsComeFromIt) {
    SXMPMeta source;
    source.SetProperty(kXMP_NS_XMP_MM, "xmpMM:Manager", "asset manager");
    XMPDocOpsTemporal doc;
    doc.AddIngredientXMPTemporal(source, 0, 1, 1, S, 1, 1, 0, 1, 1, S, 1, 1, "", "", "", true);
    const std::string given = Property(source, kXMP_NS_XMP_MM, "xmpMM:InstanceID");  // the caller's own object
    EXPECT_EQ(given.rfind("xmp.iid:", 0), 0u);
    const I ingredient = Ingredients(doc).at(0);
    EXPECT_EQ(Text(ingredient, I::kIngredientFieldInstanceID), given);
    EXPECT_EQ(Text(ingredient, I::kIngredientFieldManager), "asset manager");
    EXPECT_EQ(Text(ingredient, I::kIngredientFieldMaskMarkers), "All");
}

TEST(IngredientList, KeyOrdersTheListAndOneSpanOfOneSourceIsKeptOnce) {
    XMPDocOpsTemporal doc;
    const SXMPMeta b = SourceDocument("xmp.iid:b", "B");
    doc.AddIngredientXMPTemporal(b, 0, S, 0, S, "first", "", "");
    doc.AddIngredientXMPTemporal(b, 0, S, 9 * S, S, "second", "", "");
    doc.AddIngredientXMPTemporal(b, 2 * S, S, 0, S, "", "", "");
    doc.AddIngredientXMPTemporal(SourceDocument("xmp.iid:a", "A"), 0, S, 0, S, "", "", "");
    EXPECT_EQ(Column(doc, I::kIngredientFieldKey),
              (std::vector<std::string>{"xmp.iid:a/time:0d1", "xmp.iid:b/time:0d1", "xmp.iid:b/time:2d1"}));
    EXPECT_EQ(Column(doc, I::kIngredientFieldFilePath), (std::vector<std::string>{"", "first", ""}));
}

TEST(IngredientList, RemovalDropsThePantryEntryWithTheLastUseOfItsSource) {
    SXMPMeta meta;
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    const SXMPMeta shared = SourceDocument("xmp.iid:shared", "Shared");
    doc.AddIngredientXMPTemporal(shared, 0, S, 0, S, "", "", "");
    doc.AddIngredientXMPTemporal(shared, 5 * S, S, S, S, "", "", "");
    doc.AddIngredientXMPTemporal(SourceDocument("xmp.iid:z", "Z"), 0, S, 0, S, "", "", "");
    doc.RemoveIngredient(0);
    doc.RemoveIngredient(4);
    EXPECT_EQ(Ingredients(doc).size(), 3u);

    doc.RemoveIngredient(1);  // one use of "shared" remains
    doc.PrepareForSave("");
    EXPECT_EQ(PantryIDs(meta), (std::vector<std::string>{"xmp.iid:shared", "xmp.iid:z"}));
    doc.RemoveIngredient(doc.IngredientListIteratorBegin());
    doc.PrepareForSave("");
    EXPECT_EQ(PantryIDs(meta), (std::vector<std::string>{"xmp.iid:z"}));
    EXPECT_EQ(meta.CountArrayItems(kXMP_NS_XMP_MM, "xmpMM:Ingredients"), 1);

    doc.ClearIngredients();
    doc.PrepareForSave("");
    EXPECT_FALSE(meta.DoesPropertyExist(kXMP_NS_XMP_MM, "xmpMM:Ingredients"));
    EXPECT_FALSE(meta.DoesPropertyExist(kXMP_NS_XMP_MM, "xmpMM:Pantry"));
}

}  // namespace
