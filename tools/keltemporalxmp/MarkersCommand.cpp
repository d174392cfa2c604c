// markers FILE... [--only TYPE]... [--exclude TYPE]...: every marker of the
// file's tracks, with times at its track's rate.

#include <memory>
#include <optional>
#include <string>
#include <vector>

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

// ReadAllMarkers gives the markers track by track, each track's in its own
// order, so the n-th marker lies on the track that holds the n-th record.
std::vector<std::optional<FrameRate>> MarkerRates(SXMPMeta& meta) {
    const std::unique_ptr<XMPDocOpsTemporal> document = OpenTemporalDocument(meta);
    std::vector<std::optional<FrameRate>> rates;
    for (auto track = document->TrackListIteratorBegin(); track != document->TrackListIteratorEnd(); ++track) {
        rates.insert(rates.end(), track->GetMarkers().size(), TrackRate(*track));
    }
    return rates;
}

FileReport ReportMarkers(const std::string& file, const MarkerTypeFilter& filter) {
    SXMPMeta meta = ReadDocument(file);
    MarkerList markers;
    ReadAllMarkers(meta, markers);
    std::vector<std::optional<FrameRate>> rates = MarkerRates(meta);
    rates.resize(markers.size());
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
    AddTypeOptions(*command, options->types);
    return {command, [options] {
                const kelcore::RefPtr<MarkerTypeFilter> filter = TypeFilter(options->types);
                return ReportOnFiles(options->files, "markers",
                                     [&](const std::string& file) { return ReportMarkers(file, *filter); });
            }};
}

}  // namespace keltemporalxmp::tool
