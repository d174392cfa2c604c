#include "TimeDisplay.hpp"

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <keltemporalxmp/docops.hpp>
#include <keltemporalxmp/exchange.hpp>

#include "Errors.hpp"

namespace keltemporalxmp::tool {
namespace {

std::optional<std::int64_t> PositiveInteger(std::string_view text) {
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value <= 0) {
        return std::nullopt;
    }
    return value;
}

std::optional<FrameRate> RateOf(std::string_view numerator, std::string_view denominator) {
    const std::optional<std::int64_t> n = PositiveInteger(numerator);
    const std::optional<std::int64_t> d = PositiveInteger(denominator);
    if (!n || !d) {
        return std::nullopt;
    }
    return FrameRate{*n, *d};
}

// The frame count in exact arithmetic, rounded half away from zero, when it
// fits: the library's own answer wraps once ticks times the rate leaves 64 bits.
std::optional<std::int64_t> ExactFrames(std::int64_t ticks, FrameRate rate) {
    using Wide = WideUnsigned;
    const std::uint64_t magnitude =
        ticks < 0 ? 0 - static_cast<std::uint64_t>(ticks) : static_cast<std::uint64_t>(ticks);
    const Wide scaled = Wide(magnitude) * Wide(static_cast<std::uint64_t>(rate.numerator));
    const Wide divisor = Wide(static_cast<std::uint64_t>(rate.denominator)) * Wide(kTicksPerSecond);
    const Wide frames = scaled / divisor + (2 * (scaled % divisor) >= divisor ? 1 : 0);
    if (frames > Wide(INT64_MAX)) {
        return std::nullopt;
    }
    const auto count = static_cast<std::int64_t>(frames);
    return ticks < 0 ? -count : count;
}

// |a - b|, which may not fit a signed count.
std::uint64_t Distance(std::int64_t a, std::int64_t b) {
    const auto ua = static_cast<std::uint64_t>(a);
    const auto ub = static_cast<std::uint64_t>(b);
    return a > b ? ua - ub : ub - ua;
}

}  // namespace

std::optional<FrameRate> ParseFrameRate(std::string_view text) {
    if (const std::size_t slash = text.find('/'); slash != std::string_view::npos) {
        return RateOf(text.substr(0, slash), text.substr(slash + 1));
    }
    if (text.starts_with('f')) {
        text.remove_prefix(1);
    }
    if (const std::size_t s = text.find('s'); s != std::string_view::npos) {
        return RateOf(text.substr(0, s), text.substr(s + 1));
    }
    return RateOf(text, "1");
}

std::string FrameRateText(FrameRate rate) {
    std::string text;
    XMPDocOpsTemporal::CreateExternalFrameRateString(&text, rate.numerator, rate.denominator);
    return text;
}

bool IsUsableRate(FrameRate rate) {
    return rate.numerator > 0 && rate.denominator > 0;
}

bool IsDropFrameRate(FrameRate rate) {
    return rate == FrameRate{30000, 1001} || rate == FrameRate{60000, 1001};
}

std::int64_t NominalFramesPerSecond(FrameRate rate) {
    // In integers: a double loses the rounding of rates near 2^63.
    const auto numerator = static_cast<WideUnsigned>(rate.numerator);
    const auto denominator = static_cast<WideUnsigned>(rate.denominator);
    const auto nominal = static_cast<std::int64_t>((numerator + denominator / 2) / denominator);
    return nominal < 1 ? 1 : nominal;
}

double Seconds(std::int64_t ticks) {
    return XMPDocOpsTemporal::ConvertTicksToSeconds(ticks);
}

std::int64_t FrameCount(std::int64_t ticks, FrameRate rate) {
    const std::optional<std::int64_t> exact = ExactFrames(ticks, rate);
    std::int64_t count = 0;
    if (exact) {
        std::string frames;
        XMPDocOpsTemporal::ConvertTicksToExternalTimeString(&frames, ticks, rate.numerator, rate.denominator,
                                                            kTicksPerSecond, false);
        count = std::strtoll(frames.c_str(), nullptr, 10);
    }
    // The library halves a frame in integers, so it may round a midpoint the other way.
    if (!exact || Distance(count, *exact) > 1) {
        throw InputError(std::to_string(ticks) + " ticks cannot be counted in frames at " + FrameRateText(rate) +
                         ": the count does not fit 64 bits");
    }
    return count;
}

std::string Timecode(std::int64_t ticks, FrameRate rate) {
    return exchange::FramesToTimecode(FrameCount(ticks, rate), {rate.numerator, rate.denominator});
}

std::string XmpTimeText(std::int64_t ticks, FrameRate rate) {
    if (ticks != kTimeUnspecified && ticks != 0) {
        FrameCount(ticks, rate);
    }
    std::string text;
    XMPDocOpsTemporal::ConvertTicksToExternalTimeString(&text, ticks, rate.numerator, rate.denominator, kTicksPerSecond,
                                                        true);
    return text;
}

std::string SecondsCell(std::int64_t ticks) {
    if (ticks == kTimeUnspecified) {
        return "-";
    }
    char text[64];
    std::snprintf(text, sizeof text, "%.3f", Seconds(ticks));
    return text;
}

std::string FramesCell(std::int64_t ticks, std::optional<FrameRate> rate) {
    return ticks == kTimeUnspecified || !rate ? "-" : std::to_string(FrameCount(ticks, *rate));
}

std::string TimecodeCell(std::int64_t ticks, std::optional<FrameRate> rate) {
    return ticks == kTimeUnspecified || !rate ? "-" : Timecode(ticks, *rate);
}

kelcore::JSONValue TimeJson(std::int64_t ticks, std::optional<FrameRate> rate) {
    kelcore::JSONValue time = {{"ticks", ticks}};
    if (ticks == kTimeUnspecified) {
        time["unspecified"] = true;
        return time;
    }
    time["seconds"] = Seconds(ticks);
    if (rate) {
        time["frames"] = FrameCount(ticks, *rate);
        time["timecode"] = Timecode(ticks, *rate);
    }
    return time;
}

kelcore::JSONValue FrameRateJson(FrameRate rate) {
    return {{"numerator", rate.numerator}, {"denominator", rate.denominator}};
}

}  // namespace keltemporalxmp::tool
