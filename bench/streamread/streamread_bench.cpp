// The streaming read of a marker packet beside the toolkit's bare parse of the
// same text, and beside a bare expat pass (the floor of this road). The
// packet is the bench_limits layout as the toolkit serializes it (indented,
// as other writers do). Two extra modes serve the whole-process timing in
// tool_timing.sh:
//   bench_streamread --write-packet N FILE   writes the packet of N markers
//   bench_streamread --parse-only FILE       only parses FILE with the toolkit

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

#include <benchmark/benchmark.h>
#include <expat.h>

#include <keltemporalxmp/markers.hpp>
#include <keltemporalxmp/streamread.hpp>

#include "../limits/MarkerPacket.hpp"

namespace {

using namespace keltemporalxmp;

std::string SerializedPacket(std::int64_t count) {
    const std::string text = bench::MarkerPacket(count);
    std::string packet;
    SXMPMeta(text.c_str(), static_cast<XMP_StringLen>(text.size())).SerializeToBuffer(&packet);
    return packet;
}

const std::string& Packet(std::int64_t count) {
    static std::int64_t madeFor = -1;
    static std::string packet;
    if (madeFor != count) {
        packet = SerializedPacket(count);
        madeFor = count;
    }
    return packet;
}

void BM_ToolkitParse(benchmark::State& state) {
    const std::string& packet = Packet(state.range(0));
    for (auto _ : state) {
        SXMPMeta meta(packet.c_str(), static_cast<XMP_StringLen>(packet.size()));
        benchmark::DoNotOptimize(&meta);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(packet.size()));
}

void BM_ExpatFloor(benchmark::State& state) {
    const std::string& packet = Packet(state.range(0));
    for (auto _ : state) {
        XML_Parser parser = XML_ParserCreateNS(nullptr, '\x01');
        XML_SetElementHandler(
            parser, [](void*, const XML_Char*, const XML_Char**) {}, [](void*, const XML_Char*) {});
        XML_SetCharacterDataHandler(parser, [](void*, const XML_Char*, int) {});
        if (XML_Parse(parser, packet.data(), static_cast<int>(packet.size()), 1) != XML_STATUS_OK) {
            state.SkipWithError("expat refused the packet");
        }
        XML_ParserFree(parser);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(packet.size()));
}

void BM_StreamReadTracks(benchmark::State& state) {
    const std::string& packet = Packet(state.range(0));
    for (auto _ : state) {
        std::vector<XMPTrack> tracks;
        if (!StreamReadTracks(packet, tracks)) {
            state.SkipWithError("handed over");
        }
        benchmark::DoNotOptimize(tracks.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(packet.size()));
}

void BM_StreamReadAllMarkers(benchmark::State& state) {
    const std::string& packet = Packet(state.range(0));
    for (auto _ : state) {
        std::vector<XMPTrack> tracks;
        MarkerList markers;
        if (!StreamReadTracks(packet, tracks)) {
            state.SkipWithError("handed over");
        }
        AppendMarkersOfTracks(tracks, markers);
        if (static_cast<std::int64_t>(markers.size()) != state.range(0)) {
            state.SkipWithError("markers lost");
        }
        benchmark::DoNotOptimize(markers.data());
    }
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
}
BENCHMARK(BM_ToolkitParse)->Apply(Sizes);
BENCHMARK(BM_ExpatFloor)->Apply(Sizes);
BENCHMARK(BM_StreamReadTracks)->Apply(Sizes);
BENCHMARK(BM_StreamReadAllMarkers)->Apply(Sizes);

int WritePacket(const char* count, const char* path) {
    const std::string packet = SerializedPacket(std::stoll(count));
    std::ofstream(path, std::ios::binary) << packet;
    return 0;
}

int ParseOnly(const char* path) {
    std::ifstream file(path, std::ios::binary);
    const std::string packet((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    SXMPMeta meta(packet.c_str(), static_cast<XMP_StringLen>(packet.size()));
    return meta.DoesPropertyExist(kXMP_NS_DM, "Tracks") ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 4 && std::strcmp(argv[1], "--write-packet") == 0) {
        return WritePacket(argv[2], argv[3]);
    }
    if (argc == 3 && std::strcmp(argv[1], "--parse-only") == 0) {
        return ParseOnly(argv[2]);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
