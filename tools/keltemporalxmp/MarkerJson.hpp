#pragma once
// Markers in the tool's JSON schema, both ways, and as table rows: what
// `markers` prints is what `write-markers --from` reads back.

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <kelcore/JSON.hpp>
#include <keltemporalxmp/markers.hpp>

#include "Output.hpp"
#include "TimeDisplay.hpp"

namespace keltemporalxmp::tool {

// Times at `rate` (the rate of the marker's track) when it is known.
kelcore::JSONValue MarkerJson(const Marker& marker, std::optional<FrameRate> rate);

Table MarkerTable();
void AddMarkerRow(Table& table, const Marker& marker, std::optional<FrameRate> rate);

struct MarkersFromJson {
    MarkerList markers;
    // The rate the markers were shown at, if they say; else the first rate a
    // time text counts in.
    std::optional<FrameRate> rate;
};

// Far deeper than the schema nests (6 levels), and a bound on the work of
// reading: nothing recursive sees more levels than this.
inline constexpr std::size_t kMaxJsonDepth = 64;
// 10,000 markers as `markers --json` prints them take about 6 MB.
inline constexpr std::size_t kMaxJsonBytes = std::size_t{64} << 20;

// The markers of a document printed by `markers --json` (of exactly one file),
// of {"markers": [...]}, or of a bare array. A time is a time object (its
// "ticks", else its "seconds"), a number of ticks, or text as `time` reads it,
// counted at `rate`. Throws InputError naming the marker and the member, or
// the line and column of a syntax error; deeper or longer text is refused
// before it is built.
MarkersFromJson ReadMarkersJson(std::string_view text, std::optional<FrameRate> rate);
// The same from a regular file.
MarkersFromJson ReadMarkersJsonFile(const std::string& path, std::optional<FrameRate> rate);

}  // namespace keltemporalxmp::tool
