// Which documents the collector visits: the mask bits, masked and missing
// ingredients, malformed items, the no-repeat mode, cycles and the depth bound.

#include <initializer_list>
#include <string>

#include <gtest/gtest.h>

#include "collector_test_support.hpp"

namespace {

using namespace collector_test;
using Lines = std::vector<std::string>;
using C = XMPTemporalMetadataCollector;

// An ingredient item written directly, as another writer might.
void AppendUse(SXMPMeta& meta, const std::string& listPath, const char* instanceID, const char* fromPart,
               const char* toPart) {
    meta.AppendArrayItem(kXMP_NS_XMP_MM, listPath.c_str(), kXMP_PropValueIsArray, "", kXMP_PropValueIsStruct);
    const std::string item = listPath + "[last()]";
    meta.SetStructField(kXMP_NS_XMP_MM, item.c_str(), kXMP_NS_XMP_ResourceRef, "instanceID", instanceID);
    meta.SetStructField(kXMP_NS_XMP_MM, item.c_str(), kXMP_NS_XMP_ResourceRef, "fromPart", fromPart);
    meta.SetStructField(kXMP_NS_XMP_MM, item.c_str(), kXMP_NS_XMP_ResourceRef, "toPart", toPart);
}

std::string PantryPath(const SXMPMeta& meta, const char* instanceID) {
    std::string path;
    EXPECT_TRUE(XMPDocOpsTemporal::LookupXMPPantryPathGivenInstanceId(meta, instanceID, &path)) << instanceID;
    return path;
}

// top (marker t at 1) uses leaf (a at 2) at [0, 10) and, markers masked, hidden
// (h at 3) at [10, 20).
SXMPMeta TwoUses() {
    const SXMPMeta leaf = Document("leaf", {{"a", 2 * S, S}});
    const SXMPMeta hidden = Document("hidden", {{"h", 3 * S, S}});
    SXMPMeta top = Document("top", {{"t", S, S}});
    Compose(top, {{&leaf, 0, 10 * S, 0, 10 * S}, {&hidden, 0, 10 * S, 10 * S, 10 * S, true}});
    return top;
}

TEST(CollectorMask, BitsSelectRecordKinds) {
    const SXMPMeta top = TwoUses();
    const std::string base = "Base Document 0 100 | 0 100 | top linear";
    const std::string leaf = "ComponentMetadata 0 10 | 0 10 | leaf linear";
    const std::string hidden = "ComponentMetadata 10 10 | 10 10 | hidden linear";
    const std::string t = "t 1 1 | 1 1 | top linear";
    const std::string a = "a 2 1 | 2 1 | leaf linear";
    const std::string h = "h 13 1 | 13 1 | hidden linear";
    const struct {
        unsigned char m_mask;
        Lines m_expected;
    } cases[] = {
        {0, {}},
        {C::kCollectBaseDocument, {base}},
        {C::kCollectComponentMetadata, {leaf, hidden}},
        {C::kCollectDocumentMarkers, {t}},
        {C::kCollectIngredientMarkers, {a}},
        {C::kCollectIngredientMarkers | C::kIgnoreMaskMarkers, {a, h}},
        {C::kDefaultCollectionMask, {base, leaf, t, a, hidden}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Collect(top, 0, 100 * S, c.m_mask), c.m_expected) << "mask " << int(c.m_mask);
    }
}

TEST(CollectorWalk, UsesOutsideTheRangeOrThePantryContributeNothing) {
    SXMPMeta top = TwoUses();
    EXPECT_EQ(Collect(top, 10 * S, 10 * S, C::kCollectComponentMetadata),
              Lines{"ComponentMetadata 10 10 | 10 10 | hidden linear"});

    top.DeleteProperty(kXMP_NS_XMP_MM, PantryPath(top, "xmp.iid:leaf").c_str());
    EXPECT_EQ(Collect(top, 0, 100 * S, C::kCollectComponentMetadata | C::kCollectIngredientMarkers),
              Lines{"ComponentMetadata 10 10 | 10 10 | hidden linear"});
}

// The nested use lies outside the part of mid that top uses.
TEST(CollectorWalk, NestedUseOutsideItsParentsSpanIsSkipped) {
    const SXMPMeta leaf = Document("leaf", {{"a", 2 * S, S}});
    SXMPMeta mid = Document("mid", {});
    Compose(mid, {{&leaf, 0, 10 * S, 50 * S, 10 * S}});
    SXMPMeta top = Document("top", {});
    Compose(top, {{&mid, 0, 50 * S, 0, 50 * S}});
    EXPECT_EQ(Collect(top, 0, kUnspecified, C::kCollectComponentMetadata | C::kCollectIngredientMarkers),
              Lines{"ComponentMetadata 0 50 | 0 50 | mid linear"});
}

TEST(CollectorWalk, MalformedItemsAreSkipped) {
    SXMPMeta top = TwoUses();
    const std::string list = "xmpMM:Ingredients";
    top.AppendArrayItem(kXMP_NS_XMP_MM, list.c_str(), 0, "not a struct");
    AppendUse(top, list, "", "time:0d1", "time:0d1");
    AppendUse(top, list, "xmp.iid:leaf", "time:0f0d10", "time:0d10");  // zero rate
    AppendUse(top, list, "xmp.iid:leaf", "time:2d0", "time:0d10");     // nothing stretched over something
    AppendUse(top, list, "xmp.iid:nowhere", "time:0d1", "time:0d1");
    top.AppendArrayItem(kXMP_NS_XMP_MM, "xmpMM:Pantry", 0, "not a struct");
    top.AppendArrayItem(kXMP_NS_XMP_MM, "xmpMM:Pantry", 0, "", kXMP_PropValueIsStruct);
    top.SetStructField(kXMP_NS_XMP_MM, "xmpMM:Pantry[last()]", kXMP_NS_DM, "Tracks", "not an array");
    AppendUse(top, "xmpMM:Pantry[last()]/xmpMM:Ingredients", "xmp.iid:leaf", "time:0", "time:0");
    const std::string hidden = PantryPath(top, "xmp.iid:hidden");
    top.DeleteStructField(kXMP_NS_XMP_MM, hidden.c_str(), kXMP_NS_DM, "Tracks");
    top.SetStructField(kXMP_NS_XMP_MM, hidden.c_str(), kXMP_NS_DM, "Tracks", "text");
    EXPECT_EQ(Collect(top, 0, 100 * S, C::kCollectIngredientMarkers | C::kIgnoreMaskMarkers),
              Lines{"a 2 1 | 2 1 | leaf linear"});
}

// top uses leaf at [0, 10) by two identical items, and twin, a document of its
// own, at the very same place.
TEST(CollectorNoRepeat, SkipsOnlyTheSameDocumentAlongTheSameMappings) {
    const SXMPMeta leaf = Document("leaf", {{"a", 2 * S, S}});
    const SXMPMeta twin = Document("twin", {{"a", 2 * S, S}});
    SXMPMeta top = Document("top", {});
    Compose(top, {{&leaf, 0, 10 * S, 0, 10 * S}, {&twin, 0, 10 * S, 0, 10 * S}});
    AppendUse(top, "xmpMM:Ingredients", "xmp.iid:leaf", "time:0d10", "time:0d10");
    const unsigned char mask = C::kCollectIngredientMarkers;
    EXPECT_EQ(Collect(top, 0, 100 * S, mask),
              (Lines{"a 2 1 | 2 1 | leaf linear", "a 2 1 | 2 1 | twin linear", "a 2 1 | 2 1 | leaf linear"}));
    EXPECT_EQ(Collect(top, 0, 100 * S, mask | C::kNoRepeat),
              (Lines{"a 2 1 | 2 1 | leaf linear", "a 2 1 | 2 1 | twin linear"}));
}

// The walk ends with a bad-XMP error whose message holds `message`.
void ExpectWalkError(const SXMPMeta& meta, unsigned char mask, const std::string& message) {
    try {
        XMPTemporalMetadataCollector collector(mask, meta, 0, kUnspecified);
        ADD_FAILURE() << "no error, " << collector.GetXMPTemporalMetadataInfoCollection().size() << " records";
    } catch (const XMP_Error& error) {
        EXPECT_EQ(error.GetID(), kXMPErr_BadXMP);
        EXPECT_NE(std::string(error.GetErrMsg()).find(message), std::string::npos) << error.GetErrMsg();
    }
}

// A pantry document that uses itself never maps the same way twice down the
// chain, so the no-repeat mode does not end it; the depth bound does.
TEST(CollectorDepth, CycleThroughThePantryStopsAtTheBound) {
    SXMPMeta top = TwoUses();
    AppendUse(top, PantryPath(top, "xmp.iid:leaf") + "/xmpMM:Ingredients", "xmp.iid:leaf", "time:0d10", "time:0d10");
    for (const int mask : {0x0F, 0x7F}) {
        ExpectWalkError(top, static_cast<unsigned char>(mask), "\"xmp.iid:leaf\"");
    }
    // Nothing to collect below the top: the walk does not go there.
    EXPECT_EQ(Collect(top, 0, 100 * S, C::kCollectDocumentMarkers), Lines{"t 1 1 | 1 1 | top linear"});
}

// A top document whose pantry holds n1 ... nCount, each ni using n(i+1)
// (from its whole "time:0d10") once for every given to-part.
SXMPMeta PantryChain(int count, std::initializer_list<const char*> toParts) {
    SXMPMeta top;
    for (int n = 1; n <= count; ++n) {
        top.AppendArrayItem(kXMP_NS_XMP_MM, "xmpMM:Pantry", kXMP_PropValueIsArray, "", kXMP_PropValueIsStruct);
        const std::string item = "xmpMM:Pantry[" + std::to_string(n) + "]";
        top.SetStructField(kXMP_NS_XMP_MM, item.c_str(), kXMP_NS_XMP_MM, "InstanceID",
                           ("xmp.iid:n" + std::to_string(n)).c_str());
        for (const char* toPart : toParts) {
            if (n < count) {
                AppendUse(top, item + "/xmpMM:Ingredients", ("xmp.iid:n" + std::to_string(n + 1)).c_str(), "time:0d10",
                          toPart);
            }
        }
    }
    top.SetProperty(kXMP_NS_XMP_MM, "xmpMM:InstanceID", "xmp.iid:top");
    return top;
}

// n1 uses n2, ..., n256 uses n257, which holds one marker.
TEST(CollectorDepth, ChainsNestUpTo256Deep) {
    constexpr int kDocuments = C::kMaxNestingDepth + 1;
    SXMPMeta top = PantryChain(kDocuments, {"time:0d10"});
    AppendUse(top, "xmpMM:Ingredients", "xmp.iid:n2", "time:0d10", "time:0d10");
    EXPECT_EQ(Collect(top, 0, kUnspecified, C::kCollectComponentMetadata).size(), size_t{C::kMaxNestingDepth});

    top.SetStructField(kXMP_NS_XMP_MM, "xmpMM:Ingredients[1]", kXMP_NS_XMP_ResourceRef, "instanceID", "xmp.iid:n1");
    ExpectWalkError(top, C::kCollectComponentMetadata, "\"xmp.iid:n" + std::to_string(kDocuments) + "\"");
}

// n1 uses n2 twice, n2 uses n3 twice, ...: a short pantry that reaches 2^20
// documents stops at the record bound instead of running on.
TEST(CollectorDepth, FanOutStopsAtTheRecordBound) {
    SXMPMeta top = PantryChain(20, {"time:0d5", "time:5d5"});
    AppendUse(top, "xmpMM:Ingredients", "xmp.iid:n1", "time:0d10", "time:0d10");
    try {
        XMPTemporalMetadataCollector collector(C::kCollectComponentMetadata, top, 0, kUnspecified, 1000);
        ADD_FAILURE() << "no error";
    } catch (const XMP_Error& error) {
        EXPECT_EQ(error.GetID(), kXMPErr_BadXMP);
        EXPECT_NE(std::string(error.GetErrMsg()).find("more than 1000 records"), std::string::npos)
            << error.GetErrMsg();
    }
}

}  // namespace
