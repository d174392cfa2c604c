// collect FILE... [--start TIME] [--duration TIME] [--mask HEX] [--max-records N] [--reader R]: every marker
// a composed document shows on its own timeline, its ingredients' at any depth
// included, each reported back with where it came from.

#include <memory>
#include <optional>
#include <string>

#include <keltemporalxmp/collector.hpp>

#include "CollectRange.hpp"
#include "CommandList.hpp"
#include "Documents.hpp"
#include "FileReport.hpp"
#include "PacketReading.hpp"

namespace keltemporalxmp::tool {
namespace {

using Collector = XMPTemporalMetadataCollector;

struct CollectOptions {
    FileOptions files;
    CollectRangeOptions range;
};

std::string Field(const XMPTemporalMetadataInfo& info, XMPTemporalMetadataInfo::_infoFieldEnum field) {
    std::string value;
    info.GetMarkerField(&value, field);
    return value;
}

kelcore::JSONValue CollectedJson(const XMPTemporalMetadataInfo& info) {
    return {{"form", CollectedFormName(info.GetInfoForm())},
            {"type", CollectedMarkerType(info)},
            {"name", Field(info, XMPTemporalMetadataInfo::kInfoField_Name)},
            {"track", Field(info, XMPTemporalMetadataInfo::kInfoField_ReportedTrackName)},
            {"containingInstanceID", Field(info, XMPTemporalMetadataInfo::kInfoField_ReportedContainingInstanceID)},
            {"partMapping", Field(info, XMPTemporalMetadataInfo::kInfoField_ReportedPartMapping)},
            {"start", TimeJson(info.GetStartTime(), std::nullopt)},
            {"duration", TimeJson(info.GetDuration(), std::nullopt)},
            {"clippedStart", TimeJson(info.GetReportedClippedStartTime(), std::nullopt)},
            {"clippedDuration", TimeJson(info.GetReportedClippedDuration(), std::nullopt)}};
}

// JSON record by record, so that a large collection is never held twice more.
int StreamCollectionsJson(const CollectOptions& options, const CollectRange& range) {
    Report output(OutputFormat::kJson, "collect", true);
    const int status = ForEachFile(options.files.files, [&](const std::string& file) {
        const Collector::Collection collection = ReadCollection(file, range, options.files.reader);
        output.BeginJsonList(file, "collected");
        for (const auto& [key, info] : collection) {
            output.AddJsonItem(CollectedJson(info));
        }
        output.EndJsonList();
    });
    output.Finish();
    return status;
}

FileReport ReportCollection(const std::string& file, const CollectRange& range, ReaderChoice reader) {
    const Collector::Collection collection = ReadCollection(file, range, reader);
    FileReport report{Table({{"start", true},
                             {"duration", true},
                             {"form"},
                             {"type"},
                             {"name"},
                             {"track"},
                             {"from instance"},
                             {"mapping"}}),
                      {}};
    kelcore::JSONValue& list = report.result["collected"] = kelcore::JSONValue::array();
    for (const auto& [key, info] : collection) {
        report.table.AddRow({SecondsCell(info.GetReportedClippedStartTime()),
                             SecondsCell(info.GetReportedClippedDuration()), CollectedFormName(info.GetInfoForm()),
                             CollectedMarkerType(info), Field(info, XMPTemporalMetadataInfo::kInfoField_Name),
                             Field(info, XMPTemporalMetadataInfo::kInfoField_ReportedTrackName),
                             Field(info, XMPTemporalMetadataInfo::kInfoField_ReportedContainingInstanceID),
                             Field(info, XMPTemporalMetadataInfo::kInfoField_ReportedPartMapping)});
        list.push_back(CollectedJson(info));
    }
    return report;
}

}  // namespace

CommandEntry AddCollectCommand(CLI::App& app) {
    auto options = std::make_shared<CollectOptions>();
    CLI::App* command = app.add_subcommand(
        "collect", "Collect every marker on each document's timeline, its ingredients' at any depth included");
    AddFileOptions(*command, options->files);
    AddCollectRangeOptions(*command, options->range);
    AddReaderOption(*command, options->files.reader);
    return {command, [options] {
                const CollectRange range = ParseCollectRange(options->range);
                if (options->files.format == OutputFormat::kJson) {
                    return StreamCollectionsJson(*options, range);
                }
                return ReportOnFiles(options->files, "collect", [&](const std::string& file) {
                    return ReportCollection(file, range, options->files.reader);
                });
            }};
}

}  // namespace keltemporalxmp::tool
