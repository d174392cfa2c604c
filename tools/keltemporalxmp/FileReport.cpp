#include "FileReport.hpp"

#include "Documents.hpp"
#include "Options.hpp"

namespace keltemporalxmp::tool {

void AddFileOptions(CLI::App& command, FileOptions& options) {
    AddFileArguments(command, options.files);
    AddFormatOptions(command, options.format);
}

int ReportOnFiles(const FileOptions& options, const std::string& command,
                  const std::function<FileReport(const std::string& file)>& report) {
    Report output(options.format, command, true);
    const int status = ForEachFile(options.files, [&](const std::string& file) {
        FileReport fileReport = report(file);
        output.Add(file, fileReport.table, std::move(fileReport.result));
    });
    output.Finish();
    return status;
}

std::unique_ptr<XMPDocOpsTemporal> OpenTemporalDocument(SXMPMeta& meta) {
    auto document = std::make_unique<XMPDocOpsTemporal>();
    document->OpenXMP(&meta, "");
    return document;
}

std::optional<FrameRate> TrackRate(const XMPTrack& track) {
    const FrameRate rate{track.GetFrameRateNumerator(), track.GetFrameRateDenominator()};
    // Frames of a tick are ticks again: nothing to show.
    return IsUsableRate(rate) && rate != kTickRate ? std::optional(rate) : std::nullopt;
}

}  // namespace keltemporalxmp::tool
