// Composing a document from many ingredients: adding N ingredients (each
// document about 100 properties and a track of 100 markers) and saving, then
// reading the saved document's ingredient list and pantry back. The baseline
// is the copy that saving cannot avoid: each source document duplicated into a
// pantry item with the toolkit alone. Per-ingredient cost should not grow
// with N.

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <kelmediatypes/TickTime.hpp>
#include <keltemporalxmp/docops.hpp>

namespace {

using keltemporalxmp::XMPDocOpsTemporal;
using keltemporalxmp::XMPTemporalMetadataInfo;
using keltemporalxmp::XMPTrack;

constexpr std::int64_t kSecond = kelmediatypes::TickTime::kTicksPerSecond;
constexpr const char* kBenchNS = "http://example.com/ns/bench/";

std::string Numbered(const char* prefix, int number) {
    std::string text(prefix);
    text += std::to_string(number);
    return text;
}

SXMPMeta SourceDocument(int number) {
    SXMPMeta::RegisterNamespace(kBenchNS, "bench", nullptr);
    SXMPMeta meta;
    meta.SetProperty(kXMP_NS_XMP_MM, "xmpMM:InstanceID", Numbered("xmp.iid:", number).c_str());
    meta.SetProperty(kXMP_NS_XMP_MM, "xmpMM:DocumentID", Numbered("xmp.did:", number).c_str());
    meta.SetLocalizedText(kXMP_NS_DC, "dc:title", "", "x-default", Numbered("Clip ", number).c_str());
    meta.SetLocalizedText(kXMP_NS_DC, "dc:title", "de", "de-DE", Numbered("Ausschnitt ", number).c_str());
    for (int keyword = 0; keyword < 5; ++keyword) {
        meta.AppendArrayItem(kXMP_NS_DC, "dc:subject", kXMP_PropValueIsArray, Numbered("k", keyword).c_str());
    }
    for (int property = 0; property < 90; ++property) {
        meta.SetProperty(kBenchNS, Numbered("bench:p", property).c_str(), Numbered("value ", number).c_str());
    }
    XMPTrack track("Markers", 25, 1);
    for (int marker = 0; marker < 100; ++marker) {
        track.AddMarker(XMPTemporalMetadataInfo(Numbered("m", marker).c_str(), "comment", marker * kSecond, kSecond,
                                                "Comment", "", "", "", {}, "", "", nullptr, nullptr));
    }
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    doc.AddTrack("Markers", track);
    doc.PrepareForSave("");
    return meta;
}

const std::vector<SXMPMeta>& Sources(std::size_t count) {
    static std::map<std::size_t, std::vector<SXMPMeta>> made;
    std::vector<SXMPMeta>& sources = made[count];
    while (sources.size() < count) {
        sources.push_back(SourceDocument(static_cast<int>(sources.size())));
    }
    return sources;
}

SXMPMeta Composed(const std::vector<SXMPMeta>& sources) {
    SXMPMeta meta;
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    std::int64_t at = 0;
    for (const SXMPMeta& source : sources) {
        doc.AddIngredientXMPTemporal(source, 0, 10 * kSecond, at, 10 * kSecond, "", "", "linear");
        at += 10 * kSecond;
    }
    doc.PrepareForSave("");
    return meta;
}

void SetPerIngredient(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void AddAndSave(benchmark::State& state) {
    const std::vector<SXMPMeta>& sources = Sources(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(Composed(sources));
    }
    SetPerIngredient(state);
}

void AddAndSaveBaseline(benchmark::State& state) {
    const std::vector<SXMPMeta>& sources = Sources(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        SXMPMeta meta;
        XMP_Index index = 0;
        for (const SXMPMeta& source : sources) {
            meta.AppendArrayItem(kXMP_NS_XMP_MM, "xmpMM:Pantry", kXMP_PropValueIsArray, "", kXMP_PropValueIsStruct);
            const std::string item = Numbered("xmpMM:Pantry[", ++index) + "]";
            SXMPUtils::DuplicateSubtree(source, &meta, "*", "*", kXMP_NS_XMP_MM, item.c_str());
        }
        benchmark::DoNotOptimize(meta);
    }
    SetPerIngredient(state);
}

// Opening reads nothing; listing reads the ingredients, removing nothing the pantry.
void ReadBack(benchmark::State& state) {
    const SXMPMeta saved = Composed(Sources(static_cast<std::size_t>(state.range(0))));
    for (auto _ : state) {
        SXMPMeta meta(saved);
        XMPDocOpsTemporal doc;
        doc.OpenXMP(&meta, "");
        benchmark::DoNotOptimize(doc.IngredientListIteratorBegin());
        doc.RemoveIngredient(0);
    }
    SetPerIngredient(state);
}

// The pantry's documents copied out with the toolkit alone.
void ReadBackBaseline(benchmark::State& state) {
    const SXMPMeta saved = Composed(Sources(static_cast<std::size_t>(state.range(0))));
    for (auto _ : state) {
        for (XMP_Index index = 1; index <= saved.CountArrayItems(kXMP_NS_XMP_MM, "xmpMM:Pantry"); ++index) {
            SXMPMeta document;
            const std::string item = Numbered("xmpMM:Pantry[", index) + "]";
            SXMPUtils::DuplicateSubtree(saved, &document, kXMP_NS_XMP_MM, item.c_str(), kXMP_NS_XMP_MM, "xmpMM:Copy");
            benchmark::DoNotOptimize(document);
        }
    }
    SetPerIngredient(state);
}

BENCHMARK(AddAndSave)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(AddAndSaveBaseline)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(ReadBack)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(ReadBackBaseline)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
