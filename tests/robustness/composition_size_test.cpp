// Compositions far larger than the collector's old limits and hostile
// pantries: valid ones collect every record however often a document is
// used, and runaway ones end with an error that names the bound they hit.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <keltemporalxmp/collector.hpp>

namespace {

using keltemporalxmp::XMPTemporalMetadataCollector;
using C = XMPTemporalMetadataCollector;

constexpr std::int64_t kUnspecified = INT64_MAX;

// Part strings in seconds.
std::string Part(std::int64_t start, std::int64_t duration) {
    return "time:" + std::to_string(start) + "d" + std::to_string(duration);
}

// A document of the pantry: `markers` one-second markers, one per second,
// each with `comment`, and `count` uses of the first `length` seconds of `source`, side by side
// or each a second after the one before, overlapping it.
struct PantryDocument {
    PantryDocument(std::string id, int markers, std::string source = "", int count = 0, std::int64_t length = 1,
                   bool sideBySide = true, std::string comment = "")
        : m_id(std::move(id)),
          m_markers(markers),
          m_source(std::move(source)),
          m_count(count),
          m_length(length),
          m_sideBySide(sideBySide),
          m_comment(std::move(comment)) {}

    std::string m_id;
    int m_markers;
    std::string m_source;
    int m_count;
    std::int64_t m_length;
    bool m_sideBySide;
    std::string m_comment;
};

void AppendUses(SXMPMeta& meta, const std::string& listPath, const PantryDocument& document) {
    for (int i = 0; i < document.m_count; ++i) {
        meta.AppendArrayItem(kXMP_NS_XMP_MM, listPath.c_str(), kXMP_PropValueIsArray, "", kXMP_PropValueIsStruct);
        const std::string item = listPath + "[last()]";
        meta.SetStructField(kXMP_NS_XMP_MM, item.c_str(), kXMP_NS_XMP_ResourceRef, "instanceID",
                            document.m_source.c_str());
        meta.SetStructField(kXMP_NS_XMP_MM, item.c_str(), kXMP_NS_XMP_ResourceRef, "fromPart",
                            Part(0, document.m_length).c_str());
        meta.SetStructField(
            kXMP_NS_XMP_MM, item.c_str(), kXMP_NS_XMP_ResourceRef, "toPart",
            (document.m_sideBySide ? Part(i * document.m_length, document.m_length) : Part(i, document.m_length))
                .c_str());
    }
}

void AppendMarkers(SXMPMeta& meta, const std::string& tracksPath, const char* tracksNS,
                   const PantryDocument& document) {
    if (document.m_markers == 0) {
        return;
    }
    meta.AppendArrayItem(tracksNS, tracksPath.c_str(), kXMP_PropValueIsArray, "", kXMP_PropValueIsStruct);
    const std::string track = tracksPath + "[1]";
    meta.SetStructField(tracksNS, track.c_str(), kXMP_NS_DM, "trackName", "Notes");
    meta.SetStructField(tracksNS, track.c_str(), kXMP_NS_DM, "frameRate", "f1");
    std::string markersPath;
    SXMPUtils::ComposeStructFieldPath(tracksNS, track.c_str(), kXMP_NS_DM, "markers", &markersPath);
    for (int i = 0; i < document.m_markers; ++i) {
        meta.AppendArrayItem(tracksNS, markersPath.c_str(), kXMP_PropArrayIsOrdered, "", kXMP_PropValueIsStruct);
        const std::string marker = markersPath + "[last()]";
        meta.SetStructField(tracksNS, marker.c_str(), kXMP_NS_DM, "name", ("m" + std::to_string(i)).c_str());
        meta.SetStructField(tracksNS, marker.c_str(), kXMP_NS_DM, "startTime", std::to_string(i).c_str());
        meta.SetStructField(tracksNS, marker.c_str(), kXMP_NS_DM, "duration", "1");
        meta.SetStructField(tracksNS, marker.c_str(), kXMP_NS_DM, "comment", document.m_comment.c_str());
    }
}

// The top document "top" with its own markers and uses; its pantry holds the
// given documents, each as its own item.
SXMPMeta Composition(const PantryDocument& top, const std::vector<PantryDocument>& pantry) {
    SXMPMeta meta;
    meta.SetProperty(kXMP_NS_XMP_MM, "xmpMM:InstanceID", top.m_id.c_str());
    AppendMarkers(meta, "xmpDM:Tracks", kXMP_NS_DM, top);
    AppendUses(meta, "xmpMM:Ingredients", top);
    for (const PantryDocument& document : pantry) {
        meta.AppendArrayItem(kXMP_NS_XMP_MM, "xmpMM:Pantry", kXMP_PropValueIsArray, "", kXMP_PropValueIsStruct);
        const std::string item = "xmpMM:Pantry[last()]";
        meta.SetStructField(kXMP_NS_XMP_MM, item.c_str(), kXMP_NS_XMP_MM, "InstanceID", document.m_id.c_str());
        AppendMarkers(meta, item + "/xmpDM:Tracks", kXMP_NS_XMP_MM, document);
        AppendUses(meta, item + "/xmpMM:Ingredients", document);
    }
    return meta;
}

// n1 uses n2 `fanOut` times, n2 uses n3 as often, ... down to n`count`; each
// holds `markers` markers. The top uses n1 once.
SXMPMeta FanOut(int count, int fanOut, int markers) {
    std::vector<PantryDocument> pantry;
    for (int n = 1; n <= count; ++n) {
        pantry.push_back(
            {"n" + std::to_string(n), markers, "n" + std::to_string(n + 1), n < count ? fanOut : 0, 10, false});
    }
    return Composition({"top", 0, "n1", 1, 10}, pantry);
}

struct Outcome {
    std::size_t m_records = 0;
    std::string m_error;  // empty when the collection was built
};

Outcome Collect(const SXMPMeta& meta, unsigned char mask, std::size_t maxRecords) {
    try {
        const XMPTemporalMetadataCollector collector(mask, meta, 0, kUnspecified, maxRecords);
        return {collector.GetXMPTemporalMetadataInfoCollection().size(), ""};
    } catch (const XMP_Error& error) {
        EXPECT_EQ(error.GetID(), kXMPErr_BadXMP) << error.GetErrMsg();
        return {0, error.GetErrMsg()};
    }
}

// A clip used 100,000 times side by side, and two levels of 300 uses of 300
// uses: each use gives a component record and the clip's one marker.
TEST(CompositionSize, EveryUseOfAHeavilyReusedClipIsCollected) {
    const SXMPMeta flat = Composition({"top", 0, "clip", 100000, 1}, {{"clip", 1}});
    const Outcome flatOutcome = Collect(flat, C::kDefaultCollectionMask, C::kDefaultMaxRecords);
    EXPECT_EQ(flatOutcome.m_error, "");
    EXPECT_EQ(flatOutcome.m_records, 1 + 2 * 100000u);

    const SXMPMeta nested = Composition({"top", 0, "reel", 300, 300}, {{"reel", 0, "clip", 300, 1}, {"clip", 1}});
    const Outcome nestedOutcome = Collect(nested, C::kDefaultCollectionMask, C::kDefaultMaxRecords);
    EXPECT_EQ(nestedOutcome.m_error, "");
    EXPECT_EQ(nestedOutcome.m_records, 1 + 300 + 2 * 300 * 300u);
}

TEST(CompositionSize, OneRecordPastTheBoundFails) {
    const SXMPMeta flat = Composition({"top", 0, "clip", 1000, 1}, {{"clip", 1}});
    EXPECT_EQ(Collect(flat, C::kDefaultCollectionMask, 2001).m_records, 2001u);
    EXPECT_EQ(Collect(flat, C::kDefaultCollectionMask, 2000).m_error,
              "Collecting temporal metadata: more than 2000 records (the collection's record bound), at instance "
              "ID \"clip\"");
}

TEST(CompositionSize, RunawayPantriesStopAtABound) {
    const struct {
        const char* m_name;
        std::function<SXMPMeta()> m_composition;
        unsigned char m_mask;
        std::string m_error;
    } cases[] = {
        // 2^30 uses along the chain, each with a record.
        {"fan-out", [] { return FanOut(30, 2, 0); }, C::kDefaultCollectionMask, "more than 10000 records"},
        {"fan-out with markers", [] { return FanOut(12, 4, 50); }, C::kCollectIngredientMarkers,
         "more than 10000 records"},
        // Nothing to collect anywhere: the walk itself is what is bounded.
        {"fan-out without records", [] { return FanOut(30, 2, 0); }, C::kCollectIngredientMarkers,
         "more than 640000 documents, markers and ingredient uses looked at"},
        // 1,000 uses of a 1,000-marker clip, each showing one marker of it.
        {"uses that show little",
         [] {
             return Composition({"top", 0, "clip", 1000, 1}, {{"clip", 1000, "", 0, 1}});
         },
         C::kCollectIngredientMarkers, "looked at"},
        // 1,000 uses of a marker with a 10 kB comment: 10 MB of copies.
        {"long texts used often",
         [] {
             return Composition({"top", 0, "clip", 1000, 1}, {{"clip", 1, "", 0, 1, true, std::string(10000, 'x')}});
         },
         C::kCollectIngredientMarkers, "more than 2560000 bytes of text kept"},
        // Every visit maps differently, so the no-repeat mode keeps a key for each.
        {"fan-out without repeats", [] { return FanOut(30, 2, 0); }, C::kNoRepeat | C::kCollectIngredientMarkers,
         "bytes of text kept"},
        // A document that uses itself twice, forever.
        {"cycle",
         [] {
             return Composition({"top", 0, "loop", 1, 1}, {{"loop", 1, "loop", 2, 1}});
         },
         C::kDefaultCollectionMask, "ingredients nested more than 256 deep, at instance ID \"loop\""},
    };
    for (const auto& c : cases) {
        EXPECT_NE(Collect(c.m_composition(), c.m_mask, 10000).m_error.find(c.m_error), std::string::npos) << c.m_name;
    }
}

}  // namespace
