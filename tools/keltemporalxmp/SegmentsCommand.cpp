// segments FILE...: the "Segmentation" markers of the "Markers" track as the
// segmentation query gives them, with the track's frame duration.

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include <keltemporalxmp/markers.hpp>

#include "CommandList.hpp"
#include "Documents.hpp"
#include "FileReport.hpp"

namespace keltemporalxmp::tool {
namespace {

// Whole frames of frameDuration ticks, rounded to the nearest; none when
// either is unspecified, or a frame is not a positive number of ticks (a
// negative rate stored in the file).
std::optional<std::int64_t> FramesOf(std::int64_t ticks, std::int64_t frameDuration) {
    if (ticks == kTimeUnspecified || frameDuration == kTimeUnspecified || frameDuration <= 0) {
        return std::nullopt;
    }
    return std::llround(static_cast<long double>(ticks) / static_cast<long double>(frameDuration));
}

std::string Cell(std::optional<std::int64_t> value) {
    return value ? std::to_string(*value) : "-";
}

kelcore::JSONValue SegmentJson(std::int64_t start, std::int64_t duration, std::int64_t frameDuration) {
    kelcore::JSONValue segment = {{"start", TimeJson(start, std::nullopt)},
                                  {"duration", TimeJson(duration, std::nullopt)}};
    if (const std::optional<std::int64_t> frame = FramesOf(start, frameDuration)) {
        segment["startFrame"] = *frame;
    }
    if (const std::optional<std::int64_t> frames = FramesOf(duration, frameDuration)) {
        segment["frames"] = *frames;
    }
    return segment;
}

FileReport ReportSegments(const std::string& file, ReaderChoice reader) {
    std::vector<std::pair<std::int64_t, std::int64_t>> segments;
    std::int64_t frameDuration = 0;
    GetSegmentationMarkersOfTracks(ReadTracks(file, reader), segments, frameDuration);
    const std::string frameCell = frameDuration == kTimeUnspecified ? "-" : std::to_string(frameDuration);
    FileReport report{Table({{"start", true},
                             {"start_frame", true},
                             {"duration", true},
                             {"frames", true},
                             {"start_ticks", true},
                             {"duration_ticks", true},
                             {"frame_ticks", true}}),
                      {}};
    report.result["frameDuration"] = TimeJson(frameDuration, std::nullopt);
    kelcore::JSONValue& list = report.result["segments"] = kelcore::JSONValue::array();
    for (const auto& [start, duration] : segments) {
        report.table.AddRow({SecondsCell(start), Cell(FramesOf(start, frameDuration)), SecondsCell(duration),
                             Cell(FramesOf(duration, frameDuration)), std::to_string(start), std::to_string(duration),
                             frameCell});
        list.push_back(SegmentJson(start, duration, frameDuration));
    }
    return report;
}

}  // namespace

CommandEntry AddSegmentsCommand(CLI::App& app) {
    auto options = std::make_shared<FileOptions>();
    CLI::App* command = app.add_subcommand(
        "segments", "List the Segmentation markers of the track named Markers, and its frame duration");
    AddFileOptions(*command, *options);
    AddReaderOption(*command, options->reader);
    return {command, [options] {
                return ReportOnFiles(*options, "segments",
                                     [&](const std::string& file) { return ReportSegments(file, options->reader); });
            }};
}

}  // namespace keltemporalxmp::tool
