#include "TimeInput.hpp"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <regex>
#include <string>

#include <keltemporalxmp/docops.hpp>

#include "Errors.hpp"

namespace keltemporalxmp::tool {
namespace {

// 2^63: tick counts must stay below it.
constexpr double kLargestTicks = static_cast<double>(kTimeUnspecified);

const std::regex kXmpTime("(-?[0-9]+)(f([0-9]+)(s([0-9]+))?)?");
const std::regex kSeconds("(-?[0-9]*\\.?[0-9]+)s?");
const std::regex kTimecode("(-?)([0-9]{1,6}):([0-9]{2}):([0-9]{2})([:;])([0-9]{1,6})");

[[noreturn]] void Unreadable(std::string_view text, const std::string& why) {
    throw InputError("cannot read '" + std::string(text) + "' as a time: " + why);
}

std::int64_t TicksAtRate(std::int64_t frames, FrameRate rate) {
    return XMPDocOpsTemporal::ConvertExternalTimeStringToTicks(std::to_string(frames).c_str(), rate.numerator,
                                                               rate.denominator, kTicksPerSecond);
}

std::int64_t Number(const std::string& digits) {
    std::int64_t value = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return value;
}

// The library reads a number too large for 64 bits as 0; a user should hear of it.
bool FitsInt64(const std::string& digits) {
    std::int64_t value = 0;
    return std::from_chars(digits.data(), digits.data() + digits.size(), value).ec == std::errc();
}

// Drop-frame labels skip two (four at 59.94) numbers at the start of every
// minute but each tenth; the frame is the label minus the labels skipped.
std::int64_t FrameOfLabel(std::int64_t label, std::int64_t nominal, std::int64_t minutes) {
    const std::int64_t dropped = nominal / 15;
    return label - dropped * (minutes - minutes / 10);
}

UserTime FromTimecode(std::string_view text, const std::smatch& parts, std::optional<FrameRate> rate) {
    if (!rate) {
        Unreadable(text, "a timecode needs --rate");
    }
    const std::int64_t nominal =
        std::llround(static_cast<double>(rate->numerator) / static_cast<double>(rate->denominator));
    const std::int64_t minutes = Number(parts[2]) * 60 + Number(parts[3]);
    const std::int64_t seconds = minutes * 60 + Number(parts[4]);
    const std::int64_t frameLabel = Number(parts[6]);
    if (Number(parts[3]) > 59 || Number(parts[4]) > 59 || frameLabel >= std::max<std::int64_t>(nominal, 1)) {
        Unreadable(text, "minutes, seconds or frames out of range");
    }
    std::int64_t frame = seconds * nominal + frameLabel;
    if (parts[5] == ";") {
        if (!IsDropFrameRate(*rate)) {
            Unreadable(text, "drop-frame timecode (;) needs the rate 30000/1001 or 60000/1001");
        }
        frame = FrameOfLabel(frame, nominal, minutes);
    }
    const std::int64_t ticks = TicksAtRate(frame, *rate);
    return {parts[1] == "-" ? -ticks : ticks, rate};
}

UserTime FromSeconds(std::string_view text, const std::string& number, std::optional<FrameRate> rate) {
    try {
        return {TicksOfSeconds(std::strtod(number.c_str(), nullptr)), rate};
    } catch (const InputError& error) {
        Unreadable(text, error.what());
    }
}

UserTime FromXmpTime(std::string_view text, std::optional<FrameRate> rate) {
    const std::string xmp(text);
    const bool carriesRate = xmp.find('f') != std::string::npos;
    // Without a rate a bare count is ticks.
    FrameRate counted = rate.value_or(FrameRate{kTicksPerSecond, 1});
    const std::int64_t ticks = XMPDocOpsTemporal::ConvertExternalTimeStringToTicks(
        xmp.c_str(), &counted.numerator, &counted.denominator, kTicksPerSecond);
    if (carriesRate && !IsUsableRate(counted)) {
        Unreadable(text, "its frame rate is zero");
    }
    // The library wraps a tick count that overflows; refuse instead.
    const double frames = std::strtod(xmp.c_str(), nullptr);
    if (!(std::fabs(frames * static_cast<double>(counted.denominator) / static_cast<double>(counted.numerator) *
                    static_cast<double>(kTicksPerSecond)) <= kLargestTicks)) {
        Unreadable(text, "too far from zero");
    }
    return {ticks, carriesRate || rate ? std::optional<FrameRate>(counted) : std::nullopt};
}

}  // namespace

std::int64_t TicksOfSeconds(double seconds) {
    const double ticks = std::round(seconds * static_cast<double>(kTicksPerSecond));
    if (!(std::fabs(ticks) < kLargestTicks)) {
        throw InputError("too far from zero");
    }
    return static_cast<std::int64_t>(ticks);
}

UserTime ParseUserTime(std::string_view text, std::optional<FrameRate> rate) {
    const std::string input(text);
    std::smatch parts;
    if (input == "maximum") {
        return {kTimeUnspecified, rate};
    }
    if (std::regex_match(input, parts, kXmpTime)) {
        for (const int number : {1, 3, 5}) {
            if (parts[number].matched && !FitsInt64(parts[number])) {
                Unreadable(text, "a number too large");
            }
        }
        return FromXmpTime(text, rate);
    }
    if (std::regex_match(input, parts, kTimecode)) {
        return FromTimecode(text, parts, rate);
    }
    if (std::regex_match(input, parts, kSeconds)) {
        return FromSeconds(text, parts[1], rate);
    }
    Unreadable(text, "expected XMP notation (90f25), seconds (3.6s) or timecode (00:00:03:15)");
}

}  // namespace keltemporalxmp::tool
