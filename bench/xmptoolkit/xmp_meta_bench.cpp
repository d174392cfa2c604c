// Array counting and deep copies on a 10,000-item array, each next to the
// obvious alternative measured in the same run.
#include <benchmark/benchmark.h>

#include <string>

#include <xmptoolkit/XMP.hpp>

namespace {

constexpr int kItems = 10000;

const SXMPMeta& LargeTree() {
    static const SXMPMeta tree = [] {
        SXMPMeta meta;
        meta.SetProperty(kXMP_NS_DM, "markers", "", kXMP_PropArrayIsOrdered);
        for (int i = 1; i <= kItems; ++i) {
            meta.AppendArrayItem(kXMP_NS_DM, "markers", 0, nullptr, kXMP_PropValueIsStruct);
            const std::string item = "markers[" + std::to_string(i) + "]";
            meta.SetProperty(kXMP_NS_DM, (item + "/xmpDM:name").c_str(), "marker");
            meta.SetProperty(kXMP_NS_DM, (item + "/xmpDM:startTime").c_str(), std::to_string(i).c_str());
        }
        return meta;
    }();
    return tree;
}

void CountArrayItems(benchmark::State& state) {
    const SXMPMeta& tree = LargeTree();
    for (auto _ : state) {
        benchmark::DoNotOptimize(tree.CountArrayItems(kXMP_NS_DM, "markers"));
    }
}
BENCHMARK(CountArrayItems)->Unit(benchmark::kMicrosecond);

void CountByWalkingItems_Baseline(benchmark::State& state) {
    const SXMPMeta& tree = LargeTree();
    for (auto _ : state) {
        SXMPIterator items(tree, kXMP_NS_DM, "markers", kXMP_IterJustChildren | kXMP_IterOmitQualifiers);
        int count = 0;
        while (items.Next()) {
            ++count;
        }
        benchmark::DoNotOptimize(count);
    }
}
BENCHMARK(CountByWalkingItems_Baseline)->Unit(benchmark::kMicrosecond);

void Clone(benchmark::State& state) {
    const SXMPMeta& tree = LargeTree();
    for (auto _ : state) {
        benchmark::DoNotOptimize(tree.Clone());
    }
}
BENCHMARK(Clone)->Unit(benchmark::kMillisecond);

void CloneThroughPacket_Baseline(benchmark::State& state) {
    const SXMPMeta& tree = LargeTree();
    for (auto _ : state) {
        std::string packet;
        tree.SerializeToBuffer(&packet, kXMP_OmitPacketWrapper | kXMP_UseCompactFormat | kXMP_OmitAllFormatting);
        benchmark::DoNotOptimize(SXMPMeta(packet.data(), static_cast<XMP_StringLen>(packet.size())));
    }
}
BENCHMARK(CloneThroughPacket_Baseline)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
