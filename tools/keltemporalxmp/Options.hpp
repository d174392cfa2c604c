#pragma once
// Options several commands share.

#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <kelcore/RefCounted.hpp>
#include <keltemporalxmp/markers.hpp>

#include "Output.hpp"
#include "TimeDisplay.hpp"

namespace keltemporalxmp::tool {

// --json and --csv, exclusive; the aligned table when neither is given.
void AddFormatOptions(CLI::App& command, OutputFormat& format);

// A frame-rate option ("f25", "25", "f30000s1001", "30000/1001").
CLI::Option* AddRateOption(CLI::App& command, const std::string& name, std::optional<FrameRate>& rate,
                           const std::string& description);

struct TypeOptions {
    std::vector<std::string> only;
    std::vector<std::string> exclude;
};

// --only TYPE... and --exclude TYPE..., exclusive.
void AddTypeOptions(CLI::App& command, TypeOptions& options);
// Passes every type when neither is given.
kelcore::RefPtr<MarkerTypeFilter> TypeFilter(const TypeOptions& options);

// --output OUT of a command that writes: not empty (an unset shell variable
// must not turn into writing FILE in place).
void AddOutputOption(CLI::App& command, std::string& output, const std::string& description);

// FILE..., at least one.
void AddFileArguments(CLI::App& command, std::vector<std::string>& files);

}  // namespace keltemporalxmp::tool
