// The collector on a composed document of three levels below the top, each
// document using ten of the next (1,110 nested documents, every other use
// reversed), every document holding the same number of markers; beside it, a
// baseline that reads the same markers of the same 1,111 documents, each
// opened on its own, with the track reader of the document operations.
//
// Then the collector on a flat composition that uses one clip 100,000 times,
// per record, beside the track reader per marker of a 100,000-marker track.
//
// Then the nested composition as packet text, collected by the streaming
// reader beside the toolkit's parse and collection of the same text.
// `bench_collector --write-composition MARKERS FILE` writes that text, for
// timing the tool as a whole process (collect_process.py).

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <kelmediatypes/TickTime.hpp>
#include <keltemporalxmp/collector.hpp>
#include <keltemporalxmp/docops.hpp>
#include <keltemporalxmp/streamread.hpp>

namespace {

using keltemporalxmp::XMPCuePointParam;
using keltemporalxmp::XMPDocOpsTemporal;
using keltemporalxmp::XMPTemporalMetadataCollector;
using keltemporalxmp::XMPTemporalMetadataInfo;
using keltemporalxmp::XMPTrack;

constexpr std::int64_t kSecond = kelmediatypes::TickTime::kTicksPerSecond;
constexpr int kFanOut = 10;
constexpr int kLevels = 3;

// Markers every second, half a second long, spread over the document's span.
SXMPMeta Document(int markers, std::int64_t length, const std::string& name) {
    SXMPMeta meta;
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    XMPTrack track("Notes", "Comment", 25, 1);
    const std::int64_t step = length / markers;
    for (int i = 0; i < markers; ++i) {
        const std::string text = name + " marker " + std::to_string(i);
        track.AddMarker(XMPTemporalMetadataInfo(text.c_str(), "A comment on the marker", i * step, kSecond / 2, "", "",
                                                "", "", {XMPCuePointParam("scene", text.c_str())}, "", "", nullptr,
                                                nullptr));
    }
    doc.AddTrack("Notes", track);
    doc.PrepareForSave("");
    return meta;
}

struct Fixture {
    SXMPMeta m_composed;
    std::vector<SXMPMeta> m_documents;  // every document with its markers only
};

// A document `level` levels above the leaves, composed of kFanOut children
// side by side; returns its length.
std::int64_t Compose(Fixture& fixture, int markers, int level, SXMPMeta& out, const std::string& name) {
    const std::int64_t childLength = markers * kSecond;
    std::int64_t length = childLength;
    for (int i = 0; i < level; ++i) {
        length *= kFanOut;
    }
    out = Document(markers, length, name);
    fixture.m_documents.push_back(out.Clone());
    if (level == 0) {
        return length;
    }
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&out, "");
    for (int i = 0; i < kFanOut; ++i) {
        SXMPMeta child;
        const std::int64_t used = Compose(fixture, markers, level - 1, child, name + "." + std::to_string(i));
        const bool reversed = i % 2 == 1;
        doc.AddIngredientXMPTemporal(child, reversed ? used : 0, reversed ? -used : used, i * used, used, "", "",
                                     "linear");
    }
    doc.PrepareForSave("");
    return length;
}

const Fixture& Composed(int markers) {
    static Fixture fixtures[2];
    Fixture& fixture = fixtures[markers == 20 ? 0 : 1];
    if (fixture.m_documents.empty()) {
        Compose(fixture, markers, kLevels, fixture.m_composed, "top");
    }
    return fixture;
}

void Collect(benchmark::State& state) {
    const Fixture& fixture = Composed(static_cast<int>(state.range(0)));
    std::size_t records = 0;
    for (auto _ : state) {
        XMPTemporalMetadataCollector collector(XMPTemporalMetadataCollector::kCollectDocumentMarkers |
                                                   XMPTemporalMetadataCollector::kCollectIngredientMarkers,
                                               fixture.m_composed, 0, INT64_MAX);
        records = collector.GetXMPTemporalMetadataInfoCollection().size();
        benchmark::DoNotOptimize(records);
    }
    state.counters["markers"] = static_cast<double>(records);
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(records));
}

void CollectBaseline(benchmark::State& state) {
    const Fixture& fixture = Composed(static_cast<int>(state.range(0)));
    std::size_t records = 0;
    for (auto _ : state) {
        records = 0;
        for (const SXMPMeta& document : fixture.m_documents) {
            SXMPMeta meta = document;
            XMPDocOpsTemporal doc;
            doc.OpenXMP(&meta, "");
            for (auto track = doc.TrackListIteratorBegin(); track != doc.TrackListIteratorEnd(); ++track) {
                records += track->GetMarkers().size();
            }
        }
        benchmark::DoNotOptimize(records);
    }
    state.counters["markers"] = static_cast<double>(records);
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(records));
}

constexpr int kUses = 100000;

// Each use places the clip's first second, with its one marker, after the last.
const SXMPMeta& FlatComposition() {
    static const SXMPMeta composition = [] {
        const SXMPMeta clip = Document(1, kSecond, "clip");
        SXMPMeta meta;
        XMPDocOpsTemporal doc;
        doc.OpenXMP(&meta, "");
        doc.AddIngredientXMPTemporal(clip, 0, kSecond, 0, kSecond, "", "", "linear");
        doc.PrepareForSave("");
        std::string clipID;
        clip.GetProperty(kXMP_NS_XMP_MM, "xmpMM:InstanceID", &clipID, nullptr);
        for (int i = 1; i < kUses; ++i) {
            meta.AppendArrayItem(kXMP_NS_XMP_MM, "xmpMM:Ingredients", kXMP_PropValueIsArray, "",
                                 kXMP_PropValueIsStruct);
            const char* item = "xmpMM:Ingredients[last()]";
            meta.SetStructField(kXMP_NS_XMP_MM, item, kXMP_NS_XMP_ResourceRef, "instanceID", clipID.c_str());
            meta.SetStructField(kXMP_NS_XMP_MM, item, kXMP_NS_XMP_ResourceRef, "fromPart", "time:0d1");
            meta.SetStructField(kXMP_NS_XMP_MM, item, kXMP_NS_XMP_ResourceRef, "toPart",
                                ("time:" + std::to_string(i) + "d1").c_str());
        }
        return meta;
    }();
    return composition;
}

void CollectFlat(benchmark::State& state) {
    const SXMPMeta& composition = FlatComposition();
    std::size_t records = 0;
    for (auto _ : state) {
        XMPTemporalMetadataCollector collector(composition, 0, INT64_MAX);
        records = collector.GetXMPTemporalMetadataInfoCollection().size();
        benchmark::DoNotOptimize(records);
    }
    state.counters["markers"] = static_cast<double>(records);
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(records));
}

void CollectFlatBaseline(benchmark::State& state) {
    static const SXMPMeta document = Document(kUses, kUses * kSecond, "long");
    std::size_t records = 0;
    for (auto _ : state) {
        SXMPMeta meta = document;
        XMPDocOpsTemporal doc;
        doc.OpenXMP(&meta, "");
        records = doc.TrackListIteratorBegin()->GetMarkers().size();
        benchmark::DoNotOptimize(records);
    }
    state.counters["markers"] = static_cast<double>(records);
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(records));
}

const std::string& ComposedText(int markers) {
    static std::string texts[2];
    std::string& text = texts[markers == 20 ? 0 : 1];
    if (text.empty()) {
        Composed(markers).m_composed.SerializeToBuffer(&text);
    }
    return text;
}

constexpr unsigned char kMarkersMask =
    XMPTemporalMetadataCollector::kCollectDocumentMarkers | XMPTemporalMetadataCollector::kCollectIngredientMarkers;

void CollectStreamed(benchmark::State& state) {
    const std::string& text = ComposedText(static_cast<int>(state.range(0)));
    std::size_t records = 0;
    for (auto _ : state) {
        XMPTemporalMetadataCollector::Collection collection;
        if (!keltemporalxmp::StreamCollect(text, kMarkersMask, 0, INT64_MAX,
                                           XMPTemporalMetadataCollector::kDefaultMaxRecords, collection)) {
            state.SkipWithError("the streaming reader handed the packet over");
            return;
        }
        records = collection.size();
        benchmark::DoNotOptimize(records);
    }
    state.counters["markers"] = static_cast<double>(records);
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(records));
}

void CollectParsedBaseline(benchmark::State& state) {
    const std::string& text = ComposedText(static_cast<int>(state.range(0)));
    std::size_t records = 0;
    for (auto _ : state) {
        const SXMPMeta meta(text.data(), static_cast<XMP_StringLen>(text.size()));
        XMPTemporalMetadataCollector collector(kMarkersMask, meta, 0, INT64_MAX);
        records = collector.GetXMPTemporalMetadataInfoCollection().size();
        benchmark::DoNotOptimize(records);
    }
    state.counters["markers"] = static_cast<double>(records);
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(records));
}

int WriteComposition(const char* markers, const char* path) {
    const std::string& text = ComposedText(std::atoi(markers) == 40 ? 40 : 20);
    std::FILE* file = std::fopen(path, "wb");
    if (file == nullptr) {
        std::perror(path);
        return 1;
    }
    const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    return std::fclose(file) == 0 && written ? 0 : 1;
}

BENCHMARK(Collect)->Arg(20)->Arg(40)->Unit(benchmark::kMillisecond);
BENCHMARK(CollectBaseline)->Arg(20)->Arg(40)->Unit(benchmark::kMillisecond);
BENCHMARK(CollectFlat)->Unit(benchmark::kMillisecond);
BENCHMARK(CollectFlatBaseline)->Unit(benchmark::kMillisecond);
BENCHMARK(CollectStreamed)->Arg(20)->Unit(benchmark::kMillisecond);
BENCHMARK(CollectParsedBaseline)->Arg(20)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    if (argc == 4 && std::strcmp(argv[1], "--write-composition") == 0) {
        return WriteComposition(argv[2], argv[3]);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
