// collect FILE... [--start TIME] [--duration TIME] [--mask HEX] [--max-records N] [--reader R]: every marker
// a composed document shows on its own timeline, its ingredients' at any depth
// included, each reported back with where it came from.

#include <algorithm>
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

// A string as the JSON dump writes it; most texts need no escaping.
void AppendJsonString(std::string& out, const std::string& text) {
    const bool plain = std::all_of(text.begin(), text.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte >= 0x20 && byte < 0x80 && c != '"' && c != '\\';
    });
    if (plain) {
        out.append(1, '"').append(text).append(1, '"');
    } else {
        out += kelcore::JSONValue(text).dump(-1, ' ', false, kelcore::JSONValue::error_handler_t::replace);
    }
}

void AppendMember(std::string& out, const char* name, const std::string& text) {
    out.append("  \"").append(name).append("\": ");
    AppendJsonString(out, text);
    out += ",\n";
}

// What TimeJson(ticks) dumps to, one level down.
void AppendTime(std::string& out, const char* name, std::int64_t ticks, bool last) {
    out.append("  \"").append(name).append("\": {\n    \"ticks\": ").append(std::to_string(ticks)).append(",\n    ");
    if (ticks == kTimeUnspecified) {
        out += "\"unspecified\": true";
    } else {
        out.append("\"seconds\": ").append(kelcore::JSONValue(Seconds(ticks)).dump());
    }
    out += last ? "\n  }\n" : "\n  },\n";
}

// A record's JSON object as the JSON dump would print it, written straight
// into text: a collection can hold many thousands of records.
void DumpCollected(std::string& out, const XMPTemporalMetadataInfo& info) {
    out = "{\n";
    AppendMember(out, "form", CollectedFormName(info.GetInfoForm()));
    AppendMember(out, "type", CollectedMarkerType(info));
    AppendMember(out, "name", *info.GetMarkerFieldPtr(XMPTemporalMetadataInfo::kInfoField_Name));
    AppendMember(out, "track", *info.GetMarkerFieldPtr(XMPTemporalMetadataInfo::kInfoField_ReportedTrackName));
    AppendMember(out, "containingInstanceID",
                 *info.GetMarkerFieldPtr(XMPTemporalMetadataInfo::kInfoField_ReportedContainingInstanceID));
    AppendMember(out, "partMapping", *info.GetMarkerFieldPtr(XMPTemporalMetadataInfo::kInfoField_ReportedPartMapping));
    AppendTime(out, "start", info.GetStartTime(), false);
    AppendTime(out, "duration", info.GetDuration(), false);
    AppendTime(out, "clippedStart", info.GetReportedClippedStartTime(), false);
    AppendTime(out, "clippedDuration", info.GetReportedClippedDuration(), true);
    out += "}";
}

// JSON record by record, so that a large collection is never held twice more.
int StreamCollectionsJson(const CollectOptions& options, const CollectRange& range) {
    Report output(OutputFormat::kJson, "collect", true);
    const int status = ForEachFile(options.files.files, [&](const std::string& file) {
        const Collector::Collection collection = ReadCollection(file, range, options.files.reader);
        output.BeginJsonList(file, "collected");
        std::string dumped;
        for (const auto& [key, info] : collection) {
            DumpCollected(dumped, info);
            output.AddDumpedJsonItem(dumped);
        }
        output.EndJsonList();
    });
    output.Finish();
    return status;
}

// Tables and CSV; JSON is written by StreamCollectionsJson.
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
    for (const auto& [key, info] : collection) {
        report.table.AddRow({SecondsCell(info.GetReportedClippedStartTime()),
                             SecondsCell(info.GetReportedClippedDuration()), CollectedFormName(info.GetInfoForm()),
                             CollectedMarkerType(info), Field(info, XMPTemporalMetadataInfo::kInfoField_Name),
                             Field(info, XMPTemporalMetadataInfo::kInfoField_ReportedTrackName),
                             Field(info, XMPTemporalMetadataInfo::kInfoField_ReportedContainingInstanceID),
                             Field(info, XMPTemporalMetadataInfo::kInfoField_ReportedPartMapping)});
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
