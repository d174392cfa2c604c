#pragma once
// One exporter and one importer per format, and what several of them share.

#include <string>
#include <string_view>
#include <vector>

#include <keltemporalxmp/exchange.hpp>

namespace keltemporalxmp::exchange {

using Markers = std::vector<ExchangeMarker>;

std::string ExportYouTube(const Markers& markers, const ExportOptions& options);
Markers ImportYouTube(std::string_view text, const ImportOptions& options);
std::string ExportFFMetadata(const Markers& markers, const ExportOptions& options);
Markers ImportFFMetadata(std::string_view text, const ImportOptions& options);
// webvtt and srt.
std::string ExportSubtitles(const Markers& markers, Format format, const ExportOptions& options);
Markers ImportSubtitles(std::string_view text, Format format, const ImportOptions& options);
std::string ExportEdl(const Markers& markers, const ExportOptions& options);
Markers ImportEdl(std::string_view text, const ImportOptions& options);
// csv and tsv.
std::string ExportTable(const Markers& markers, Format format, const ExportOptions& options);
Markers ImportTable(std::string_view text, Format format, const ImportOptions& options);
std::string ExportAudacity(const Markers& markers, const ExportOptions& options);
Markers ImportAudacity(std::string_view text, const ImportOptions& options);
std::string ExportOtio(const Markers& markers, const ExportOptions& options);
Markers ImportOtio(std::string_view text, const ImportOptions& options);
std::string ExportJson(const Markers& markers, const ExportOptions& options);
Markers ImportJson(std::string_view text, const ImportOptions& options);

// The rate frame-based exports count in.
Rate ExportRate(const Markers& markers, const ExportOptions& options);
// The rate timecode and frames are read at.
Rate ImportRate(const ImportOptions& options);
// The type of markers read from a format without types.
std::string ImportType(Format format, const ImportOptions& options);

// The indexes of the markers in start order (ties in list order), for the
// formats that lay markers out on a timeline from zero: a marker with no
// start, a start before zero or a negative duration is an ExportError.
std::vector<std::size_t> TimelineOrder(const Markers& markers, Format format);

// The end of a marker with a duration; else of one frame at `rate`.
std::int64_t EndOrOneFrame(const ExchangeMarker& marker, Rate rate, Format format, std::size_t index);
bool HasDuration(const ExchangeMarker& marker);

}  // namespace keltemporalxmp::exchange
