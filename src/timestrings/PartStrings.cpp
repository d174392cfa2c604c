// XMPDocOpsTemporal's part strings: an optional path, then the time
// component "time:" with a start and a duration ("metadata/time:0d25f25").

#include <keltemporalxmp/docops.hpp>

#include <algorithm>
#include <cstring>
#include <optional>

#include <kelmediatypes/TickTime.hpp>

#include "timestrings/Arguments.hpp"
#include "timestrings/CommonRates.hpp"
#include "timestrings/TimeText.hpp"
#include "timestrings/TickArithmetic.hpp"

namespace keltemporalxmp {
namespace {

using timestrings::kMaximumTicks;
using timestrings::Reduction;
using timestrings::SplitAtSoleSeparator;
using timestrings::SplitText;

constexpr std::int64_t kTicksPerSecond = kelmediatypes::TickTime::kTicksPerSecond;
constexpr std::string_view kTimeLabel = "time";
constexpr std::string_view kRepeatedTimeLabel = "time:";

struct Rate {
    std::int64_t numerator;
    std::int64_t denominator;
};

// A rate with a zero member means whole seconds.
Rate RateOrSeconds(std::int64_t numerator, std::int64_t denominator) {
    return numerator == 0 || denominator == 0 ? Rate{1, 1} : Rate{numerator, denominator};
}

// A time that falls between the frames of a whole-number rate is written
// in ticks instead, so that it is kept exactly.
Rate ExactRateFor(std::int64_t ticks, Rate rate, bool wholeNumberRate) {
    if (!wholeNumberRate) {
        return rate;
    }
    const bool onFrame = timestrings::AtCommonRate(
        rate.numerator, 1, kTicksPerSecond, [ticks](auto numerator, auto, auto ticksPerSecond) {
            return timestrings::IsWholeMultiple(ticks, timestrings::Divide(ticksPerSecond, numerator));
        });
    return onFrame ? rate : Rate{kTicksPerSecond, 1};
}

char* WritePartTime(char* first, std::int64_t ticks, Rate rate) {
    const bool wholeSeconds = rate.numerator == 1 && rate.denominator == 1;
    return timestrings::WriteTimeText(first, ticks, rate.numerator, rate.denominator, kTicksPerSecond, !wholeSeconds);
}

// Where `letter` last occurs in `text`, if it does; the C library's search is
// vectorised, unlike rfind's loop.
std::size_t FindLast(std::string_view text, char letter) {
    const void* at = memrchr(text.data(), letter, text.size());
    return at != nullptr ? static_cast<std::size_t>(static_cast<const char*>(at) - text.data())
                         : std::string_view::npos;
}

// The text after "time:" when the component is the time component.
std::optional<std::string_view> FindTimeValue(std::string_view component) {
    const std::size_t lastColon = FindLast(component, ':');
    if (lastColon == std::string_view::npos) {
        return std::nullopt;
    }
    // Every label before the value is "time".
    std::string_view labels = component.substr(0, lastColon);
    while (labels.starts_with(kRepeatedTimeLabel)) {
        labels.remove_prefix(kRepeatedTimeLabel.size());
    }
    if (labels != kTimeLabel) {
        return std::nullopt;
    }
    return component.substr(lastColon + 1);
}

struct PartTimes {
    std::int64_t* start;
    std::int64_t* startNumerator;
    std::int64_t* startDenominator;
    std::int64_t* duration;
    std::int64_t* durationNumerator;
    std::int64_t* durationDenominator;

    std::int64_t ReadStart(std::string_view text) const {
        return timestrings::ReadTimeText(text, startNumerator, startDenominator, kTicksPerSecond,
                                         Reduction::kAnyNumeratorButOne);
    }
    std::int64_t ReadDurationOrEnd(std::string_view text) const {
        return timestrings::ReadTimeText(text, durationNumerator, durationDenominator, kTicksPerSecond,
                                         Reduction::kAnyNumeratorButOne);
    }
};

// "start", "start" "d" "duration" or "start" "r" "end"; any other shape
// leaves the start at 0 and the duration unbounded.
void ReadTimeValue(std::string_view timeValue, const PartTimes& times, std::int64_t defaultDuration) {
    if (timeValue.empty()) {
        return;
    }
    const SplitText startAndDuration = SplitAtSoleSeparator(timeValue, 'd');
    if (startAndDuration.occurs) {
        if (startAndDuration.isSplit) {
            *times.start = times.ReadStart(startAndDuration.before);
            *times.duration = times.ReadDurationOrEnd(startAndDuration.after);
        }
        return;
    }
    const SplitText startAndEnd = SplitAtSoleSeparator(timeValue, 'r');
    if (startAndEnd.occurs) {
        if (startAndEnd.isSplit) {
            *times.start = times.ReadStart(startAndEnd.before);
            const std::int64_t end = times.ReadDurationOrEnd(startAndEnd.after);
            *times.duration = end == kMaximumTicks ? kMaximumTicks : timestrings::WrappingSubtract(end, *times.start);
        }
        return;
    }
    *times.start = times.ReadStart(timeValue);
    *times.duration = defaultDuration;
}

}  // namespace

void XMPDocOpsTemporal::CreatePartString(std::string* partString, std::int64_t startTime,
                                         std::int64_t startTimeNumerator, std::int64_t startTimeDenominator,
                                         std::int64_t duration, std::int64_t durationNumerator,
                                         std::int64_t durationDenominator, std::int64_t noDuration, const char* path) {
    std::string& output = Required(partString, "CreatePartString", "output string");
    const Rate givenStartRate = RateOrSeconds(startTimeNumerator, startTimeDenominator);
    // The duration too switches to ticks only when the start's rate, not its own, is whole.
    const bool wholeNumberStartRate = givenStartRate.denominator == 1;
    const Rate startRate = ExactRateFor(startTime, givenStartRate, wholeNumberStartRate);
    const Rate durationRate =
        ExactRateFor(duration, RateOrSeconds(durationNumerator, durationDenominator), wholeNumberStartRate);

    // "/" (when there is a path), then the time component.
    char text[1 + kTimeLabel.size() + 2 + 2 * timestrings::kMaxTimeTextLength];
    char* const time = text + 1;
    char* end = std::copy(kTimeLabel.begin(), kTimeLabel.end(), time);
    *end++ = ':';
    end = WritePartTime(end, startTime, startRate);
    if (duration != noDuration) {
        *end++ = 'd';
        end = WritePartTime(end, duration, durationRate);
    }

    if (path == nullptr || *path == '\0') {
        output.assign(time, end);
        return;
    }
    text[0] = '/';
    output.assign(path);
    output.append(text, end);
}

void XMPDocOpsTemporal::ParsePart(const char* partString, std::int64_t* startTime, std::int64_t* startTimeNumerator,
                                  std::int64_t* startTimeDenominator, std::int64_t* duration,
                                  std::int64_t* durationNumerator, std::int64_t* durationDenominator,
                                  std::int64_t defaultDuration, std::string* path) {
    constexpr const char* operation = "ParsePart";
    const PartTimes times{&Required(startTime, operation, "start time"),
                          &Required(startTimeNumerator, operation, "start numerator"),
                          &Required(startTimeDenominator, operation, "start denominator"),
                          &Required(duration, operation, "duration"),
                          &Required(durationNumerator, operation, "duration numerator"),
                          &Required(durationDenominator, operation, "duration denominator")};
    std::string& pathOutput = Required(path, operation, "path");
    pathOutput.clear();
    *times.start = 0;
    *times.duration = kMaximumTicks;

    // Every component before the last is path; so is the last unless it gives the time.
    const std::string_view text = TextOrEmpty(partString);
    const std::size_t lastSlash = FindLast(text, '/');
    const bool hasPath = lastSlash != std::string_view::npos;
    const std::optional<std::string_view> timeValue = FindTimeValue(hasPath ? text.substr(lastSlash + 1) : text);
    if (!timeValue) {
        pathOutput.assign(text);
        return;
    }
    pathOutput.assign(hasPath ? text.substr(0, lastSlash) : std::string_view());
    ReadTimeValue(*timeValue, times, defaultDuration);
}

}  // namespace keltemporalxmp
