#pragma once
// A command that reads FILE... and reports on each: the shared options, the
// run over the files, and the document views several commands need.

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <kelcore/JSON.hpp>
#include <keltemporalxmp/docops.hpp>

#include "Output.hpp"
#include "PacketReading.hpp"
#include "TimeDisplay.hpp"

namespace keltemporalxmp::tool {

struct FileOptions {
    std::vector<std::string> files;
    OutputFormat format = OutputFormat::kTable;
    ReaderChoice reader = ReaderChoice::kFast;  // for the commands that offer --reader
};

// FILE... and --json / --csv.
void AddFileOptions(CLI::App& command, FileOptions& options);

struct FileReport {
    Table table;
    kelcore::JSONValue result;  // this file's members of the JSON document
};

// Reports on each file in turn; a file that fails is named on standard error
// and left out. Returns the exit status.
int ReportOnFiles(const FileOptions& options, const std::string& command,
                  const std::function<FileReport(const std::string& file)>& report);

// The document operations opened on `meta` (they keep a handle on it).
std::unique_ptr<XMPDocOpsTemporal> OpenTemporalDocument(SXMPMeta& meta);

// The rate a track's times are shown at, when it has a usable one.
std::optional<FrameRate> TrackRate(const XMPTrack& track);

}  // namespace keltemporalxmp::tool
