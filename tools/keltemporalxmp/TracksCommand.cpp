// tracks FILE...: the document's tracks with their rate and marker count.

#include <memory>

#include "CommandList.hpp"
#include "Documents.hpp"
#include "FileReport.hpp"

namespace keltemporalxmp::tool {
namespace {

FileReport ReportTracks(const std::string& file, ReaderChoice reader) {
    FileReport report{Table({{"name"}, {"type"}, {"rate"}, {"markers", true}}), {}};
    kelcore::JSONValue& tracks = report.result["tracks"] = kelcore::JSONValue::array();
    for (const XMPTrack& track : ReadTracks(file, reader)) {
        std::string name;
        std::string type;
        track.GetTrackName(&name);
        track.GetTrackType(&type);
        const FrameRate rate{track.GetFrameRateNumerator(), track.GetFrameRateDenominator()};
        const std::size_t markers = track.GetMarkers().size();
        report.table.AddRow({name, type, FrameRateText(rate), std::to_string(markers)});
        tracks.push_back({{"name", name}, {"type", type}, {"rate", FrameRateJson(rate)}, {"markers", markers}});
    }
    return report;
}

}  // namespace

CommandEntry AddTracksCommand(CLI::App& app) {
    auto options = std::make_shared<FileOptions>();
    CLI::App* command = app.add_subcommand("tracks", "List the tracks of each file: name, type, rate, markers");
    AddFileOptions(*command, *options);
    AddReaderOption(*command, options->reader);
    return {command, [options] {
                return ReportOnFiles(*options, "tracks",
                                     [&](const std::string& file) { return ReportTracks(file, options->reader); });
            }};
}

}  // namespace keltemporalxmp::tool
