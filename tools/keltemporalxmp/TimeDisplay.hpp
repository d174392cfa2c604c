#pragma once
// How the tool shows a tick time: seconds, a frame count at a rate, SMPTE
// timecode at that rate (drop-frame at 29.97 and 59.94), and the XMP notation.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <kelcore/JSON.hpp>
#include <kelmediatypes/TickTime.hpp>

namespace keltemporalxmp::tool {

inline constexpr std::int64_t kTicksPerSecond = kelmediatypes::TickTime::kTicksPerSecond;
inline constexpr std::int64_t kTimeUnspecified = INT64_MAX;

struct FrameRate {
    std::int64_t numerator = 1;
    std::int64_t denominator = 1;
    friend bool operator==(const FrameRate&, const FrameRate&) = default;
};

// Products of a tick count and rate members (each below 2^63) are exact in 128 bits.
__extension__ typedef unsigned __int128 WideUnsigned;

// One frame per tick: holds every tick count exactly.
inline constexpr FrameRate kTickRate{kTicksPerSecond, 1};

// "f25", "25", "f30000s1001" or "30000/1001"; nothing for any other text or a
// member that is not positive.
std::optional<FrameRate> ParseFrameRate(std::string_view text);
// The XMP notation: "f25", "f30000s1001".
std::string FrameRateText(FrameRate rate);
// A rate that can be divided by; the library's own defaults (0 or 1/1 for
// "the track's rate") are not one.
bool IsUsableRate(FrameRate rate);
// 29.97 and 59.94, whose timecode drops labels.
bool IsDropFrameRate(FrameRate rate);
// Timecode labels count frames at the whole number of frames per second
// nearest to the rate, at least 1.
std::int64_t NominalFramesPerSecond(FrameRate rate);

double Seconds(std::int64_t ticks);
// Whole frames at the rate, rounded to the nearest; InputError when the count
// does not fit 64 bits.
std::int64_t FrameCount(std::int64_t ticks, FrameRate rate);
// HH:MM:SS:FF; at 30000/1001 and 60000/1001 drop-frame, written HH:MM:SS;FF.
std::string Timecode(std::int64_t ticks, FrameRate rate);
// The frame count with its rate, as XMP stores times: "90f25"; InputError as
// for FrameCount.
std::string XmpTimeText(std::int64_t ticks, FrameRate rate);

// Table cells; "-" where there is nothing to show (no rate, or an unspecified time).
std::string SecondsCell(std::int64_t ticks);
std::string FramesCell(std::int64_t ticks, std::optional<FrameRate> rate);
std::string TimecodeCell(std::int64_t ticks, std::optional<FrameRate> rate);

// {"ticks", "seconds", "frames", "timecode"}: frames and timecode only with a
// rate; an unspecified time is {"ticks", "unspecified": true}.
kelcore::JSONValue TimeJson(std::int64_t ticks, std::optional<FrameRate> rate);
kelcore::JSONValue FrameRateJson(FrameRate rate);

}  // namespace keltemporalxmp::tool
