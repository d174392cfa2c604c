#include "timestrings/TimeText.hpp"

#include <cstring>
#include <optional>
#include <string>

#include <xmptoolkit/XMP_Error.hpp>

#include "timestrings/CommonRates.hpp"
#include "timestrings/FrameArithmetic.hpp"
#include "timestrings/TickArithmetic.hpp"

namespace keltemporalxmp::timestrings {
namespace {

constexpr std::string_view kMaximumText = "maximum";

[[noreturn]] void ThrowUnusableRate(const char* operation, const char* problem, std::int64_t numerator,
                                    std::int64_t denominator, std::int64_t ticksPerSecond, const std::string& subject) {
    const std::string message = std::string(operation) + ": " + problem + " in frame rate " +
                                std::to_string(numerator) + "/" + std::to_string(denominator) + " at " +
                                std::to_string(ticksPerSecond) + " ticks per second, converting " + subject;
    throw XMP_Error(kXMPErr_BadValue, message.c_str());
}

// The error paths are kept out of line (cold), so that the conversions
// themselves need no room for building a message.
[[noreturn, gnu::cold, gnu::noinline]] void ThrowUnusableReadingRate(const char* problem, std::string_view text,
                                                                     std::int64_t numerator, std::int64_t denominator,
                                                                     std::int64_t ticksPerSecond) {
    ThrowUnusableRate("ConvertExternalTimeStringToTicks", problem, numerator, denominator, ticksPerSecond,
                      "time \"" + std::string(text) + "\"");
}

[[noreturn, gnu::cold, gnu::noinline]] void ThrowUnusableWritingRate(const char* problem, std::int64_t ticks,
                                                                     std::int64_t numerator, std::int64_t denominator,
                                                                     std::int64_t ticksPerSecond) {
    ThrowUnusableRate("ConvertTicksToExternalTimeString", problem, numerator, denominator, ticksPerSecond,
                      std::to_string(ticks) + " ticks");
}

// Reading divides by the numerator and the tick rate, never by the denominator.
void CheckReadingRate(std::string_view text, std::int64_t numerator, std::int64_t denominator,
                      std::int64_t ticksPerSecond) {
    const char* problem = numerator == 0 ? "zero numerator" : ticksPerSecond < 1 ? "tick rate below 1" : nullptr;
    if (problem != nullptr) {
        ThrowUnusableReadingRate(problem, text, numerator, denominator, ticksPerSecond);
    }
}

// Writing divides by the numerator, the denominator and the tick rate.
void CheckWritingRate(std::int64_t ticks, std::int64_t numerator, std::int64_t denominator,
                      std::int64_t ticksPerSecond) {
    const char* problem = numerator == 0       ? "zero numerator"
                          : denominator == 0   ? "zero denominator"
                          : ticksPerSecond < 1 ? "tick rate below 1"
                                               : nullptr;
    if (problem != nullptr) {
        ThrowUnusableWritingRate(problem, ticks, numerator, denominator, ticksPerSecond);
    }
}

}  // namespace

std::int64_t ReadTimeText(std::string_view text, std::int64_t* numerator, std::int64_t* denominator,
                          std::int64_t ticksPerSecond, Reduction reduction) {
    if (text == kMaximumText) {
        return kMaximumTicks;
    }
    const LeadingInteger frames = ParseLeadingInteger(text);
    const RateText rate = ReadRateText(text, frames.end);
    std::int64_t rateNumerator = *numerator;
    std::int64_t rateDenominator = *denominator;
    if (rate.hasRate) {
        rateNumerator = rate.numerator;
        rateDenominator = rate.hasDenominator ? rate.denominator : 1;
    }
    CheckReadingRate(text, rateNumerator, rateDenominator, ticksPerSecond);
    const std::int64_t ticks = AtCommonRate(rateNumerator, rateDenominator, ticksPerSecond,
                                            [&frames, reduction](auto rateN, auto rateD, auto rateTicks) {
                                                return FramesToTicks(frames.value, rateN, rateD, rateTicks, reduction);
                                            });
    if (rate.hasRate) {
        *denominator = rateDenominator;
        *numerator = rateNumerator;
    }
    return ticks;
}

char* WriteTimeText(char* first, std::int64_t ticks, std::int64_t numerator, std::int64_t denominator,
                    std::int64_t ticksPerSecond, bool appendRate) {
    if (ticks == kMaximumTicks) {
        std::memcpy(first, kMaximumText.data(), kMaximumText.size());
        return first + kMaximumText.size();
    }
    if (ticks == 0) {
        *first = '0';
        return first + 1;
    }
    CheckWritingRate(ticks, numerator, denominator, ticksPerSecond);
    const std::optional<std::int64_t> frames = AtCommonRate(
        numerator, denominator, ticksPerSecond,
        [ticks](auto rateN, auto rateD, auto rateTicks) { return TicksToFrames(ticks, rateN, rateD, rateTicks); });
    if (!frames) {
        ThrowUnusableWritingRate("less than one tick per frame", ticks, numerator, denominator, ticksPerSecond);
    }
    char* last = WriteInteger(first, *frames);
    return appendRate ? WriteRateText(last, numerator, denominator) : last;
}

char* WriteRateText(char* first, std::int64_t numerator, std::int64_t denominator) noexcept {
    *first = 'f';
    char* last = WriteInteger(first + 1, numerator);
    if (denominator != 1) {
        *last = 's';
        last = WriteInteger(last + 1, denominator);
    }
    return last;
}

}  // namespace keltemporalxmp::timestrings
