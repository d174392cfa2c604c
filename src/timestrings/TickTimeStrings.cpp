// XMPDocOpsTemporal's conversions between ticks and external time strings.

#include <keltemporalxmp/docops.hpp>

#include <kelmediatypes/TickTime.hpp>

#include "timestrings/Arguments.hpp"
#include "timestrings/TimeText.hpp"

namespace keltemporalxmp {

using timestrings::Reduction;

double XMPDocOpsTemporal::ConvertTicksToSeconds(std::int64_t ticks) {
    return static_cast<double>(ticks) / static_cast<double>(kelmediatypes::TickTime::kTicksPerSecond);
}

std::int64_t XMPDocOpsTemporal::ConvertExternalTimeStringToTicks(const char* timeString,
                                                                 std::int64_t* frameRateNumerator,
                                                                 std::int64_t* frameRateDenominator,
                                                                 std::int64_t ticksPerSecond) {
    constexpr const char* operation = "ConvertExternalTimeStringToTicks";
    return timestrings::ReadTimeText(TextOrEmpty(timeString),
                                     &Required(frameRateNumerator, operation, "frame-rate numerator"),
                                     &Required(frameRateDenominator, operation, "frame-rate denominator"),
                                     ticksPerSecond, Reduction::kAnyNumeratorButOne);
}

std::int64_t XMPDocOpsTemporal::ConvertExternalTimeStringToTicks(const char* timeString,
                                                                 std::int64_t frameRateNumerator,
                                                                 std::int64_t frameRateDenominator,
                                                                 std::int64_t ticksPerSecond) {
    return timestrings::ReadTimeText(TextOrEmpty(timeString), &frameRateNumerator, &frameRateDenominator,
                                     ticksPerSecond, Reduction::kNumeratorsAboveOne);
}

void XMPDocOpsTemporal::ConvertTicksToExternalTimeString(std::string* timeString, std::int64_t ticks,
                                                         std::int64_t frameRateNumerator,
                                                         std::int64_t frameRateDenominator, std::int64_t ticksPerSecond,
                                                         bool appendFrameRate) {
    std::string& output = Required(timeString, "ConvertTicksToExternalTimeString", "output string");
    char text[timestrings::kMaxTimeTextLength];
    char* end = timestrings::WriteTimeText(text, ticks, frameRateNumerator, frameRateDenominator, ticksPerSecond,
                                           appendFrameRate);
    output.assign(text, end);
}

}  // namespace keltemporalxmp
