#include "ExchangeFormats.hpp"

#include "Errors.hpp"

namespace keltemporalxmp::tool {

void AddExchangeFormatOption(CLI::App& command, std::optional<std::string>& format, const std::string& byDefault) {
    const CLI::Validator isFormat(
        [](std::string& text) -> std::string { return exchange::FormatFromName(text) ? "" : "not a format: " + text; },
        "FORMAT");
    command
        .add_option("--format", format,
                    "youtube, ffmetadata, webvtt, srt, edl, csv, tsv, audacity, otio or json; " + byDefault)
        ->check(isFormat);
}

exchange::Format ChooseFormat(const std::optional<std::string>& given, const std::string& path,
                              const std::string& pathOption) {
    if (given) {
        return *exchange::FormatFromName(*given);
    }
    if (const std::optional<exchange::Format> format = exchange::FormatFromPath(path)) {
        return *format;
    }
    throw UsageError("--format is required when " + pathOption + " has no extension that names one (" +
                     ".vtt .srt .edl .csv .tsv .otio .json)");
}

std::string ExportWithOptions(const std::vector<exchange::ExchangeMarker>& markers, exchange::Format format,
                              const exchange::ExportOptions& options) {
    try {
        return exchange::ExportMarkers(markers, format, options);
    } catch (const exchange::ExportError&) {
        throw;
    } catch (const XMP_Error& error) {
        if (error.GetID() == kXMPErr_BadParam) {
            throw UsageError(error.GetErrMsg());
        }
        throw;
    }
}

}  // namespace keltemporalxmp::tool
