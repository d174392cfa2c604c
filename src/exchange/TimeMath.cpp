#include "TimeMath.hpp"

#include <cstdio>
#include <limits>

namespace keltemporalxmp::exchange {

Wide DivideNearest(Wide value, Wide divisor) {
    Wide quotient = value / divisor;
    const Wide remainder = value % divisor;
    const Wide twice = remainder < 0 ? -2 * remainder : 2 * remainder;
    if (twice >= divisor) {
        quotient += value < 0 ? -1 : 1;
    }
    return quotient;
}

std::optional<std::int64_t> AsTicks(Wide value) {
    if (value >= kTimeUnspecified || value < std::numeric_limits<std::int64_t>::min()) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(value);
}

bool IsDropFrame(Rate rate) {
    return rate == Rate{30000, 1001} || rate == Rate{60000, 1001};
}

std::int64_t NominalFramesPerSecond(Rate rate) {
    // In integers: a double loses the rounding of rates near 2^63.
    const auto nominal = static_cast<std::int64_t>((Wide{rate.numerator} + rate.denominator / 2) / rate.denominator);
    return nominal < 1 ? 1 : nominal;
}

std::int64_t FramesOfTicks(std::int64_t ticks, Rate rate) {
    // A rate past a frame per tick could give more frames than int64 holds.
    const Wide frames = DivideNearest(Wide{ticks} * rate.numerator, Wide{rate.denominator} * kTicksPerSecond);
    if (frames > std::numeric_limits<std::int64_t>::max()) {
        return std::numeric_limits<std::int64_t>::max();
    }
    if (frames < std::numeric_limits<std::int64_t>::min()) {
        return std::numeric_limits<std::int64_t>::min();
    }
    return static_cast<std::int64_t>(frames);
}

bool IsOnFrame(std::int64_t ticks, Rate rate) {
    return (Wide{ticks} * rate.numerator) % (Wide{rate.denominator} * kTicksPerSecond) == 0;
}

std::optional<std::int64_t> TicksOfFrames(Wide frames, Rate rate) {
    constexpr Wide kLimit = Wide{1} << 88;
    const Wide scaled = frames * rate.denominator;
    if (frames > kLimit || frames < -kLimit || scaled > kLimit || scaled < -kLimit) {
        return std::nullopt;
    }
    return AsTicks(DivideNearest(scaled * kTicksPerSecond, rate.numerator));
}

std::optional<std::int64_t> TicksOfUnits(Wide units, std::int64_t perSecond) {
    constexpr Wide kLimit = Wide{1} << 80;
    if (units > kLimit || units < -kLimit) {
        return std::nullopt;
    }
    return AsTicks(DivideNearest(units * kTicksPerSecond, perSecond));
}

std::int64_t UnitsOfTicks(std::int64_t ticks, std::int64_t perSecond) {
    return static_cast<std::int64_t>(DivideNearest(Wide{ticks} * perSecond, kTicksPerSecond));
}

std::string ClockWithMilliseconds(std::int64_t ticks, char separator) {
    const std::int64_t milliseconds = UnitsOfTicks(ticks, 1000);
    const std::int64_t seconds = milliseconds / 1000;
    char text[64];
    std::snprintf(text, sizeof text, "%02lld:%02lld:%02lld%c%03lld", static_cast<long long>(seconds / 3600),
                  static_cast<long long>(seconds / 60 % 60), static_cast<long long>(seconds % 60), separator,
                  static_cast<long long>(milliseconds % 1000));
    return text;
}

}  // namespace keltemporalxmp::exchange
