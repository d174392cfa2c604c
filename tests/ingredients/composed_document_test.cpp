#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ingredients_test_support.hpp"

namespace {

using namespace ingredients_test;

SXMPMeta Reparsed(const SXMPMeta& meta) {
    std::string packet;
    meta.SerializeToBuffer(&packet);
    return SXMPMeta(packet.c_str(), static_cast<XMP_StringLen>(packet.size()));
}

// "instanceID from to mapping mask" of every ingredient, in key order.
std::vector<std::string> Uses(XMPDocOpsTemporal& doc) {
    std::vector<std::string> uses;
    for (const I& i : Ingredients(doc)) {
        uses.push_back(Text(i, I::kIngredientFieldInstanceID) + " " + Text(i, I::kIngredientFieldFromPart) + " " +
                       Text(i, I::kIngredientFieldToPart) + " " + Text(i, I::kIngredientFieldPartMapping) + " " +
                       Text(i, I::kIngredientFieldMaskMarkers));
    }
    return uses;
}

std::string Use(const char* id, std::int64_t from, std::int64_t fromLength, std::int64_t to, std::int64_t toLength,
                const char* mapping, const char* mask) {
    return std::string(id) + " " + Part(from, fromLength) + " " + Part(to, toLength) + " " + mapping + " " + mask;
}

// Uses n1 [0,10) at [10,20), n2 [0,10) at [50,60), n3 [100,110) reversed at [20,30).
SXMPMeta Intermediate() {
    SXMPMeta meta = SourceDocument("xmp.iid:i", "Intermediate");
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    doc.AddIngredientXMPTemporal(SourceDocument("xmp.iid:n1", "N1"), 0, 10 * S, 10 * S, 10 * S, "", "", "linear");
    doc.AddIngredientXMPTemporal(SourceDocument("xmp.iid:n2", "N2"), 0, 10 * S, 50 * S, 10 * S, "", "", "linear");
    doc.AddIngredientXMPTemporal(SourceDocument("xmp.iid:n3", "N3"), 110 * S, -10 * S, 20 * S, 10 * S, "", "", "");
    doc.PrepareForSave("");
    return meta;
}

TEST(ComposedDocument, TwoLevelsSurviveAPacketRoundTrip) {
    const SXMPMeta intermediate = Intermediate();
    SXMPMeta top;
    XMPDocOpsTemporal writer;
    writer.OpenXMP(&top, "");
    writer.AddIngredientXMPTemporal(intermediate, 0, 60 * S, 0, 60 * S, "", "", "");
    writer.AddIngredientXMPTemporal(SourceDocument("xmp.iid:leaf", "Leaf"), 0, S, 60 * S, S, "", "", "");
    writer.PrepareForSave("");

    SXMPMeta reread = Reparsed(top);
    XMPDocOpsTemporal reader;
    reader.OpenXMP(&reread, "");
    EXPECT_EQ(Column(reader, I::kIngredientFieldKey),
              (std::vector<std::string>{"xmp.iid:i/time:0d60", "xmp.iid:leaf/time:0d1"}));
    EXPECT_FALSE(reader.IsDirty());
    reader.RemoveIngredient(0);     // reads the pantry, removes nothing
    EXPECT_TRUE(reader.IsDirty());  // a pantry read is written again
    reread.DeleteProperty(kXMP_NS_XMP_MM, "xmpMM:Pantry");
    reader.PrepareForSave("");
    EXPECT_EQ(PantryIDs(reread),
              (std::vector<std::string>{"xmp.iid:i", "xmp.iid:leaf", "xmp.iid:n1", "xmp.iid:n2", "xmp.iid:n3"}));

    SXMPMeta expected = intermediate.Clone();
    expected.DeleteProperty(kXMP_NS_XMP_MM, "xmpMM:Pantry");
    SXMPMeta stored = Extracted(reread, "xmp.iid:i");
    EXPECT_EQ(Nodes(stored), Nodes(expected));
    EXPECT_EQ(Nodes(Extracted(reread, "xmp.iid:n2")), Nodes(SourceDocument("xmp.iid:n2", "N2")));
    XMPDocOpsTemporal nested;
    nested.OpenXMP(&stored, "");
    EXPECT_EQ(Column(nested, I::kIngredientFieldKey),
              (std::vector<std::string>{"xmp.iid:n1/time:0d10", "xmp.iid:n2/time:0d10", "xmp.iid:n3/time:100d10"}));

    // One level up again: every document still once.
    SXMPMeta outer;
    XMPDocOpsTemporal outerDoc;
    outerDoc.OpenXMP(&outer, "");
    reread.SetProperty(kXMP_NS_XMP_MM, "xmpMM:InstanceID", "xmp.iid:top");
    outerDoc.AddIngredientXMPTemporal(reread, 0, S, 0, S, "", "", "");
    outerDoc.AddIngredientXMPTemporal(intermediate, 0, S, S, S, "", "", "");
    outerDoc.PrepareForSave("");
    EXPECT_EQ(PantryIDs(outer), (std::vector<std::string>{"xmp.iid:i", "xmp.iid:leaf", "xmp.iid:n1", "xmp.iid:n2",
                                                          "xmp.iid:n3", "xmp.iid:top"}));
}

TEST(ComposedDocument, FlatteningMapsNestedIngredientsInsideTheUsedSpan) {
    struct Case {
        const char* name;
        std::int64_t fromStart, fromDuration, toStart, toDuration;
        const char* mapping;
        bool mask;
        std::vector<std::string> nestedUses;
    };
    const Case cases[] = {
        {"linear",
         15,
         25,
         100,
         25,
         "linear",
         false,
         {Use("xmp.iid:n1", 5, 5, 100, 5, "linear", "None"),
          Use("xmp.iid:n3", 100, 10, 105, 10, "linear-reversed", "None")}},
        {"reversed and masked",
         15,
         25,
         100,
         25,
         "linear-reversed",
         true,
         {Use("xmp.iid:n1", 5, 5, 120, 5, "linear-reversed", "All"),
          Use("xmp.iid:n3", 100, 10, 110, 10, "linear", "All")}},
        {"half speed",
         10,
         20,
         0,
         10,
         "linear",
         false,
         {Use("xmp.iid:n1", 0, 10, 0, 5, "linear", "None"),
          Use("xmp.iid:n3", 100, 10, 5, 5, "linear-reversed", "None")}},
        {"part of a reversed one",
         25,
         10,
         0,
         10,
         "linear",
         false,
         {Use("xmp.iid:n3", 100, 5, 0, 5, "linear-reversed", "None")}},
        {"outside every nested span", 60, 10, 0, 10, "linear", false, {}},
    };
    const SXMPMeta intermediate = Intermediate();
    for (const Case& c : cases) {
        SXMPMeta meta;
        XMPDocOpsTemporal doc;
        doc.OpenXMP(&meta, "");
        doc.AddIngredientXMPTemporal(intermediate, c.fromStart * S, 1, 1, c.fromDuration * S, 1, 1, c.toStart * S, 1, 1,
                                     c.toDuration * S, 1, 1, "", "", c.mapping, c.mask, true);
        std::vector<std::string> uses = Uses(doc);
        ASSERT_FALSE(uses.empty()) << c.name;
        EXPECT_EQ(uses.front(), Use("xmp.iid:i", c.fromStart, c.fromDuration, c.toStart, c.toDuration, c.mapping,
                                    c.mask ? "All" : "None"))
            << c.name;
        uses.erase(uses.begin());
        EXPECT_EQ(uses, c.nestedUses) << c.name;
        doc.PrepareForSave("");  // the nested documents come along
        EXPECT_EQ(PantryIDs(meta), (std::vector<std::string>{"xmp.iid:i", "xmp.iid:n1", "xmp.iid:n2", "xmp.iid:n3"}));
    }
}

constexpr const char* kForeignPacket = R"(<x:xmpmeta xmlns:x="adobe:ns:meta/">
<rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#">
<rdf:Description rdf:about="" xmlns:xmpMM="http://ns.adobe.com/xap/1.0/mm/"
  xmlns:stRef="http://ns.adobe.com/xap/1.0/sType/ResourceRef#" xmlns:dc="http://purl.org/dc/elements/1.1/"
  xmlns:ext="http://example.com/ext/">
 <xmpMM:InstanceID>xmp.iid:foreign</xmpMM:InstanceID>
 <xmpMM:Ingredients><rdf:Seq>
  <rdf:li rdf:parseType="Resource"><stRef:instanceID>xmp.iid:one</stRef:instanceID>
   <stRef:fromPart>time:0d10</stRef:fromPart><stRef:toPart>time:5d10</stRef:toPart>
   <stRef:fileModTime>2020-02-02</stRef:fileModTime><ext:note>extra</ext:note></rdf:li>
  <rdf:li>not a struct</rdf:li>
  <rdf:li rdf:parseType="Resource"><stRef:fromPart>time:1d1</stRef:fromPart></rdf:li>
  <rdf:li rdf:parseType="Resource"><stRef:instanceID>xmp.iid:zero-rate</stRef:instanceID>
   <stRef:fromPart>time:5f0d1</stRef:fromPart></rdf:li>
  <rdf:li rdf:parseType="Resource"><stRef:instanceID>xmp.iid:struct-part</stRef:instanceID>
   <stRef:fromPart rdf:parseType="Resource"><ext:x>1</ext:x></stRef:fromPart></rdf:li>
 </rdf:Seq></xmpMM:Ingredients>
 <xmpMM:Pantry><rdf:Seq>
  <rdf:li>plain</rdf:li>
  <rdf:li rdf:parseType="Resource"><dc:format>no instance ID</dc:format></rdf:li>
  <rdf:li rdf:parseType="Resource"><xmpMM:InstanceID>xmp.iid:one</xmpMM:InstanceID>
   <dc:subject><rdf:Bag><rdf:li>a</rdf:li><rdf:li>b</rdf:li></rdf:Bag></dc:subject>
   <xmpMM:Pantry><rdf:Bag><rdf:li rdf:parseType="Resource"><xmpMM:InstanceID>xmp.iid:deep</xmpMM:InstanceID>
   </rdf:li></rdf:Bag></xmpMM:Pantry></rdf:li>
 </rdf:Seq></xmpMM:Pantry>
</rdf:Description></rdf:RDF></x:xmpmeta>)";

TEST(ComposedDocument, PacketOfAnotherWriterReadsWhatCanBeRead) {
    SXMPMeta meta(kForeignPacket, static_cast<XMP_StringLen>(std::string(kForeignPacket).size()));
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    EXPECT_EQ(Column(doc, I::kIngredientFieldKey),
              (std::vector<std::string>{"time:1d1", "xmp.iid:one/time:0d10", "xmp.iid:struct-part/time:0",
                                        "xmp.iid:zero-rate/time:0"}));
    EXPECT_EQ(Text(Ingredients(doc)[1], I::kIngredientFieldLastModifyDate), "2020-02-02");
    doc.AddIngredientXMPTemporal(SourceDocument("xmp.iid:new", "New"), 0, S, 0, S, "", "", "");
    doc.PrepareForSave("");
    EXPECT_EQ(PantryIDs(meta), (std::vector<std::string>{"xmp.iid:deep", "xmp.iid:new", "xmp.iid:one"}));
    const SXMPMeta one = Extracted(meta, "xmp.iid:one");
    EXPECT_EQ(one.CountArrayItems(kXMP_NS_DC, "dc:subject"), 2);
    EXPECT_FALSE(one.DoesPropertyExist(kXMP_NS_XMP_MM, "xmpMM:Pantry"));

    // Flattened, the items whose parts can be placed come along; the zero-rate one cannot.
    XMPDocOpsTemporal user;
    user.AddIngredientXMPTemporal(
        SXMPMeta(kForeignPacket, static_cast<XMP_StringLen>(std::string(kForeignPacket).size())), 0, 1, 1, 20 * S, 1, 1,
        0, 1, 1, 20 * S, 1, 1, "", "", "", false, true);
    EXPECT_EQ(Ingredients(user).size(), 4u);
}

TEST(ComposedDocument, ListsThatAreNotArraysReadEmpty) {
    SXMPMeta meta;
    meta.SetProperty(kXMP_NS_XMP_MM, "xmpMM:Ingredients", "text");
    meta.SetProperty(kXMP_NS_XMP_MM, "xmpMM:Pantry", "", kXMP_PropValueIsStruct);
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    doc.RemoveIngredient(1);
    EXPECT_TRUE(Ingredients(doc).empty());
    doc.AddIngredientXMPTemporal(SourceDocument("xmp.iid:a", "A"), 0, S, 0, S, "", "", "");
    doc.PrepareForSave("");
    EXPECT_EQ(meta.CountArrayItems(kXMP_NS_XMP_MM, "xmpMM:Ingredients"), 1);
    EXPECT_EQ(PantryIDs(meta), (std::vector<std::string>{"xmp.iid:a"}));
}

}  // namespace
