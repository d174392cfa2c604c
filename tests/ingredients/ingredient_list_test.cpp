#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ingredients_test_support.hpp"

namespace {

using namespace ingredients_test;
using I = XMP_internalIngredient;

std::string Item(int index, const char* field) {
    return "xmpMM:Ingredients[" + std::to_string(index) + "]/stRef:" + field;
}

TEST(IngredientRecord, FieldsAreAddressedByNumberOneToTwentyTwo) {
    std::vector<std::string> texts;
    for (int field = 1; field <= 22; ++field) {
        texts.push_back("f" + std::to_string(field));
    }
    const auto at = [&](int field) { return texts[static_cast<std::size_t>(field - 1)].c_str(); };
    I ingredient(at(1), at(2), at(3), at(4), at(5), at(6), at(7), at(8), at(9), at(10), at(11), at(12), at(13),
                 at(14), at(15), at(16), at(17), at(18), at(19), at(20), at(21), at(22));
    std::string value = "stale";
    for (int field = 1; field <= 22; ++field) {
        ingredient.GetIngredientField(&value, static_cast<Field>(field));
        EXPECT_EQ(value, at(field));
    }
    for (int outside : {0, 23, -1}) {
        ingredient.SetIngredientField(static_cast<Field>(outside), "ignored");
        ingredient.GetIngredientField(&value, static_cast<Field>(outside));
        EXPECT_EQ(value, "");
        EXPECT_EQ(ingredient.GetIngredientFieldPtr(static_cast<Field>(outside)), nullptr);
    }
    ingredient.SetIngredientField(I::kIngredientFieldManager, nullptr);
    EXPECT_EQ(Text(ingredient, I::kIngredientFieldManager), "");
}

TEST(IngredientList, WriteAndReadBackKeepsTheRequiredAsymmetries) {
    SXMPMeta meta;
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    EXPECT_TRUE(Ingredients(doc).empty());
    SXMPMeta source = SourceDocument("xmp.iid:src", "Source");
    doc.AddIngredientXMP(source, "time:0d10", "time:5d10", "form", "category", "/clip.mov", "alt", "2024-01-01",
                         "72", "73", "inch");
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
    EXPECT_EQ(Text(read[0], I::kIngredientFieldLinkForm), "form");
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
    const auto entry = doc.IngredientListIteratorBegin();
    for (int field = 2; field <= 22; ++field) {
        entry->second.SetIngredientField(static_cast<Field>(field), "");
    }
    doc.PrepareForSave("");
    ASSERT_EQ(meta.CountArrayItems(kXMP_NS_XMP_MM, "xmpMM:Ingredients"), 1);
    XMP_OptionBits options = 0;
    meta.GetProperty(kXMP_NS_XMP_MM, "xmpMM:Ingredients[1]", nullptr, &options);
    EXPECT_NE(options & kXMP_PropValueIsStruct, 0u);
    SXMPIterator fields(meta, kXMP_NS_XMP_MM, "xmpMM:Ingredients[1]", kXMP_IterJustChildren);
    EXPECT_FALSE(fields.Next());
}

struct ReversalCase {
    std::int64_t fromStart, fromDuration, toStart, toDuration;
    const char* mapping;
    std::int64_t expectedFromStart, expectedFromDuration, expectedToStart, expectedToDuration;
    const char* expectedMapping;
};

TEST(IngredientList, ReversedSpansAreHeldForwardsWithTheMappingFlipped) {
    const ReversalCase cases[] = {
        {500, -100, 0, 100, "linear", 400, 100, 0, 100, "linear-reversed"},
        {500, -100, 0, 100, "", 400, 100, 0, 100, "linear-reversed"},
        {500, -100, 0, 100, "linear-reversed", 400, 100, 0, 100, "linear"},
        {0, 100, 300, -100, "linear", 0, 100, 200, 100, "linear-reversed"},
        {500, -100, 300, -100, "linear", 400, 100, 200, 100, "linear"},
        {500, -100, 0, 100, "custom", 400, 100, 0, 100, "custom"},
    };
    for (const ReversalCase& c : cases) {
        XMPDocOpsTemporal doc;
        doc.AddIngredientXMPTemporal(SourceDocument("xmp.iid:r", "R"), c.fromStart * kSecond, c.fromDuration * kSecond,
                                     c.toStart * kSecond, c.toDuration * kSecond, "", "", c.mapping);
        const std::vector<I> list = Ingredients(doc);
        ASSERT_EQ(list.size(), 1u);
        EXPECT_EQ(Text(list[0], I::kIngredientFieldFromPart),
                  Part(c.expectedFromStart * kSecond, c.expectedFromDuration * kSecond));
        EXPECT_EQ(Text(list[0], I::kIngredientFieldToPart),
                  Part(c.expectedToStart * kSecond, c.expectedToDuration * kSecond));
        EXPECT_EQ(Text(list[0], I::kIngredientFieldPartMapping), c.expectedMapping);
    }
}

TEST(IngredientList, SourceWithoutInstanceIDIsGivenOneAndEmptyFieldsComeFromIt) {
    SXMPMeta source;
    source.SetProperty(kXMP_NS_XMP_MM, "xmpMM:Manager", "asset manager");
    source.SetProperty(kXMP_NS_XMP_MM, "xmpMM:filePath", "/from/source");
    XMPDocOpsTemporal doc;
    doc.AddIngredientXMPTemporal(source, 0, 1, 1, kSecond, 1, 1, 0, 1, 1, kSecond, 1, 1, "", "", "", true);
    const std::string given = InstanceID(source);  // the caller's own object
    EXPECT_EQ(given.rfind("xmp.iid:", 0), 0u);
    const I ingredient = Ingredients(doc).at(0);
    EXPECT_EQ(Text(ingredient, I::kIngredientFieldInstanceID), given);
    EXPECT_EQ(Text(ingredient, I::kIngredientFieldManager), "asset manager");
    EXPECT_EQ(Text(ingredient, I::kIngredientFieldFilePath), "/from/source");
    EXPECT_EQ(Text(ingredient, I::kIngredientFieldMaskMarkers), "All");
}

TEST(IngredientList, KeyOrdersTheListAndOneSpanOfOneSourceIsKeptOnce) {
    XMPDocOpsTemporal doc;
    const SXMPMeta b = SourceDocument("xmp.iid:b", "B");
    const SXMPMeta a = SourceDocument("xmp.iid:a", "A");
    doc.AddIngredientXMPTemporal(b, 0, kSecond, 0, kSecond, "first", "", "");
    doc.AddIngredientXMPTemporal(b, 0, kSecond, 9 * kSecond, kSecond, "second", "", "");
    doc.AddIngredientXMPTemporal(b, 2 * kSecond, kSecond, 0, kSecond, "", "", "");
    doc.AddIngredientXMPTemporal(a, 0, kSecond, 0, kSecond, "", "", "");
    std::vector<std::string> keys;
    for (const I& ingredient : Ingredients(doc)) {
        keys.push_back(Text(ingredient, I::kIngredientFieldKey));
    }
    EXPECT_EQ(keys, (std::vector<std::string>{"xmp.iid:a/time:0d1", "xmp.iid:b/time:0d1", "xmp.iid:b/time:2d1"}));
    EXPECT_EQ(Text(Ingredients(doc)[1], I::kIngredientFieldFilePath), "first");
}

TEST(IngredientList, RemovalDropsThePantryEntryWithTheLastUseOfItsSource) {
    SXMPMeta meta;
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    const SXMPMeta shared = SourceDocument("xmp.iid:shared", "Shared");
    doc.AddIngredientXMPTemporal(shared, 0, kSecond, 0, kSecond, "", "", "");
    doc.AddIngredientXMPTemporal(shared, 5 * kSecond, kSecond, kSecond, kSecond, "", "", "");
    doc.AddIngredientXMPTemporal(SourceDocument("xmp.iid:z", "Z"), 0, kSecond, 0, kSecond, "", "", "");
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
    XMPDocOpsTemporal reader;
    reader.OpenXMP(&meta, "");
    EXPECT_TRUE(Ingredients(reader).empty());
}

TEST(IngredientList, BadPartStringIsRefusedBeforeAnythingChanges) {
    XMPDocOpsTemporal doc;
    SXMPMeta source;
    try {
        doc.AddIngredientXMP(source, "time:5f0d1", "time:0", "", "", "", "", "", "", "", "");
        FAIL() << "accepted a zero rate";
    } catch (const XMP_Error& error) {
        EXPECT_EQ(error.GetID(), kXMPErr_BadValue);
    }
    EXPECT_EQ(InstanceID(source), "");
    EXPECT_TRUE(Ingredients(doc).empty());
    EXPECT_FALSE(doc.IsDirty());
}

}  // namespace
