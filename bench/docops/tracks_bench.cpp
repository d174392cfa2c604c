// One track of markers (name, comment, start, duration, two cue points each)
// written through AddTrack + PrepareForSave and read back through a fresh
// document, each beside a baseline that writes / reads the same fields with
// TXMPMeta alone, composing each marker's path once.

#include <charconv>
#include <cstdint>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <kelmediatypes/TickTime.hpp>
#include <keltemporalxmp/docops.hpp>

namespace {

using keltemporalxmp::XMPCuePointParam;
using keltemporalxmp::XMPDocOpsTemporal;
using keltemporalxmp::XMPTemporalMetadataInfo;
using keltemporalxmp::XMPTrack;

constexpr std::int64_t kFrameRate = 25;
constexpr std::int64_t kTicksPerFrame = kelmediatypes::TickTime::kTicksPerSecond / kFrameRate;
constexpr std::int64_t kDurationFrames = 25;

// The baseline's input: the same marker without records.
struct PlainMarker {
    std::string m_name;
    std::string m_comment;
    std::int64_t m_startFrame;
    std::int64_t m_durationFrames;
    std::string m_cueKeys[2];
    std::string m_cueValues[2];
};

PlainMarker MakePlainMarker(std::int64_t index) {
    const std::string number = std::to_string(index);
    return {"Marker " + number,   "A comment on marker " + number, index * 3, kDurationFrames,
            {"speaker", "scene"}, {"Ann", "Scene " + number}};
}

std::vector<PlainMarker> PlainMarkers(std::int64_t count) {
    std::vector<PlainMarker> markers;
    markers.reserve(static_cast<std::size_t>(count));
    for (std::int64_t i = 0; i < count; ++i) {
        markers.push_back(MakePlainMarker(i));
    }
    return markers;
}

XMPTrack Track(std::int64_t count) {
    XMPTrack track("Markers", "Comment", kFrameRate, 1);
    for (const PlainMarker& plain : PlainMarkers(count)) {
        const std::vector<XMPCuePointParam> params = {
            XMPCuePointParam(plain.m_cueKeys[0].c_str(), plain.m_cueValues[0].c_str()),
            XMPCuePointParam(plain.m_cueKeys[1].c_str(), plain.m_cueValues[1].c_str())};
        track.AddMarker(XMPTemporalMetadataInfo(
            plain.m_name.c_str(), plain.m_comment.c_str(), plain.m_startFrame * kTicksPerFrame,
            plain.m_durationFrames * kTicksPerFrame, "", "", "", "", params, "", "", nullptr, nullptr));
    }
    return track;
}

SXMPMeta WrittenPacket(std::int64_t count) {
    SXMPMeta meta;
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    doc.AddTrack("Markers", Track(count));
    doc.PrepareForSave("");
    return meta;
}

std::string Number(std::int64_t value) {
    char digits[24];
    return std::string(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

void WriteTrack(benchmark::State& state) {
    const XMPTrack track = Track(state.range(0));
    for (auto _ : state) {
        SXMPMeta meta;
        XMPDocOpsTemporal doc;
        doc.OpenXMP(&meta, "");
        doc.AddTrack("Markers", track);
        doc.PrepareForSave("");
        benchmark::DoNotOptimize(meta);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void WriteTrackBaseline(benchmark::State& state) {
    const std::vector<PlainMarker> markers = PlainMarkers(state.range(0));
    for (auto _ : state) {
        SXMPMeta meta;
        meta.AppendArrayItem(kXMP_NS_DM, "xmpDM:Tracks", kXMP_PropValueIsArray, nullptr, kXMP_PropValueIsStruct);
        meta.SetStructField(kXMP_NS_DM, "xmpDM:Tracks[1]", kXMP_NS_DM, "trackName", "Markers");
        meta.SetStructField(kXMP_NS_DM, "xmpDM:Tracks[1]", kXMP_NS_DM, "trackType", "Comment");
        meta.SetStructField(kXMP_NS_DM, "xmpDM:Tracks[1]", kXMP_NS_DM, "frameRate", "f25");
        const char* markersPath = "xmpDM:Tracks[1]/xmpDM:markers";
        std::string markerPath;
        std::string cuePointsPath;
        std::string cuePointPath;
        XMP_Index index = 0;
        for (const PlainMarker& marker : markers) {
            meta.AppendArrayItem(kXMP_NS_DM, markersPath, kXMP_PropArrayIsOrdered, nullptr, kXMP_PropValueIsStruct);
            SXMPUtils::ComposeArrayItemPath(kXMP_NS_DM, markersPath, ++index, &markerPath);
            const char* path = markerPath.c_str();
            meta.SetStructField(kXMP_NS_DM, path, kXMP_NS_DM, "startTime", Number(marker.m_startFrame).c_str());
            meta.SetStructField(kXMP_NS_DM, path, kXMP_NS_DM, "duration", Number(marker.m_durationFrames).c_str());
            meta.SetStructField(kXMP_NS_DM, path, kXMP_NS_DM, "comment", marker.m_comment.c_str());
            meta.SetStructField(kXMP_NS_DM, path, kXMP_NS_DM, "name", marker.m_name.c_str());
            SXMPUtils::ComposeStructFieldPath(kXMP_NS_DM, path, kXMP_NS_DM, "cuePointParams", &cuePointsPath);
            for (XMP_Index cue = 0; cue < 2; ++cue) {
                meta.AppendArrayItem(kXMP_NS_DM, cuePointsPath.c_str(), kXMP_PropArrayIsOrdered, nullptr,
                                     kXMP_PropValueIsStruct);
                SXMPUtils::ComposeArrayItemPath(kXMP_NS_DM, cuePointsPath.c_str(), cue + 1, &cuePointPath);
                meta.SetStructField(kXMP_NS_DM, cuePointPath.c_str(), kXMP_NS_DM, "key", marker.m_cueKeys[cue].c_str());
                meta.SetStructField(kXMP_NS_DM, cuePointPath.c_str(), kXMP_NS_DM, "value",
                                    marker.m_cueValues[cue].c_str());
            }
        }
        benchmark::DoNotOptimize(meta);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void ReadTrack(benchmark::State& state) {
    SXMPMeta meta = WrittenPacket(state.range(0));
    for (auto _ : state) {
        XMPDocOpsTemporal doc;
        doc.OpenXMP(&meta, "");
        std::size_t markers = 0;
        for (auto track = doc.TrackListIteratorBegin(); track != doc.TrackListIteratorEnd(); ++track) {
            markers += track->GetMarkers().size();
        }
        benchmark::DoNotOptimize(markers);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

std::int64_t Frames(const std::string& text) {
    std::int64_t frames = 0;
    std::from_chars(text.data(), text.data() + text.size(), frames);
    return frames;
}

void ReadTrackBaseline(benchmark::State& state) {
    SXMPMeta meta = WrittenPacket(state.range(0));
    for (auto _ : state) {
        std::vector<PlainMarker> markers;
        const char* markersPath = "xmpDM:Tracks[1]/xmpDM:markers";
        const XMP_Index count = meta.CountArrayItems(kXMP_NS_DM, markersPath);
        markers.reserve(static_cast<std::size_t>(count));
        std::string markerPath;
        std::string cuePointsPath;
        std::string cuePointPath;
        std::string text;
        for (XMP_Index index = 1; index <= count; ++index) {
            SXMPUtils::ComposeArrayItemPath(kXMP_NS_DM, markersPath, index, &markerPath);
            const char* path = markerPath.c_str();
            PlainMarker& marker = markers.emplace_back();
            meta.GetStructField(kXMP_NS_DM, path, kXMP_NS_DM, "name", &marker.m_name, nullptr);
            meta.GetStructField(kXMP_NS_DM, path, kXMP_NS_DM, "comment", &marker.m_comment, nullptr);
            meta.GetStructField(kXMP_NS_DM, path, kXMP_NS_DM, "startTime", &text, nullptr);
            marker.m_startFrame = Frames(text);
            meta.GetStructField(kXMP_NS_DM, path, kXMP_NS_DM, "duration", &text, nullptr);
            marker.m_durationFrames = Frames(text);
            SXMPUtils::ComposeStructFieldPath(kXMP_NS_DM, path, kXMP_NS_DM, "cuePointParams", &cuePointsPath);
            for (XMP_Index cue = 0; cue < 2; ++cue) {
                SXMPUtils::ComposeArrayItemPath(kXMP_NS_DM, cuePointsPath.c_str(), cue + 1, &cuePointPath);
                meta.GetStructField(kXMP_NS_DM, cuePointPath.c_str(), kXMP_NS_DM, "key", &marker.m_cueKeys[cue],
                                    nullptr);
                meta.GetStructField(kXMP_NS_DM, cuePointPath.c_str(), kXMP_NS_DM, "value", &marker.m_cueValues[cue],
                                    nullptr);
            }
        }
        benchmark::DoNotOptimize(markers);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(WriteTrack)->Apply(Sizes);
BENCHMARK(WriteTrackBaseline)->Apply(Sizes);
BENCHMARK(ReadTrack)->Apply(Sizes);
BENCHMARK(ReadTrackBaseline)->Apply(Sizes);

}  // namespace

BENCHMARK_MAIN();
