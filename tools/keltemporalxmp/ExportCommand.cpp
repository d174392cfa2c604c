// export FILE [--format F] [--collect [--start T] [--duration T] [--mask HEX] [--max-records N]]
// [--only TYPE]... [--exclude TYPE]... [--rate RATE] [--timecode-start TC]
// [--force] [--reader R] [--output OUT]: FILE's markers, or with --collect its
// composition's, in a format other tools read.

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>

#include <kelcore/UTF.hpp>
#include <keltemporalxmp/collector.hpp>
#include <keltemporalxmp/exchange.hpp>

#include "CollectRange.hpp"
#include "CommandList.hpp"
#include "Documents.hpp"
#include "ExchangeFormats.hpp"
#include "Options.hpp"
#include "PacketReading.hpp"

namespace keltemporalxmp::tool {
namespace {

namespace fs = std::filesystem;
using exchange::ExchangeMarker;

struct ExportCommandOptions {
    std::string file;
    std::optional<std::string> format;
    bool collect = false;
    CollectRangeOptions range;
    TypeOptions types;
    std::optional<FrameRate> rate;
    std::string timecodeStart = "00:00:00:00";
    bool force = false;
    std::string output;
    ReaderChoice reader = ReaderChoice::kFast;
};

exchange::Rate ExchangeRate(FrameRate rate) {
    return {rate.numerator, rate.denominator};
}

bool Passes(const MarkerTypeFilter& filter, const std::string& type) {
    return filter.Validate(kelcore::UTF8to16(type));
}

// Report-back markers at their clipped times; a reversed span runs forwards
// from its earlier end.
std::vector<ExchangeMarker> CollectedMarkers(const XMPTemporalMetadataCollector::Collection& collection,
                                             const MarkerTypeFilter& filter) {
    std::vector<ExchangeMarker> markers;
    for (const auto& [key, info] : collection) {
        if (info.GetInfoForm() == XMPTemporalMetadataInfo::kInfoForm_ComponentMetadataReportback ||
            !Passes(filter, CollectedMarkerType(info))) {
            continue;
        }
        ExchangeMarker marker;
        marker.type = CollectedMarkerType(info);
        info.GetMarkerField(&marker.name, XMPTemporalMetadataInfo::kInfoField_Name);
        info.GetMarkerField(&marker.comment, XMPTemporalMetadataInfo::kInfoField_Comment);
        info.GetMarkerField(&marker.id, XMPTemporalMetadataInfo::kInfoField_MarkerID);
        marker.start = info.GetReportedClippedStartTime();
        marker.duration = info.GetReportedClippedDuration();
        if (marker.duration < 0) {
            marker.start += marker.duration;
            marker.duration = -marker.duration;
        }
        for (const XMPCuePointParam& cuePoint : info.GetCuePointParamList()) {
            marker.cuePoints.push_back({*cuePoint.GetKeyPtr(), *cuePoint.GetValuePtr()});
        }
        markers.push_back(std::move(marker));
    }
    return markers;
}

// The top document's first track rate, else the usual fallback.
exchange::Rate CompositionRate(const std::vector<ExchangeMarker>& topMarkers) {
    for (const ExchangeMarker& marker : topMarkers) {
        if (marker.rate.IsKnown()) {
            return marker.rate;
        }
    }
    return {25, 1};
}

// The composition's markers and its rate, collected first (its failure is
// the one to report) and read from the same file.
std::vector<ExchangeMarker> CollectedMarkersAndRate(const std::string& file, const CollectRange& range,
                                                    const MarkerTypeFilter& filter, ReaderChoice reader,
                                                    exchange::Rate& rate) {
    if (reader == ReaderChoice::kFast) {
        if (const auto collection = StreamCollection(file, range)) {
            std::vector<ExchangeMarker> markers = CollectedMarkers(*collection, filter);
            rate = CompositionRate(exchange::ExchangeMarkersOfTracks(ReadTracks(file, reader)));
            return markers;
        }
    }
    SXMPMeta meta = ReadDocument(file);
    const XMPTemporalMetadataCollector collector(range.mask, meta, range.start, range.duration, range.maxRecords);
    std::vector<ExchangeMarker> markers = CollectedMarkers(collector.GetXMPTemporalMetadataInfoCollection(), filter);
    rate = CompositionRate(exchange::ReadExchangeMarkers(meta));
    return markers;
}

// A complete file or none: the text goes to a hidden file beside OUT (beside
// the file a link points to) first. A pipe or a device is written directly.
void WriteOutput(const std::string& output, const std::string& text) {
    std::error_code error;
    const fs::file_status status = fs::status(output, error);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        std::ofstream out(output, std::ios::binary);
        out << text;
        if (!out.flush()) {
            throw InputError("cannot write " + output);
        }
        return;
    }
    const fs::path target = fs::weakly_canonical(output);
    const fs::path temporary =
        target.parent_path() / ("." + target.filename().string() + ".keltemporalxmp-" + std::to_string(::getpid()));
    try {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        out << text;
        out.close();
        if (!out) {
            throw InputError("cannot write " + temporary.string());
        }
        fs::rename(temporary, target);
    } catch (...) {
        std::error_code ignored;
        fs::remove(temporary, ignored);
        throw;
    }
}

int RunExport(const ExportCommandOptions& options) {
    const exchange::Format format = ChooseFormat(options.format, options.output, "--output OUT");
    std::error_code error;
    if (!options.output.empty() && fs::equivalent(options.file, options.output, error)) {
        throw UsageError("--output would replace FILE itself");
    }
    const std::optional<CollectRange> range =
        options.collect ? std::optional(ParseCollectRange(options.range)) : std::nullopt;
    const kelcore::RefPtr<MarkerTypeFilter> filter = TypeFilter(options.types);
    return ForEachFile({options.file}, [&](const std::string& file) {
        exchange::ExportOptions exportOptions;
        exportOptions.timecodeStart = options.timecodeStart;
        exportOptions.force = options.force;
        exportOptions.title = fs::path(file).stem().string();
        std::vector<ExchangeMarker> markers;
        if (range) {
            exchange::Rate rate;
            markers = CollectedMarkersAndRate(file, *range, *filter, options.reader, rate);
            exportOptions.rate = rate;
        } else {
            for (ExchangeMarker& marker : exchange::ExchangeMarkersOfTracks(ReadTracks(file, options.reader))) {
                if (Passes(*filter, marker.type)) {
                    markers.push_back(std::move(marker));
                }
            }
        }
        if (options.rate) {
            exportOptions.rate = ExchangeRate(*options.rate);
        }
        const std::string text = ExportWithOptions(markers, format, exportOptions);
        if (options.output.empty()) {
            std::fwrite(text.data(), 1, text.size(), stdout);
        } else {
            WriteOutput(options.output, text);
        }
    });
}

}  // namespace

CommandEntry AddExportCommand(CLI::App& app) {
    auto options = std::make_shared<ExportCommandOptions>();
    CLI::App* command = app.add_subcommand(
        "export", "Write FILE's markers in a format other tools read (chapters, subtitles, EDL, ...)");
    command->add_option("FILE", options->file, "XMP sidecar (.xmp) or media file")->required();
    AddExchangeFormatOption(*command, options->format, "by default from the extension of --output");
    CLI::Option* collect =
        command->add_flag("--collect", options->collect,
                          "The composition's markers, its ingredients' at any depth included, on its timeline");
    AddCollectRangeOptions(*command, options->range);
    for (const char* name : {"--start", "--duration", "--mask", "--max-records"}) {
        command->get_option(name)->needs(collect);
    }
    AddTypeOptions(*command, options->types);
    AddReaderOption(*command, options->reader);
    AddRateOption(*command, "--rate", options->rate,
                  "Frame rate of frame-based formats (default: the markers' track rate; with --collect the "
                  "document's first track rate, else 25)");
    command->add_option("--timecode-start", options->timecodeStart, "Record timecode of time zero in an edl");
    command->add_flag("--force", options->force, "Write youtube chapters even when they break the platform's rules");
    AddOutputOption(*command, options->output, "Write here instead of to standard output");
    return {command, [options] { return RunExport(*options); }};
}

}  // namespace keltemporalxmp::tool
