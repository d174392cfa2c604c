// Export and import of 100,000 markers in each format, beside the baseline
// they must stay under: ReadAllMarkers over the already parsed packet that
// holds the same markers.

#include <cstdint>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <keltemporalxmp/exchange.hpp>
#include <keltemporalxmp/markers.hpp>

namespace {

using namespace keltemporalxmp::exchange;

constexpr std::int64_t kMarkerCount = 100000;
constexpr std::int64_t kFrame = kTicksPerSecond / 25;
const char* const kTypes[] = {"Chapter", "Comment", "Cue", "Speech", "WebLink"};

const Format kFormats[] = {Format::kYouTube, Format::kFFMetadata, Format::kWebVTT, Format::kSRT,
                           Format::kEDL,     Format::kCSV,        Format::kTSV,    Format::kAudacity,
                           Format::kOTIO,    Format::kJSON};

// Rising starts 12 s apart, so every format holds them; a name, a comment
// and two cue points each.
const std::vector<ExchangeMarker>& Markers() {
    static const std::vector<ExchangeMarker> markers = [] {
        std::vector<ExchangeMarker> list;
        list.reserve(kMarkerCount);
        for (std::int64_t i = 0; i < kMarkerCount; ++i) {
            const std::string number = std::to_string(i);
            ExchangeMarker marker;
            marker.type = kTypes[i % std::size(kTypes)];
            marker.name = "Marker " + number;
            marker.comment = "A comment on marker " + number;
            marker.start = i * 300 * kFrame;
            marker.duration = 25 * kFrame;
            marker.rate = {25, 1};
            marker.cuePoints = {{"speaker", "Ann"}, {"scene", "Scene " + number}};
            list.push_back(std::move(marker));
        }
        return list;
    }();
    return markers;
}

ExportOptions Options() {
    ExportOptions options;
    options.force = true;
    return options;
}

void Export(benchmark::State& state) {
    const Format format = kFormats[state.range(0)];
    state.SetLabel(FormatName(format));
    for (auto _ : state) {
        benchmark::DoNotOptimize(ExportMarkers(Markers(), format, Options()));
    }
    state.SetItemsProcessed(state.iterations() * kMarkerCount);
}

void Import(benchmark::State& state) {
    const Format format = kFormats[state.range(0)];
    state.SetLabel(FormatName(format));
    const std::string text = ExportMarkers(Markers(), format, Options());
    ImportOptions options;
    options.rate = {25, 1};
    for (auto _ : state) {
        benchmark::DoNotOptimize(ImportMarkers(text, format, options));
    }
    state.SetItemsProcessed(state.iterations() * kMarkerCount);
}

void ReadAllMarkersBaseline(benchmark::State& state) {
    keltemporalxmp::MarkerList written;
    for (const ExchangeMarker& marker : Markers()) {
        written.push_back(ToMarker(marker));
    }
    SXMPMeta source;
    keltemporalxmp::WriteAllMarkers(written, source, 25, 1);
    std::string packet;
    source.SerializeToBuffer(&packet);
    SXMPMeta meta(packet.data(), static_cast<XMP_StringLen>(packet.size()));
    for (auto _ : state) {
        keltemporalxmp::MarkerList markers;
        keltemporalxmp::ReadAllMarkers(meta, markers);
        benchmark::DoNotOptimize(markers);
    }
    state.SetItemsProcessed(state.iterations() * kMarkerCount);
}

BENCHMARK(ReadAllMarkersBaseline)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(Export)->DenseRange(0, std::size(kFormats) - 1)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(Import)->DenseRange(0, std::size(kFormats) - 1)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace

BENCHMARK_MAIN();
