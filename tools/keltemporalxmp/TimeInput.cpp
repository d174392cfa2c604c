#include "TimeInput.hpp"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string>

#include <keltemporalxmp/docops.hpp>

#include "Errors.hpp"

namespace keltemporalxmp::tool {
namespace {

// 2^63: tick counts must stay below it.
constexpr double kLargestTicks = static_cast<double>(kTimeUnspecified);
constexpr std::string_view kMaximum = "maximum";
// Messages quote at most this much of a text.
constexpr std::size_t kQuotedLength = 48;

std::string Quoted(std::string_view text) {
    if (text.size() <= kQuotedLength) {
        return "'" + std::string(text) + "'";
    }
    return "'" + std::string(text.substr(0, kQuotedLength)) + "...' (" + std::to_string(text.size()) + " characters)";
}

[[noreturn]] void Unreadable(std::string_view text, const std::string& why) {
    throw InputError("cannot read " + Quoted(text) + " as a time: " + why);
}

[[noreturn]] void UnreadablePart(std::string_view text, const std::string& why) {
    throw InputError("cannot read the part " + Quoted(text) + ": " + why);
}

// One left-to-right pass; each step takes what it accepts and nothing else.
class Scanner {
public:
    explicit Scanner(std::string_view text) : m_text(text) {}

    bool AtEnd() const { return m_at == m_text.size(); }

    bool Take(char letter) {
        if (AtEnd() || m_text[m_at] != letter) {
            return false;
        }
        ++m_at;
        return true;
    }

    // Between `fewest` and `most` digits, or nothing (and nothing taken).
    std::string_view Digits(std::size_t fewest, std::size_t most = std::string_view::npos) {
        const std::size_t first = m_at;
        while (!AtEnd() && m_at - first < most && m_text[m_at] >= '0' && m_text[m_at] <= '9') {
            ++m_at;
        }
        if (m_at - first < fewest) {
            m_at = first;
            return {};
        }
        return m_text.substr(first, m_at - first);
    }

    // An optional "-" and at least one digit, or nothing.
    std::string_view Integer() {
        const std::size_t first = m_at;
        Take('-');
        if (Digits(1).empty()) {
            m_at = first;
            return {};
        }
        return m_text.substr(first, m_at - first);
    }

private:
    std::string_view m_text;
    std::size_t m_at = 0;
};

// "90", "90f25", "1001f30000s1001"; the rate's members may carry a sign so
// that a negative one is named rather than called unreadable.
struct XmpNotation {
    std::string_view frames;
    std::string_view numerator;  // empty without a rate
    std::string_view denominator;
};

std::optional<XmpNotation> ScanXmpTime(std::string_view text) {
    Scanner scanner(text);
    XmpNotation time{scanner.Integer(), {}, {}};
    if (time.frames.empty()) {
        return std::nullopt;
    }
    if (scanner.Take('f')) {
        time.numerator = scanner.Integer();
        if (time.numerator.empty() || (scanner.Take('s') && (time.denominator = scanner.Integer()).empty())) {
            return std::nullopt;
        }
    }
    return scanner.AtEnd() ? std::optional(time) : std::nullopt;
}

// [-]H:MM:SS:FF, with ";" before the frames for drop frame.
struct TimecodeNotation {
    bool negative = false;
    std::string_view hours, minutes, seconds, frames;
    bool dropFrame = false;
};

std::optional<TimecodeNotation> ScanTimecode(std::string_view text) {
    Scanner scanner(text);
    TimecodeNotation timecode;
    timecode.negative = scanner.Take('-');
    timecode.hours = scanner.Digits(1, 6);
    if (timecode.hours.empty() || !scanner.Take(':') || (timecode.minutes = scanner.Digits(2, 2)).empty() ||
        !scanner.Take(':') || (timecode.seconds = scanner.Digits(2, 2)).empty()) {
        return std::nullopt;
    }
    timecode.dropFrame = scanner.Take(';');
    if (!timecode.dropFrame && !scanner.Take(':')) {
        return std::nullopt;
    }
    timecode.frames = scanner.Digits(1, 6);
    return !timecode.frames.empty() && scanner.AtEnd() ? std::optional(timecode) : std::nullopt;
}

// [-][digits][.]digits[s]: "3.6s", ".5", "-2s". The number without its "s".
std::optional<std::string_view> ScanSeconds(std::string_view text) {
    Scanner scanner(text);
    scanner.Take('-');
    const bool wholePart = !scanner.Digits(1).empty();
    if (scanner.Take('.') ? scanner.Digits(1).empty() : !wholePart) {
        return std::nullopt;
    }
    const std::size_t numberEnd = text.size() - (text.ends_with('s') ? 1 : 0);
    scanner.Take('s');
    return scanner.AtEnd() ? std::optional(text.substr(0, numberEnd)) : std::nullopt;
}

std::int64_t Number(std::string_view text, std::string_view digits) {
    std::int64_t value = 0;
    if (std::from_chars(digits.data(), digits.data() + digits.size(), value).ec != std::errc()) {
        Unreadable(text, "a number too large: " + Quoted(digits) + " does not fit 64 bits");
    }
    return value;
}

FrameRate RateOf(std::string_view text, const XmpNotation& time) {
    const FrameRate rate{Number(text, time.numerator), time.denominator.empty() ? 1 : Number(text, time.denominator)};
    const std::string shown = "its frame rate f" + std::string(time.numerator) +
                              (time.denominator.empty() ? "" : "s" + std::string(time.denominator));
    if (rate.numerator == 0) {
        Unreadable(text, shown + " has a zero numerator");
    }
    if (rate.denominator == 0) {
        Unreadable(text, shown + " has a zero denominator");
    }
    if (rate.numerator < 0 || rate.denominator < 0) {
        Unreadable(text, shown + " is negative");
    }
    return rate;
}

// frames * denominator * ticks-per-second / numerator, rounded half away from
// zero as the library does, when it fits.
std::optional<std::int64_t> ExactTicks(std::int64_t frames, FrameRate rate) {
    using Wide = WideUnsigned;
    const std::uint64_t magnitude =
        frames < 0 ? 0 - static_cast<std::uint64_t>(frames) : static_cast<std::uint64_t>(frames);
    const Wide scaled = Wide(magnitude) * Wide(static_cast<std::uint64_t>(rate.denominator));
    const auto numerator = Wide(static_cast<std::uint64_t>(rate.numerator));
    const Wide whole = scaled / numerator;
    if (whole > Wide(INT64_MAX) / Wide(kTicksPerSecond) + 1) {
        return std::nullopt;
    }
    const Wide ticks = whole * kTicksPerSecond + ((scaled % numerator) * kTicksPerSecond + numerator / 2) / numerator;
    if (ticks > Wide(INT64_MAX)) {
        return std::nullopt;
    }
    const auto value = static_cast<std::int64_t>(ticks);
    return frames < 0 ? -value : value;
}

// The library wraps a tick count that overflows; its answer is used only when
// it is the exact one.
std::int64_t TicksAt(std::string_view text, std::int64_t frames, FrameRate rate) {
    const std::optional<std::int64_t> exact = ExactTicks(frames, rate);
    if (!exact || XMPDocOpsTemporal::ConvertExternalTimeStringToTicks(std::to_string(frames).c_str(), rate.numerator,
                                                                      rate.denominator, kTicksPerSecond) != *exact) {
        Unreadable(text, "too far from zero: " + std::to_string(frames) + " frames at " + FrameRateText(rate) +
                             " is beyond the 2^63 ticks a time can hold");
    }
    return *exact;
}

UserTime FromXmpTime(std::string_view text, const XmpNotation& time, std::optional<FrameRate> rate) {
    const std::int64_t frames = Number(text, time.frames);
    if (time.numerator.empty()) {
        // Without a rate a bare count is ticks.
        return {TicksAt(text, frames, rate.value_or(kTickRate)), rate};
    }
    const FrameRate counted = RateOf(text, time);
    return {TicksAt(text, frames, counted), counted};
}

// Drop-frame labels skip two (four at 59.94) numbers at the start of every
// minute but each tenth; the frame is the label minus the labels skipped.
std::int64_t FrameOfLabel(std::int64_t label, std::int64_t nominal, std::int64_t minutes) {
    const std::int64_t dropped = nominal / 15;
    return label - dropped * (minutes - minutes / 10);
}

UserTime FromTimecode(std::string_view text, const TimecodeNotation& timecode, std::optional<FrameRate> rate) {
    if (!rate) {
        Unreadable(text, "a timecode needs --rate");
    }
    const std::int64_t nominal = NominalFramesPerSecond(*rate);
    const std::int64_t minutes = Number(text, timecode.hours) * 60 + Number(text, timecode.minutes);
    const std::int64_t seconds = minutes * 60 + Number(text, timecode.seconds);
    const std::int64_t frameLabel = Number(text, timecode.frames);
    if (Number(text, timecode.minutes) > 59 || Number(text, timecode.seconds) > 59 || frameLabel >= nominal) {
        Unreadable(text, "minutes, seconds or frames out of range");
    }
    std::int64_t frame = 0;
    if (__builtin_mul_overflow(seconds, nominal, &frame) || __builtin_add_overflow(frame, frameLabel, &frame)) {
        Unreadable(text, "too many frames at " + FrameRateText(*rate) + " to count in 64 bits");
    }
    if (timecode.dropFrame) {
        if (!IsDropFrameRate(*rate)) {
            Unreadable(text, "drop-frame timecode (;) needs the rate 30000/1001 or 60000/1001");
        }
        frame = FrameOfLabel(frame, nominal, minutes);
    }
    const std::int64_t ticks = TicksAt(text, frame, *rate);
    return {timecode.negative ? -ticks : ticks, rate};
}

UserTime FromSeconds(std::string_view text, std::string_view number, std::optional<FrameRate> rate) {
    try {
        return {TicksOfSeconds(std::strtod(std::string(number).c_str(), nullptr)), rate};
    } catch (const InputError& error) {
        Unreadable(text, error.what());
    }
}

// A time of a part string: only the XMP notation.
UserTime PartTime(std::string_view part, std::string_view text, FrameRate rate) {
    if (text == kMaximum) {
        return {kTimeUnspecified, rate};
    }
    const std::optional<XmpNotation> time = ScanXmpTime(text);
    if (!time) {
        UnreadablePart(part, Quoted(text) + " is not a time in the XMP notation (90, 90f25, 1001f30000s1001)");
    }
    try {
        return FromXmpTime(text, *time, rate);
    } catch (const InputError& error) {
        UnreadablePart(part, error.what());
    }
}

// The text after the last "time:" when the last component of the part is its
// time component ("time:", repeated or not, then the value).
std::optional<std::string_view> TimeValue(std::string_view component) {
    const std::size_t lastColon = component.rfind(':');
    if (lastColon == std::string_view::npos) {
        return std::nullopt;
    }
    std::string_view labels = component.substr(0, lastColon);
    while (labels.starts_with("time:")) {
        labels.remove_prefix(5);
    }
    return labels == "time" ? std::optional(component.substr(lastColon + 1)) : std::nullopt;
}

// The times of "start", "startdDURATION" or "startrEND".
void ReadPartTimes(std::string_view part, std::string_view value, FrameRate rate, UserPart& result) {
    for (const char separator : {'d', 'r'}) {
        const std::size_t at = value.find(separator);
        if (at == std::string_view::npos) {
            continue;
        }
        if (value.find_first_of("dr", at + 1) != std::string_view::npos) {
            UnreadablePart(part, "more than one 'd' or 'r' in its time");
        }
        result.start = PartTime(part, value.substr(0, at), rate);
        result.duration = PartTime(part, value.substr(at + 1), rate);
        if (separator == 'r' && result.duration.ticks != kTimeUnspecified &&
            __builtin_sub_overflow(result.duration.ticks, result.start.ticks, &result.duration.ticks)) {
            UnreadablePart(part, "its end minus its start does not fit the 2^63 ticks a time can hold");
        }
        return;
    }
    result.start = PartTime(part, value, rate);
}

// The library reads what the tool has checked; a difference would be a
// wrapped or dropped value.
void CheckLibraryAgrees(std::string_view part, const UserPart& result, FrameRate rate) {
    std::int64_t start = 0;
    std::int64_t duration = 0;
    FrameRate startRate = rate;
    FrameRate durationRate = rate;
    std::string path;
    XMPDocOpsTemporal::ParsePart(std::string(part).c_str(), &start, &startRate.numerator, &startRate.denominator,
                                 &duration, &durationRate.numerator, &durationRate.denominator, kTimeUnspecified,
                                 &path);
    if (start != result.start.ticks || duration != result.duration.ticks || path != result.path) {
        UnreadablePart(part, "its times cannot be read exactly");
    }
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
    if (text.size() > kMaxTimeTextLength) {
        Unreadable(text, "longer than the " + std::to_string(kMaxTimeTextLength) + " characters a time may have");
    }
    if (text == kMaximum) {
        return {kTimeUnspecified, rate};
    }
    if (const std::optional<XmpNotation> time = ScanXmpTime(text)) {
        return FromXmpTime(text, *time, rate);
    }
    if (const std::optional<TimecodeNotation> timecode = ScanTimecode(text)) {
        return FromTimecode(text, *timecode, rate);
    }
    if (const std::optional<std::string_view> seconds = ScanSeconds(text)) {
        return FromSeconds(text, *seconds, rate);
    }
    Unreadable(text, "expected XMP notation (90f25), seconds (3.6s) or timecode (00:00:03:15)");
}

UserPart ParseUserPart(std::string_view text, std::optional<FrameRate> rate) {
    if (text.size() > kMaxPartTextLength) {
        UnreadablePart(text, "longer than the " + std::to_string(kMaxPartTextLength) + " characters a part may have");
    }
    const FrameRate counted = rate.value_or(FrameRate{1, 1});
    UserPart result{{}, false, {0, counted}, {kTimeUnspecified, counted}};
    // Every component before the last is path; so is the last unless it gives the time.
    const std::size_t lastSlash = text.rfind('/');
    const bool hasPath = lastSlash != std::string_view::npos;
    const std::optional<std::string_view> value = TimeValue(hasPath ? text.substr(lastSlash + 1) : text);
    if (!value) {
        result.path = text;
        return result;
    }
    result.path = hasPath ? text.substr(0, lastSlash) : std::string_view();
    result.hasTime = true;
    if (!value->empty()) {
        ReadPartTimes(text, *value, counted, result);
    }
    CheckLibraryAgrees(text, result, counted);
    return result;
}

}  // namespace keltemporalxmp::tool
