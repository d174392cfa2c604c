#pragma once
// What the commands that collect share: --start, --duration and --mask (the
// part of a composition's timeline a collection covers and what it gathers),
// --max-records (how many records a document may give), and how a collected
// marker's type is found.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>
#include <keltemporalxmp/records.hpp>

namespace keltemporalxmp::tool {

struct CollectRangeOptions {
    std::string start = "0";
    std::optional<std::string> duration;
    std::string mask = "0F";
    std::string maxRecords;
};

struct CollectRange {
    std::int64_t start;
    std::int64_t duration;
    unsigned char mask;
    std::size_t maxRecords;
};

void AddCollectRangeOptions(CLI::App& command, CollectRangeOptions& options);

// UsageError naming the option that is not a time, a hexadecimal byte or a
// positive count.
CollectRange ParseCollectRange(const CollectRangeOptions& options);

// Markers written by track keep their type in the track's.
std::string CollectedMarkerType(const XMPTemporalMetadataInfo& info);

}  // namespace keltemporalxmp::tool
