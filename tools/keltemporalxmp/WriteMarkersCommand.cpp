// write-markers FILE --from markers.json [--frame-rate RATE] [--output OUT]:
// replaces the file's tracks with the markers of a JSON file in the schema
// `markers --json` prints.

#include <memory>
#include <optional>
#include <string>

#include "CommandList.hpp"
#include "Documents.hpp"
#include "MarkerJson.hpp"
#include "MarkerWriting.hpp"
#include "Options.hpp"

namespace keltemporalxmp::tool {
namespace {

struct WriteMarkersOptions {
    std::string file;
    std::string from;
    std::string output;
    std::optional<FrameRate> rate;
};

int RunWriteMarkers(const WriteMarkersOptions& options) {
    MarkersToWrite markers;
    try {
        MarkersFromJson json = ReadMarkersJsonFile(options.from, options.rate);
        markers = {std::move(json.markers), options.rate, json.rate};
        CheckGivenRate(markers);
    } catch (const InputError& error) {
        ReportError(options.from, error.what());
        return kExitBadInput;
    }
    return WriteMarkersToFile(options.file, markers, options.output, false);
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
