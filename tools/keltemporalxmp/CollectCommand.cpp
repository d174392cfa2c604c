// collect FILE... [--start TIME] [--duration TIME] [--mask HEX] [--max-records N] [--reader R]: every marker
// a composed document shows on its own timeline, its ingredients' at any depth
// included, each reported back with where it came from.

#include <memory>
#include <optional>
#include <string>

#include <keltemporalxmp/collector.hpp>

#include "CollectRange.hpp"
#include "CommandList.hpp"
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
        const std::string type = CollectedMarkerType(info);
        const std::string name = Field(info, XMPTemporalMetadataInfo::kInfoField_Name);
        const std::string track = Field(info, XMPTemporalMetadataInfo::kInfoField_ReportedTrackName);
        const std::string instance = Field(info, XMPTemporalMetadataInfo::kInfoField_ReportedContainingInstanceID);
        const std::string mapping = Field(info, XMPTemporalMetadataInfo::kInfoField_ReportedPartMapping);
        report.table.AddRow({SecondsCell(info.GetReportedClippedStartTime()),
                             SecondsCell(info.GetReportedClippedDuration()), CollectedFormName(info.GetInfoForm()),
                             type, name, track, instance, mapping});
        list.push_back({{"form", CollectedFormName(info.GetInfoForm())},
                        {"type", type},
                        {"name", name},
                        {"track", track},
                        {"containingInstanceID", instance},
                        {"partMapping", mapping},
                        {"start", TimeJson(info.GetStartTime(), std::nullopt)},
                        {"duration", TimeJson(info.GetDuration(), std::nullopt)},
                        {"clippedStart", TimeJson(info.GetReportedClippedStartTime(), std::nullopt)},
                        {"clippedDuration", TimeJson(info.GetReportedClippedDuration(), std::nullopt)}});
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
                return ReportOnFiles(options->files, "collect", [&](const std::string& file) {
                    return ReportCollection(file, range, options->files.reader);
                });
            }};
}

}  // namespace keltemporalxmp::tool
