// import FILE --from INPUT [--format F] [--frame-rate RATE] [--type TYPE]
// [--merge] [--output OUT]: markers from another tool's format into FILE's
// tracks, written as write-markers writes them.

#include <memory>
#include <optional>
#include <string>

#include <keltemporalxmp/exchange.hpp>

#include "CommandList.hpp"
#include "Documents.hpp"
#include "Errors.hpp"
#include "ExchangeFormats.hpp"
#include "MarkerWriting.hpp"
#include "Options.hpp"

namespace keltemporalxmp::tool {
namespace {

struct ImportCommandOptions {
    std::string file;
    std::string from;
    std::optional<std::string> format;
    std::optional<FrameRate> rate;
    std::string type;
    bool merge = false;
    std::string output;
};

MarkersToWrite ReadMarkers(const ImportCommandOptions& options, exchange::Format format) {
    exchange::ImportOptions importOptions;
    if (options.rate) {
        importOptions.rate = {options.rate->numerator, options.rate->denominator};
    }
    importOptions.type = options.type;
    const std::vector<exchange::ExchangeMarker> records =
        exchange::ImportMarkers(ReadSourceText(options.from), format, importOptions);
    // Writing nothing would remove every marker the file has.
    if (records.empty()) {
        throw InputError(std::string("no ") + exchange::FormatName(format) + " markers in it");
    }
    MarkersToWrite markers{{}, options.rate, std::nullopt};
    for (const exchange::ExchangeMarker& record : records) {
        markers.markers.push_back(exchange::ToMarker(record));
        if (!markers.shownRate && record.rate.IsKnown()) {
            markers.shownRate = FrameRate{record.rate.numerator, record.rate.denominator};
        }
    }
    CheckGivenRate(markers);
    return markers;
}

int RunImport(const ImportCommandOptions& options) {
    const exchange::Format format = ChooseFormat(options.format, options.from, "--from INPUT");
    MarkersToWrite markers;
    try {
        markers = ReadMarkers(options, format);
    } catch (...) {
        ReportError(options.from, DescribeError(std::current_exception()));
        return kExitBadInput;
    }
    return WriteMarkersToFile(options.file, markers, options.output, options.merge);
}

}  // namespace

CommandEntry AddImportCommand(CLI::App& app) {
    auto options = std::make_shared<ImportCommandOptions>();
    CLI::App* command =
        app.add_subcommand("import", "Write markers from another tool's format into FILE's tracks (as write-markers)");
    command->add_option("FILE", options->file, "XMP sidecar (.xmp) or media file")->required();
    command->add_option("--from", options->from, "The markers (- for standard input)")->required();
    AddExchangeFormatOption(*command, options->format, "by default from the extension of --from");
    AddRateOption(*command, "--frame-rate", options->rate,
                  "Rate of timecode in the input and of the tracks written; by default the input's own rate "
                  "when every time is a whole frame there, else ticks");
    command->add_option("--type", options->type,
                        "Type of markers from a format without types (default: Chapter for youtube and ffmetadata, "
                        "else Comment)");
    command->add_flag("--merge", options->merge, "Keep the markers already in FILE");
    AddOutputOption(*command, options->output,
                    "Write here (a sidecar, or a copy of a media file) and leave FILE as it is");
    return {command, [options] { return RunImport(*options); }};
}

}  // namespace keltemporalxmp::tool
