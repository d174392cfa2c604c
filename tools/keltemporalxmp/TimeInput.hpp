#pragma once
// Times as a user types them: XMP notation ("90f25", "1001f30000s1001",
// "maximum"), seconds ("3.6s", "3.6"), SMPTE timecode ("00:00:03:15", drop
// frame "00:01:00;02"), or a bare count: frames at the given rate, else ticks.

#include <cstdint>
#include <optional>
#include <string_view>

#include "TimeDisplay.hpp"

namespace keltemporalxmp::tool {

struct UserTime {
    std::int64_t ticks = 0;
    std::optional<FrameRate> rate;  // the rate the text counts in, else the given one
};

// `rate` is the rate of bare counts and timecode. Throws InputError for text
// in none of the notations, and for timecode without a rate.
UserTime ParseUserTime(std::string_view text, std::optional<FrameRate> rate);

// Rounded to the nearest tick; InputError when the count would not fit.
std::int64_t TicksOfSeconds(double seconds);

}  // namespace keltemporalxmp::tool
