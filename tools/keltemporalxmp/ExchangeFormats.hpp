#pragma once
// The exchange format a command reads or writes: --format, or the extension
// of the file it names.

#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <keltemporalxmp/exchange.hpp>

namespace keltemporalxmp::tool {

void AddExchangeFormatOption(CLI::App& command, std::optional<std::string>& format, const std::string& byDefault);

// The given format, else the one `path`'s extension names; UsageError when neither says.
exchange::Format ChooseFormat(const std::optional<std::string>& given, const std::string& path,
                              const std::string& pathOption);

// An option the library refuses (a timecode start that is no timecode) is a usage error.
std::string ExportWithOptions(const std::vector<exchange::ExchangeMarker>& markers, exchange::Format format,
                              const exchange::ExportOptions& options);

}  // namespace keltemporalxmp::tool
