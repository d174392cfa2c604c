// SMPTE timecode labels of frame counts, drop-frame at 29.97 and 59.94.

#include <cstdio>

#include "TextScan.hpp"
#include "TimeMath.hpp"

namespace keltemporalxmp::exchange {
namespace {

// Drop-frame timecode skips the first labels of every minute except each
// tenth (two at 29.97, four at 59.94).
std::int64_t DroppedPerMinute(std::int64_t nominal) {
    return nominal / 15;
}

std::int64_t DropFrameLabel(std::int64_t frame, std::int64_t nominal) {
    const std::int64_t dropped = DroppedPerMinute(nominal);
    const std::int64_t framesPerMinute = nominal * 60 - dropped;
    const std::int64_t framesPerTenMinutes = framesPerMinute * 10 + dropped;
    const std::int64_t tens = frame / framesPerTenMinutes;
    const std::int64_t rest = frame % framesPerTenMinutes;
    std::int64_t label = frame + dropped * 9 * tens;
    if (rest > dropped) {
        label += dropped * ((rest - dropped) / framesPerMinute);
    }
    return label;
}

}  // namespace

std::string FramesToTimecode(std::int64_t frames, Rate rate) {
    const std::int64_t nominal = NominalFramesPerSecond(rate);
    const bool dropFrame = IsDropFrame(rate);
    // The most negative count has no magnitude; the largest is as good a label.
    const std::int64_t magnitude = frames >= 0 ? frames : frames == INT64_MIN ? INT64_MAX : -frames;
    const std::int64_t label = dropFrame ? DropFrameLabel(magnitude, nominal) : magnitude;
    const std::int64_t seconds = label / nominal;
    char text[96];
    std::snprintf(text, sizeof text, "%s%02lld:%02lld:%02lld%c%02lld", frames < 0 ? "-" : "",
                  static_cast<long long>(seconds / 3600), static_cast<long long>(seconds / 60 % 60),
                  static_cast<long long>(seconds % 60), dropFrame ? ';' : ':', static_cast<long long>(label % nominal));
    return text;
}

std::optional<std::int64_t> TimecodeToFrames(std::string_view timecode, Rate rate) {
    if (!rate.IsKnown()) {
        return std::nullopt;
    }
    TextScan scan(timecode);
    const std::optional<std::int64_t> hours = scan.Number(1, 6);
    const bool colon1 = scan.Take(':');
    const std::optional<std::int64_t> minutes = scan.Number(2, 2);
    const bool colon2 = scan.Take(':');
    const std::optional<std::int64_t> seconds = scan.Number(2, 2);
    const bool separator = scan.Take(':') || scan.Take(';') || scan.Take('.') || scan.Take(',');
    const std::optional<std::int64_t> frames = scan.Number(1, 3);
    const std::int64_t nominal = NominalFramesPerSecond(rate);
    if (!hours || !colon1 || !minutes || !colon2 || !seconds || !separator || !frames || !scan.AtEnd() ||
        *minutes > 59 || *seconds > 59 || *frames >= nominal) {
        return std::nullopt;
    }
    const std::int64_t totalMinutes = *hours * 60 + *minutes;
    const Wide wideLabel = (Wide{totalMinutes} * 60 + *seconds) * nominal + *frames;
    if (wideLabel >= INT64_MAX) {
        return std::nullopt;
    }
    const auto label = static_cast<std::int64_t>(wideLabel);
    if (!IsDropFrame(rate)) {
        return label;
    }
    const std::int64_t dropped = DroppedPerMinute(nominal);
    if (*seconds == 0 && *minutes % 10 != 0 && *frames < dropped) {
        return std::nullopt;
    }
    return label - dropped * (totalMinutes - totalMinutes / 10);
}

}  // namespace keltemporalxmp::exchange
