#pragma once
// Times as a user types them: XMP notation ("90f25", "1001f30000s1001",
// "maximum"), seconds ("3.6s", "3.6"), SMPTE timecode ("00:00:03:15", drop
// frame "00:01:00;02"), or a bare count: frames at the given rate, else ticks.
// Text is read in one pass; a number or a tick count beyond 64 bits is
// refused, never wrapped.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "TimeDisplay.hpp"

namespace keltemporalxmp::tool {

// Longer than any time in these notations needs (a 64-bit count with a rate is 60).
inline constexpr std::size_t kMaxTimeTextLength = 64;
// A part string: its path, then two times.
inline constexpr std::size_t kMaxPartTextLength = 4096;

struct UserTime {
    std::int64_t ticks = 0;
    std::optional<FrameRate> rate;  // the rate the text counts in, else the given one
};

// `rate` is the rate of bare counts and timecode. Throws InputError naming
// the text for text in none of the notations, timecode without a rate, a rate
// that is not positive, and a value that does not fit 64 bits.
UserTime ParseUserTime(std::string_view text, std::optional<FrameRate> rate);

// A part string ("metadata/time:0d25f25", "time:10r35"): the path, and, when
// it has a time component, the start and the duration (the end minus the
// start for "r"). Its times are in the XMP notation, counts at `rate` or else
// whole seconds. Throws InputError as ParseUserTime does, and for a malformed
// time component.
struct UserPart {
    std::string path;
    bool hasTime = false;
    UserTime start;
    UserTime duration;
};
UserPart ParseUserPart(std::string_view text, std::optional<FrameRate> rate);

// Rounded to the nearest tick; InputError when the count would not fit.
std::int64_t TicksOfSeconds(double seconds);

}  // namespace keltemporalxmp::tool
