// collect FILE... [--start TIME] [--duration TIME] [--mask HEX] [--max-records N]: every marker
// a composed document shows on its own timeline, its ingredients' at any depth
// included, each reported back with where it came from.

#include <charconv>
#include <limits>
#include <memory>
#include <optional>
#include <string>

#include <keltemporalxmp/collector.hpp>

#include "CommandList.hpp"
#include "Documents.hpp"
#include "FileReport.hpp"
#include "TimeInput.hpp"

namespace keltemporalxmp::tool {
namespace {

using Collector = XMPTemporalMetadataCollector;

// Lower than the library's: the tool holds every record three times (the
// record, its table row and its JSON), and the whole report stays under
// about 1 GB at this bound.
constexpr std::size_t kDefaultMaxRecords = 250000;

struct CollectOptions {
    FileOptions files;
    std::string start = "0";
    std::optional<std::string> duration;
    std::string mask = "0F";
    std::string maxRecords = std::to_string(kDefaultMaxRecords);
};

struct Range {
    std::int64_t start;
    std::int64_t duration;
    unsigned char mask;
    std::size_t maxRecords;
};

unsigned char ParseMask(std::string text) {
    if (text.rfind("0x", 0) == 0 || text.rfind("0X", 0) == 0) {
        text.erase(0, 2);
    }
    unsigned int mask = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), mask, 16);
    if (text.empty() || error != std::errc() || end != text.data() + text.size() || mask > 0xFF) {
        throw UsageError("--mask: not a hexadecimal byte (00 to FF): " + text);
    }
    return static_cast<unsigned char>(mask);
}

std::size_t ParseMaxRecords(const std::string& text) {
    std::size_t count = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
    if (text.empty() || error != std::errc() || end != text.data() + text.size() || count == 0) {
        throw UsageError("--max-records: not a whole number from 1 to " +
                         std::to_string(std::numeric_limits<std::size_t>::max()) + ": " + text);
    }
    return count;
}

std::int64_t ParseRangeTime(const std::string& option, const std::string& text) {
    try {
        return ParseUserTime(text, std::nullopt).ticks;
    } catch (const InputError& error) {
        throw UsageError(option + ": " + error.what());
    }
}

Range ParseRange(const CollectOptions& options) {
    return {ParseRangeTime("--start", options.start),
            options.duration ? ParseRangeTime("--duration", *options.duration) : kTimeUnspecified,
            ParseMask(options.mask), ParseMaxRecords(options.maxRecords)};
}

const char* FormName(XMPTemporalMetadataInfo::_infoFormEnum form) {
    switch (form) {
        case XMPTemporalMetadataInfo::kInfoForm_Marker:
            return "marker";
        case XMPTemporalMetadataInfo::kInfoForm_MarkerReportback:
            return "report-back";
        case XMPTemporalMetadataInfo::kInfoForm_ComponentMetadataReportback:
            return "component";
    }
    return "unknown";
}

std::string Field(const XMPTemporalMetadataInfo& info, XMPTemporalMetadataInfo::_infoFieldEnum field) {
    std::string value;
    info.GetMarkerField(&value, field);
    return value;
}

FileReport ReportCollection(const std::string& file, const Range& range) {
    const SXMPMeta meta = ReadDocument(file);
    const Collector collector(range.mask, meta, range.start, range.duration, range.maxRecords);
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
    for (const auto& [key, info] : collector.GetXMPTemporalMetadataInfoCollection()) {
        // Markers written by track keep their type in the track's.
        std::string type = Field(info, XMPTemporalMetadataInfo::kInfoField_MarkerType);
        if (type.empty()) {
            type = Field(info, XMPTemporalMetadataInfo::kInfoField_ReportedTrackType);
        }
        const std::string name = Field(info, XMPTemporalMetadataInfo::kInfoField_Name);
        const std::string track = Field(info, XMPTemporalMetadataInfo::kInfoField_ReportedTrackName);
        const std::string instance = Field(info, XMPTemporalMetadataInfo::kInfoField_ReportedContainingInstanceID);
        const std::string mapping = Field(info, XMPTemporalMetadataInfo::kInfoField_ReportedPartMapping);
        report.table.AddRow({SecondsCell(info.GetReportedClippedStartTime()),
                             SecondsCell(info.GetReportedClippedDuration()), FormName(info.GetInfoForm()), type, name,
                             track, instance, mapping});
        list.push_back({{"form", FormName(info.GetInfoForm())},
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
    command->add_option("--start", options->start, "Start of the range (a time as `time` reads it; default 0)");
    command->add_option("--duration", options->duration, "Length of the range (default: to the end)");
    command->add_option("--mask", options->mask,
                        "What to collect, hexadecimal: 01 base document, 02 ingredients, 04 own markers, "
                        "08 ingredients' markers, 10 ignore masking, 20 reversed from end, 40 no repeats "
                        "(default 0F)");
    command->add_option("--max-records", options->maxRecords,
                        "Fail a document that would collect more records than this (default " +
                            std::to_string(kDefaultMaxRecords) + ")");
    return {command, [options] {
                const Range range = ParseRange(*options);
                return ReportOnFiles(options->files, "collect",
                                     [&](const std::string& file) { return ReportCollection(file, range); });
            }};
}

}  // namespace keltemporalxmp::tool
