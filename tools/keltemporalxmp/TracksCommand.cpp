// tracks FILE...: the document's tracks with their rate and marker count.

#include <memory>

#include "CommandList.hpp"
#include "Documents.hpp"
#include "FileReport.hpp"

namespace keltemporalxmp::tool {
namespace {

FileReport ReportTracks(const std::string& file) {
    SXMPMeta meta = ReadDocument(file);
    const std::unique_ptr<XMPDocOpsTemporal> document = OpenTemporalDocument(meta);
    FileReport report{Table({{"name"}, {"type"}, {"rate"}, {"markers", true}}), {}};
    kelcore::JSONValue& tracks = report.result["tracks"] = kelcore::JSONValue::array();
    for (auto track = document->TrackListIteratorBegin(); track != document->TrackListIteratorEnd(); ++track) {
        std::string name;
        std::string type;
        track->GetTrackName(&name);
        track->GetTrackType(&type);
        const FrameRate rate{track->GetFrameRateNumerator(), track->GetFrameRateDenominator()};
        const std::size_t markers = track->GetMarkers().size();
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
    return {command, [options] { return ReportOnFiles(*options, "tracks", ReportTracks); }};
}

}  // namespace keltemporalxmp::tool
