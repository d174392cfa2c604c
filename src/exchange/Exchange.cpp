// The entry points: format names, the choice of exporter and importer, and
// the checks every timeline format shares.

#include <algorithm>
#include <cctype>
#include <numeric>

#include "Formats.hpp"
#include "TimeMath.hpp"

namespace keltemporalxmp::exchange {
namespace {

struct FormatEntry {
    Format format;
    const char* name;
    const char* extension;  // empty: chosen only by name
};

const FormatEntry kFormats[] = {
    {Format::kYouTube, "youtube", ""}, {Format::kFFMetadata, "ffmetadata", ""}, {Format::kWebVTT, "webvtt", ".vtt"},
    {Format::kSRT, "srt", ".srt"},     {Format::kEDL, "edl", ".edl"},           {Format::kCSV, "csv", ".csv"},
    {Format::kTSV, "tsv", ".tsv"},     {Format::kAudacity, "audacity", ""},     {Format::kOTIO, "otio", ".otio"},
    {Format::kJSON, "json", ".json"},
};

const FormatEntry& EntryOf(Format format) {
    return *std::find_if(std::begin(kFormats), std::end(kFormats),
                         [format](const FormatEntry& entry) { return entry.format == format; });
}

std::string Lower(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

std::string Describe(Format format, std::size_t marker, const std::string& name, const std::string& reason) {
    std::string message = std::string(FormatName(format)) + ": ";
    if (marker > 0) {
        message += "marker " + std::to_string(marker) + " \"" + name + "\": ";
    }
    return message + reason;
}

std::string Place(Format format, std::size_t line, std::size_t column, const std::string& expected) {
    std::string message = FormatName(format);
    if (line > 0) {
        message += " line " + std::to_string(line) + " column " + std::to_string(column);
    }
    return message + ": expected " + expected;
}

}  // namespace

ExportError::ExportError(Format format, std::size_t marker, const std::string& name, const std::string& reason)
    : XMP_Error(kXMPErr_BadValue, Describe(format, marker, name, reason).c_str()) {}

ImportError::ImportError(Format format, std::size_t line, std::size_t column, const std::string& expected)
    : XMP_Error(kXMPErr_BadValue, Place(format, line, column, expected).c_str()), m_line(line), m_column(column) {}

const char* FormatName(Format format) {
    return EntryOf(format).name;
}

std::optional<Format> FormatFromName(std::string_view name) {
    for (const FormatEntry& entry : kFormats) {
        if (name == entry.name) {
            return entry.format;
        }
    }
    return std::nullopt;
}

std::optional<Format> FormatFromPath(std::string_view path) {
    const std::string lower = Lower(path);
    for (const FormatEntry& entry : kFormats) {
        if (*entry.extension != '\0' && std::string_view(lower).ends_with(entry.extension)) {
            return entry.format;
        }
    }
    return std::nullopt;
}

const char* DefaultMarkerType(Format format) {
    return format == Format::kYouTube || format == Format::kFFMetadata ? "Chapter" : "Comment";
}

std::string ExportMarkers(const std::vector<ExchangeMarker>& markers, Format format, const ExportOptions& options) {
    switch (format) {
        case Format::kYouTube:
            return ExportYouTube(markers, options);
        case Format::kFFMetadata:
            return ExportFFMetadata(markers, options);
        case Format::kWebVTT:
        case Format::kSRT:
            return ExportSubtitles(markers, format, options);
        case Format::kEDL:
            return ExportEdl(markers, options);
        case Format::kCSV:
        case Format::kTSV:
            return ExportTable(markers, format, options);
        case Format::kAudacity:
            return ExportAudacity(markers, options);
        case Format::kOTIO:
            return ExportOtio(markers, options);
        case Format::kJSON:
            return ExportJson(markers, options);
    }
    throw XMP_Error(kXMPErr_BadParam, "unknown marker exchange format");
}

std::vector<ExchangeMarker> ImportMarkers(std::string_view text, Format format, const ImportOptions& options) {
    switch (format) {
        case Format::kYouTube:
            return ImportYouTube(text, options);
        case Format::kFFMetadata:
            return ImportFFMetadata(text, options);
        case Format::kWebVTT:
        case Format::kSRT:
            return ImportSubtitles(text, format, options);
        case Format::kEDL:
            return ImportEdl(text, options);
        case Format::kCSV:
        case Format::kTSV:
            return ImportTable(text, format, options);
        case Format::kAudacity:
            return ImportAudacity(text, options);
        case Format::kOTIO:
            return ImportOtio(text, options);
        case Format::kJSON:
            return ImportJson(text, options);
    }
    throw XMP_Error(kXMPErr_BadParam, "unknown marker exchange format");
}

Rate ExportRate(const Markers& markers, const ExportOptions& options) {
    if (options.rate.IsKnown()) {
        // Finer than a tick, frame counts could pass the largest integer.
        if (Wide{options.rate.numerator} > Wide{options.rate.denominator} * kTicksPerSecond) {
            throw XMP_Error(kXMPErr_BadParam, "export rate is finer than a tick");
        }
        return options.rate;
    }
    for (const ExchangeMarker& marker : markers) {
        if (marker.rate.IsKnown() && Wide{marker.rate.numerator} <= Wide{marker.rate.denominator} * kTicksPerSecond) {
            return marker.rate;
        }
    }
    return kFallbackRate;
}

Rate ImportRate(const ImportOptions& options) {
    return options.rate.IsKnown() ? options.rate : kFallbackRate;
}

std::string ImportType(Format format, const ImportOptions& options) {
    return options.type.empty() ? DefaultMarkerType(format) : options.type;
}

std::vector<std::size_t> TimelineOrder(const Markers& markers, Format format) {
    for (std::size_t i = 0; i < markers.size(); ++i) {
        const ExchangeMarker& marker = markers[i];
        if (marker.start == kTimeUnspecified) {
            throw ExportError(format, i + 1, marker.name, "it has no start time");
        }
        if (marker.start < 0) {
            throw ExportError(format, i + 1, marker.name, "its start is before zero");
        }
        if (marker.duration < 0) {
            throw ExportError(format, i + 1, marker.name, "its duration is negative");
        }
        if (marker.duration != kTimeUnspecified && !AsTicks(Wide{marker.start} + marker.duration)) {
            throw ExportError(format, i + 1, marker.name, "its end is past the largest time");
        }
    }
    std::vector<std::size_t> order(markers.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&markers](std::size_t a, std::size_t b) { return markers[a].start < markers[b].start; });
    return order;
}

bool HasDuration(const ExchangeMarker& marker) {
    return marker.duration != 0 && marker.duration != kTimeUnspecified;
}

std::int64_t EndOrOneFrame(const ExchangeMarker& marker, Rate rate, Format format, std::size_t index) {
    const std::optional<std::int64_t> end =
        HasDuration(marker) ? AsTicks(Wide{marker.start} + marker.duration)
                            : AsTicks(Wide{marker.start} + TicksOfFrames(1, rate).value_or(kTimeUnspecified));
    if (!end) {
        throw ExportError(format, index + 1, marker.name, "its end is past the largest time");
    }
    return *end;
}

}  // namespace keltemporalxmp::exchange
