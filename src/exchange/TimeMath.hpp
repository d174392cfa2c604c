#pragma once
// Exact conversions between ticks and the units the formats count in: frames
// at a rate, milliseconds, microseconds, seconds. Products of two 64-bit
// values are taken in 128 bits so nothing wraps.

#include <cstdint>
#include <optional>
#include <string>

#include <keltemporalxmp/exchange.hpp>

namespace keltemporalxmp::exchange {

__extension__ typedef __int128 Wide;

inline constexpr Rate kFallbackRate{25, 1};

// Nearest, halves away from zero; `divisor` is positive.
Wide DivideNearest(Wide value, Wide divisor);
// Nothing when the value does not fit a time (the unspecified value is no time either).
std::optional<std::int64_t> AsTicks(Wide value);

bool IsDropFrame(Rate rate);
// The whole frames per second timecode labels count at.
std::int64_t NominalFramesPerSecond(Rate rate);

// Nearest frame; every tick count has one at a usable rate.
std::int64_t FramesOfTicks(std::int64_t ticks, Rate rate);
bool IsOnFrame(std::int64_t ticks, Rate rate);
// Nearest tick; nothing when it does not fit.
std::optional<std::int64_t> TicksOfFrames(Wide frames, Rate rate);
// The ticks of `units` counted at `perSecond` units a second (1000 for
// milliseconds), nearest, and back.
std::optional<std::int64_t> TicksOfUnits(Wide units, std::int64_t perSecond);
std::int64_t UnitsOfTicks(std::int64_t ticks, std::int64_t perSecond);

// HH:MM:SS followed by `separator` and the milliseconds; not negative.
std::string ClockWithMilliseconds(std::int64_t ticks, char separator);

}  // namespace keltemporalxmp::exchange
