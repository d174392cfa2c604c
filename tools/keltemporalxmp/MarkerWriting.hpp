#pragma once
// The one road markers take into a file's tracks, for every command that
// writes them: the rate the tracks are written at, the write itself and the
// line that reports it.

#include <optional>
#include <string>

#include <keltemporalxmp/markers.hpp>

#include "TimeDisplay.hpp"

namespace keltemporalxmp::tool {

struct MarkersToWrite {
    MarkerList markers;
    std::optional<FrameRate> givenRate;  // --frame-rate
    std::optional<FrameRate> shownRate;  // the rate the source counts in, if it says
};

// The text of a regular file, or of standard input for "-", at most
// kMaxJsonBytes; InputError when it cannot be read or is larger.
std::string ReadSourceText(const std::string& path);

// InputError naming the first marker whose time is not a whole frame at the
// given rate, so the caller can blame the source before any file is touched.
void CheckGivenRate(const MarkersToWrite& markers);

// Replaces the tracks of `file` (or, with `merge`, adds to the markers
// already there) by one track per marker type, at the given rate, else the
// shown rate when it holds every time, else ticks; into `output` when given.
// Prints what was written. Returns the exit status.
int WriteMarkersToFile(const std::string& file, const MarkersToWrite& markers, const std::string& output, bool merge);

}  // namespace keltemporalxmp::tool
