// markers FILE... [--only TYPE]... [--exclude TYPE]...: every marker of the
// file's tracks, with times at its track's rate.

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <kelcore/RefCounted.hpp>
#include <keltemporalxmp/markers.hpp>

#include "CommandList.hpp"
#include "Documents.hpp"
#include "FileReport.hpp"
#include "MarkerJson.hpp"
#include "Options.hpp"

namespace keltemporalxmp::tool {
namespace {

struct MarkersOptions {
    FileOptions files;
    TypeOptions types;
};

// Markers come track by track, each track's in its own order, so the n-th
// marker lies on the track that holds the n-th record.
std::vector<std::optional<FrameRate>> MarkerRates(const std::vector<XMPTrack>& tracks) {
    std::vector<std::optional<FrameRate>> rates;
    for (const XMPTrack& track : tracks) {
        rates.insert(rates.end(), track.GetMarkers().size(), TrackRate(track));
    }
    return rates;
}

// JSON as the markers come, one track's markers at a time.
void WriteMarkersJson(Report& output, const std::string& file, const MarkerTypeFilter& filter, ReaderChoice reader) {
    const std::vector<XMPTrack> tracks = ReadTracks(file, reader);
    output.BeginJsonList(file, "markers");
    for (const XMPTrack& track : tracks) {
        MarkerList markers;
        AppendMarkersOfTracks({&track, 1}, markers);
        const std::optional<FrameRate> rate = TrackRate(track);
        for (const auto& marker : markers) {
            if (filter.Validate(marker->GetType())) {
                output.AddJsonItem(MarkerJson(*marker, rate));
            }
        }
    }
    output.EndJsonList();
}

int StreamMarkersJson(const MarkersOptions& options, const MarkerTypeFilter& filter) {
    Report output(OutputFormat::kJson, "markers", true);
    const int status = ForEachFile(options.files.files, [&](const std::string& file) {
        WriteMarkersJson(output, file, filter, options.files.reader);
    });
    output.Finish();
    return status;
}

FileReport ReportMarkers(const std::string& file, const MarkerTypeFilter& filter, ReaderChoice reader) {
    const std::vector<XMPTrack> tracks = ReadTracks(file, reader);
    MarkerList markers;
    AppendMarkersOfTracks(tracks, markers);
    const std::vector<std::optional<FrameRate>> rates = MarkerRates(tracks);
    FileReport report{MarkerTable(), {}};
    kelcore::JSONValue& list = report.result["markers"] = kelcore::JSONValue::array();
    for (std::size_t i = 0; i < markers.size(); ++i) {
        if (filter.Validate(markers[i]->GetType())) {
            AddMarkerRow(report.table, *markers[i], rates[i]);
            list.push_back(MarkerJson(*markers[i], rates[i]));
        }
    }
    return report;
}

}  // namespace

CommandEntry AddMarkersCommand(CLI::App& app) {
    auto options = std::make_shared<MarkersOptions>();
    CLI::App* command = app.add_subcommand(
        "markers",
        "List every marker of each file's tracks, times in seconds, frames and timecode at the track's rate");
    AddFileOptions(*command, options->files);
    AddReaderOption(*command, options->files.reader);
    AddTypeOptions(*command, options->types);
    return {command, [options] {
                const kelcore::RefPtr<MarkerTypeFilter> filter = TypeFilter(options->types);
                if (options->files.format == OutputFormat::kJson) {
                    return StreamMarkersJson(*options, *filter);
                }
                return ReportOnFiles(options->files, "markers", [&](const std::string& file) {
                    return ReportMarkers(file, *filter, options->files.reader);
                });
            }};
}

}  // namespace keltemporalxmp::tool
