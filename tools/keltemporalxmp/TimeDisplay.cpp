#include "TimeDisplay.hpp"

#include <charconv>
#include <cstdio>
#include <cstdlib>

#include <keltemporalxmp/docops.hpp>
#include <keltemporalxmp/exchange.hpp>

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

double Seconds(std::int64_t ticks) {
    return XMPDocOpsTemporal::ConvertTicksToSeconds(ticks);
}

std::int64_t FrameCount(std::int64_t ticks, FrameRate rate) {
    std::string frames;
    XMPDocOpsTemporal::ConvertTicksToExternalTimeString(&frames, ticks, rate.numerator, rate.denominator,
                                                        kTicksPerSecond, false);
    return std::strtoll(frames.c_str(), nullptr, 10);
}

std::string Timecode(std::int64_t ticks, FrameRate rate) {
    return exchange::FramesToTimecode(FrameCount(ticks, rate), {rate.numerator, rate.denominator});
}

std::string XmpTimeText(std::int64_t ticks, FrameRate rate) {
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
