// WriteAllMarkers and ReadAllMarkers on 10,000 markers of 5 types, each beside
// the document's own track operations on the same markers as records: the
// tracks added and saved (AddTrack + PrepareForSave), and read by a fresh
// document. The difference is the UTF-16 Marker layer.

#include <cstdint>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <kelcore/UTF.hpp>
#include <kelmediatypes/TickTime.hpp>
#include <keltemporalxmp/docops.hpp>
#include <keltemporalxmp/markers.hpp>

namespace {

using keltemporalxmp::Marker;
using keltemporalxmp::MarkerList;
using keltemporalxmp::XMPCuePointParam;
using keltemporalxmp::XMPDocOpsTemporal;
using keltemporalxmp::XMPTemporalMetadataInfo;
using keltemporalxmp::XMPTrack;

constexpr std::int64_t kFrameRate = 25;
constexpr std::int64_t kTicksPerFrame = kelmediatypes::TickTime::kTicksPerSecond / kFrameRate;
constexpr std::int64_t kMarkerCount = 10000;
const char* const kTypes[] = {"Chapter", "Comment", "Cue", "Speech", "WebLink"};
constexpr std::int64_t kTypeCount = sizeof kTypes / sizeof kTypes[0];

// Types interleaved, start times rising: what a logging tool hands over.
MarkerList Markers() {
    MarkerList markers;
    for (std::int64_t i = 0; i < kMarkerCount; ++i) {
        const std::string number = std::to_string(i);
        auto marker = std::make_shared<Marker>();
        marker->SetType(kelcore::UTF8to16(kTypes[i % kTypeCount]));
        marker->SetStartTime(kelmediatypes::TickTime(i * 3 * kTicksPerFrame));
        marker->SetDuration(kelmediatypes::TickTime(25 * kTicksPerFrame));
        marker->SetName(kelcore::UTF8to16("Marker " + number));
        marker->SetComment(kelcore::UTF8to16("A comment on marker " + number));
        marker->SetCuePointList({{u"speaker", u"Ann"}, {u"scene", kelcore::UTF8to16("Scene " + number)}});
        markers.push_back(std::move(marker));
    }
    return markers;
}

// The same markers as records, one track per type, as WriteAllMarkers lays them out.
std::vector<XMPTrack> Tracks(const MarkerList& markers) {
    std::vector<XMPTrack> tracks;
    for (const char* type : kTypes) {
        tracks.emplace_back(type, type, kFrameRate, 1);
    }
    for (std::size_t i = 0; i < markers.size(); ++i) {
        const Marker& marker = *markers[i];
        std::vector<XMPCuePointParam> params;
        for (const auto& cuePoint : marker.GetCuePointList()) {
            params.emplace_back(kelcore::UTF16to8(cuePoint.key).c_str(), kelcore::UTF16to8(cuePoint.value).c_str());
        }
        tracks[i % kTypeCount].AddMarker(XMPTemporalMetadataInfo(
            kelcore::UTF16to8(marker.GetName()).c_str(), kelcore::UTF16to8(marker.GetComment()).c_str(),
            marker.GetStartTime().GetTicks(), marker.GetDuration().GetTicks(), "", "", "", "", params, "", "",
            marker.GetMarkerID().c_str(), nullptr));
    }
    return tracks;
}

void AddAndSave(SXMPMeta& meta, const std::vector<XMPTrack>& tracks) {
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    for (const XMPTrack& track : tracks) {
        std::string name;
        track.GetTrackName(&name);
        doc.AddTrack(name.c_str(), track);
    }
    doc.PrepareForSave("");
}

SXMPMeta WrittenPacket() {
    SXMPMeta meta;
    keltemporalxmp::WriteAllMarkers(Markers(), meta, kFrameRate, 1);
    return meta;
}

void WriteAllMarkers(benchmark::State& state) {
    const MarkerList markers = Markers();
    for (auto _ : state) {
        SXMPMeta meta;
        keltemporalxmp::WriteAllMarkers(markers, meta, kFrameRate, 1);
        benchmark::DoNotOptimize(meta);
    }
    state.SetItemsProcessed(state.iterations() * kMarkerCount);
}

void WriteTracksBaseline(benchmark::State& state) {
    const std::vector<XMPTrack> tracks = Tracks(Markers());
    for (auto _ : state) {
        SXMPMeta meta;
        AddAndSave(meta, tracks);
        benchmark::DoNotOptimize(meta);
    }
    state.SetItemsProcessed(state.iterations() * kMarkerCount);
}

void ReadAllMarkers(benchmark::State& state) {
    SXMPMeta meta = WrittenPacket();
    for (auto _ : state) {
        MarkerList markers;
        keltemporalxmp::ReadAllMarkers(meta, markers);
        benchmark::DoNotOptimize(markers);
    }
    state.SetItemsProcessed(state.iterations() * kMarkerCount);
}

void ReadTracksBaseline(benchmark::State& state) {
    SXMPMeta meta = WrittenPacket();
    for (auto _ : state) {
        XMPDocOpsTemporal doc;
        doc.OpenXMP(&meta, "");
        std::size_t markers = 0;
        for (auto track = doc.TrackListIteratorBegin(); track != doc.TrackListIteratorEnd(); ++track) {
            markers += track->GetMarkers().size();
        }
        benchmark::DoNotOptimize(markers);
    }
    state.SetItemsProcessed(state.iterations() * kMarkerCount);
}

BENCHMARK(WriteAllMarkers)->Unit(benchmark::kMillisecond);
BENCHMARK(WriteTracksBaseline)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadAllMarkers)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadTracksBaseline)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
