// The packet guard against the toolkit's own parse of the same 10,000-marker
// packet, measured in the same run (target: the guard at most 5% of the
// parse), beside expat's bare tokenizer, below which no expat pass goes; and what the toolkit spends on packets at each
// limit, which is why the limits are where they are.

#include <cstdint>
#include <string>

#include <benchmark/benchmark.h>
#include <exempi/xmp.h>
#include <expat.h>

#include <xmptoolkit/XMP.hpp>
#include <xmptoolkit/XMP_PacketLimits.hpp>

#include "../support/MarkerPacketText.hpp"
#include "PacketGuard.hpp"

namespace {

using Limits = XMP_PacketLimits;

constexpr std::int64_t kMarkers = 10000;

const std::string& Packet() {
    static const std::string packet = bench_support::MarkerPacket(kMarkers);
    return packet;
}

// The toolkit alone, through its C interface: no guard in front.
void ToolkitParse_Baseline(benchmark::State& state) {
    xmp_init();
    for (auto _ : state) {
        XmpPtr meta = xmp_new_empty();
        benchmark::DoNotOptimize(xmp_parse(meta, Packet().data(), Packet().size()));
        xmp_free(meta);
    }
    state.counters["bytes"] = static_cast<double>(Packet().size());
}
BENCHMARK(ToolkitParse_Baseline)->Unit(benchmark::kMillisecond);

void Guard(benchmark::State& state) {
    for (auto _ : state) {
        xmptoolkit_detail::GuardPacket(Packet(), "bench");
    }
}
BENCHMARK(Guard)->Unit(benchmark::kMillisecond);

// The floor of any expat pass: its tokenizer with no handler at all.
void ExpatAlone_Floor(benchmark::State& state) {
    for (auto _ : state) {
        XML_Parser parser = XML_ParserCreate(nullptr);
        benchmark::DoNotOptimize(XML_Parse(parser, Packet().data(), static_cast<int>(Packet().size()), XML_TRUE));
        XML_ParserFree(parser);
    }
}
BENCHMARK(ExpatAlone_Floor)->Unit(benchmark::kMillisecond);

std::string Wrapped(const std::string& properties, const std::string& attributes = "") {
    return "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'"
           " xmlns:dc='http://purl.org/dc/elements/1.1/'><rdf:Description rdf:about=''" +
           attributes + ">" + properties + "</rdf:Description></rdf:RDF></x:xmpmeta>";
}

std::string Fields(std::uint64_t count, const std::string& between) {
    std::string fields;
    for (std::uint64_t i = 0; i < count; ++i)
        fields += between + "<dc:f" + std::to_string(i) + ">v</dc:f" + std::to_string(i) + ">";
    return fields;
}

std::string AtTheLimit(std::int64_t which) {
    const std::uint64_t levels = Limits::kMaxNestingDepth - 4;  // wrapper and leaf
    std::string attributes;
    switch (which) {
        case 0: {
            std::string open, close;
            for (std::uint64_t i = 0; i < levels; ++i) {
                open += "<dc:p rdf:parseType='Resource'>";
                close += "</dc:p>";
            }
            return Wrapped(open + "<dc:leaf>v</dc:leaf>" + close);
        }
        case 1:
            return Wrapped("<dc:s rdf:parseType='Resource'>" + Fields(Limits::kMaxNamedChildren - 1, "") + "</dc:s>");
        case 2:
            return Wrapped(
                Fields(Limits::kMaxNamedChildren / 2 - 1, "</rdf:Description><rdf:Description rdf:about=''>"));
        default:
            for (std::uint64_t i = 0; i < Limits::kMaxAttributes - 1; ++i)
                attributes += " dc:a" + std::to_string(i) + "='v'";
            return Wrapped("", attributes);
    }
}

// Arg: 0 deepest, 1 widest struct, 2 most top-level properties, 3 most attributes
// (rdf:about and rdf:parseType count among the named and the attributes).
void ParseAtTheLimit(benchmark::State& state) {
    const std::string packet = AtTheLimit(state.range(0));
    for (auto _ : state) {
        SXMPMeta meta(packet.data(), static_cast<XMP_StringLen>(packet.size()));
        benchmark::DoNotOptimize(&meta);
    }
    state.counters["bytes"] = static_cast<double>(packet.size());
}
BENCHMARK(ParseAtTheLimit)->DenseRange(0, 3)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
