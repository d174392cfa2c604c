// write-markers FILE --from markers.json [--frame-rate RATE] [--output OUT]:
// replaces the file's tracks with the markers of a JSON file in the schema
// `markers --json` prints.

#include <memory>
#include <optional>
#include <set>
#include <string>

#include <keltemporalxmp/docops.hpp>
#include <keltemporalxmp/markers.hpp>

#include "CommandList.hpp"
#include "Documents.hpp"
#include "MarkerJson.hpp"
#include "Options.hpp"

namespace keltemporalxmp::tool {
namespace {

struct WriteMarkersOptions {
    std::string file;
    std::string from;
    std::string output;
    std::optional<FrameRate> rate;
};

// Tracks store whole frames: a time is kept only when it reads back the same.
bool StoresExactly(std::int64_t ticks, FrameRate rate) {
    return XMPDocOpsTemporal::ConvertExternalTimeStringToTicks(XmpTimeText(ticks, rate).c_str(), rate.numerator,
                                                               rate.denominator, kTicksPerSecond) == ticks;
}

// The number of the first marker with a time that is not a whole frame at rate, or 0.
std::size_t FirstInexactMarker(const MarkerList& markers, FrameRate rate) {
    for (std::size_t i = 0; i < markers.size(); ++i) {
        if (!StoresExactly(markers[i]->GetStartTime().GetTicks(), rate) ||
            !StoresExactly(markers[i]->GetDuration().GetTicks(), rate)) {
            return i + 1;
        }
    }
    return 0;
}

// The given rate, which must hold every time; else the rate the markers were
// shown at when it holds them all; else ticks.
FrameRate WritingRate(const MarkerList& markers, std::optional<FrameRate> given, std::optional<FrameRate> shown) {
    if (given) {
        if (const std::size_t inexact = FirstInexactMarker(markers, *given)) {
            throw InputError("marker " + std::to_string(inexact) + " is not on a whole frame at " +
                             FrameRateText(*given) + "; give another --frame-rate or leave it out");
        }
        return *given;
    }
    return shown && FirstInexactMarker(markers, *shown) == 0 ? *shown : kTickRate;
}

std::size_t TypeCount(const MarkerList& markers) {
    std::set<UTF16String> types;
    for (const auto& marker : markers) {
        types.insert(marker->GetType());
    }
    return types.size();
}

int RunWriteMarkers(const WriteMarkersOptions& options) {
    MarkerList markers;
    FrameRate rate;
    try {
        MarkersFromJson json = ReadMarkersJsonFile(options.from, options.rate);
        rate = WritingRate(json.markers, options.rate, json.rate);
        markers = std::move(json.markers);
    } catch (const InputError& error) {
        ReportError(options.from, error.what());
        return kExitBadInput;
    }
    return ForEachFile({options.file}, [&](const std::string& file) {
        UpdateDocument(file, options.output,
                       [&](SXMPMeta& meta) { WriteAllMarkers(markers, meta, rate.numerator, rate.denominator); });
        std::printf("%s: %zu markers in %zu tracks at %s\n",
                    options.output.empty() ? file.c_str() : options.output.c_str(), markers.size(), TypeCount(markers),
                    FrameRateText(rate).c_str());
    });
}

}  // namespace

CommandEntry AddWriteMarkersCommand(CLI::App& app) {
    auto options = std::make_shared<WriteMarkersOptions>();
    CLI::App* command = app.add_subcommand(
        "write-markers", "Replace the tracks of FILE with the markers of a JSON file (as `markers --json` prints)");
    command->add_option("FILE", options->file, "XMP sidecar (.xmp) or media file")->required();
    command->add_option("--from", options->from, "The markers, as JSON")->required();
    AddRateOption(*command, "--frame-rate", options->rate,
                  "Rate of the tracks written, and of counts and timecode in the JSON; by default the rate the "
                  "markers were shown at when every time is a whole frame there, else ticks");
    AddOutputOption(*command, options->output,
                    "Write here (a sidecar, or a copy of a media file) and leave FILE as it is");
    return {command, [options] { return RunWriteMarkers(*options); }};
}

}  // namespace keltemporalxmp::tool
