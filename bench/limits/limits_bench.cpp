// How far reading markers goes: a packet of n markers (5 types, a name, a
// comment, two cue points each, as a logging tool writes them) parsed and read
// by ReadAllMarkers, beside the baseline of parsing the packet alone. Besides
// the time it reports the packet's bytes and the heap left in use per marker
// by the parsed tree and by the marker list. Run one benchmark per process to
// read its peak RSS:
//   /usr/bin/time -v build/release/bench/bench_limits --benchmark_filter='ReadAllMarkers/100000/'

#include <malloc.h>

#include <cstdint>
#include <string>

#include <benchmark/benchmark.h>

#include <keltemporalxmp/markers.hpp>

#include "MarkerPacket.hpp"

namespace {

using keltemporalxmp::MarkerList;
using keltemporalxmp::bench::MarkerPacket;

std::size_t HeapInUse() {
    return mallinfo2().uordblks;
}

void BM_ParsePacket(benchmark::State& state) {
    const std::string packet = MarkerPacket(state.range(0));
    for (auto _ : state) {
        SXMPMeta meta(packet.c_str(), static_cast<XMP_StringLen>(packet.size()));
        benchmark::DoNotOptimize(&meta);
    }
}

void BM_ReadAllMarkers(benchmark::State& state) {
    const std::int64_t count = state.range(0);
    const std::string packet = MarkerPacket(count);
    std::size_t treeBytes = 0;
    std::size_t listBytes = 0;
    for (auto _ : state) {
        const std::size_t before = HeapInUse();
        SXMPMeta meta(packet.c_str(), static_cast<XMP_StringLen>(packet.size()));
        treeBytes = HeapInUse() - before;
        MarkerList markers;
        keltemporalxmp::ReadAllMarkers(meta, markers);
        listBytes = HeapInUse() - before - treeBytes;
        if (static_cast<std::int64_t>(markers.size()) != count) {
            state.SkipWithError("markers lost");
        }
        benchmark::DoNotOptimize(markers.data());
    }
    const double perMarker = 1.0 / static_cast<double>(count);
    state.counters["packet_B_per_marker"] = static_cast<double>(packet.size()) * perMarker;
    state.counters["tree_B_per_marker"] = static_cast<double>(treeBytes) * perMarker;
    state.counters["list_B_per_marker"] = static_cast<double>(listBytes) * perMarker;
}
void Sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(1000)->Arg(10000)->Arg(100000)->Arg(300000)->Iterations(1)->Unit(benchmark::kMillisecond);
}
BENCHMARK(BM_ParsePacket)->Apply(Sizes);
BENCHMARK(BM_ReadAllMarkers)->Apply(Sizes);

}  // namespace

BENCHMARK_MAIN();
