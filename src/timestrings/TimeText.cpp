#include "timestrings/TimeText.hpp"

#include <cstring>
#include <string>

#include <xmptoolkit/XMP_Error.hpp>

#include "timestrings/CommonRates.hpp"
#include "timestrings/WrappingArithmetic.hpp"

namespace keltemporalxmp::timestrings {
namespace {

constexpr std::string_view kMaximumText = "maximum";

[[noreturn]] void ThrowUnusableRate(const char* operation, const char* problem, std::int64_t numerator,
                                    std::int64_t denominator, std::int64_t ticksPerSecond,
                                    const std::string& subject) {
    const std::string message = std::string(operation) + ": " + problem + " in frame rate " +
                                std::to_string(numerator) + "/" + std::to_string(denominator) + " at " +
                                std::to_string(ticksPerSecond) + " ticks per second, converting " + subject;
    throw XMP_Error(kXMPErr_BadValue, message.c_str());
}

// Reading divides by the numerator and the tick rate, never by the denominator.
void CheckReadingRate(std::string_view text, std::int64_t numerator, std::int64_t denominator,
                      std::int64_t ticksPerSecond) {
    const char* problem = numerator == 0 ? "zero numerator" : ticksPerSecond < 1 ? "tick rate below 1" : nullptr;
    if (problem != nullptr) {
        ThrowUnusableRate("ConvertExternalTimeStringToTicks", problem, numerator, denominator, ticksPerSecond,
                          "time \"" + std::string(text) + "\"");
    }
}

constexpr const char* kWriterName = "ConvertTicksToExternalTimeString";

std::string TicksSubject(std::int64_t ticks) {
    return std::to_string(ticks) + " ticks";
}

// Writing divides by the numerator, the denominator and the tick rate.
void CheckWritingRate(std::int64_t ticks, std::int64_t numerator, std::int64_t denominator,
                      std::int64_t ticksPerSecond) {
    const char* problem = numerator == 0       ? "zero numerator"
                          : denominator == 0   ? "zero denominator"
                          : ticksPerSecond < 1 ? "tick rate below 1"
                                               : nullptr;
    if (problem != nullptr) {
        ThrowUnusableRate(kWriterName, problem, numerator, denominator, ticksPerSecond, TicksSubject(ticks));
    }
}

// Ticks per second over frames per second: when the numerator divides the
// tick rate the factor becomes a whole number of ticks per frame.
[[gnu::always_inline]] inline void ReduceTicksFactor(std::int64_t& ticksFactor, std::int64_t& numerator,
                                                     bool mayDivide) {
    if (ticksFactor == numerator) {
        ticksFactor = 1;
        numerator = 1;
        return;
    }
    if (mayDivide) {
        const std::int64_t quotient = Divide(ticksFactor, numerator);
        if (WrappingMultiply(quotient, numerator) == ticksFactor) {
            ticksFactor = quotient;
            numerator = 1;
        }
    }
}

// The conversions are inlined into each common rate's instance, where the rate
// is constant.
[[gnu::always_inline]] inline std::int64_t FramesToTicks(std::int64_t frameCount, std::int64_t numerator,
                                                         std::int64_t denominator, std::int64_t ticksPerSecond,
                                                         Reduction reduction) {
    const bool negative = frameCount < 0;
    const std::int64_t frames = negative ? WrappingNegate(frameCount) : frameCount;
    std::int64_t ticksFactor = ticksPerSecond;
    const bool reducible = reduction == Reduction::kAnyNumeratorButOne ? numerator != 1 : numerator > 1;
    ReduceTicksFactor(ticksFactor, numerator, reducible && ticksFactor != 1);
    // Too many frames to multiply exactly: round the factor to whole ticks per frame.
    if (IsAboveMaximumOver(frames, ticksFactor)) {
        ticksFactor = Divide(WrappingAdd(ticksFactor, numerator / 2), numerator);
        numerator = 1;
    }
    std::int64_t product = WrappingMultiply(frames, WrappingMultiply(ticksFactor, denominator));
    const std::int64_t half = numerator >> 1;
    if (numerator != ticksFactor && numerator != 1 && product < WrappingSubtract(kMaximumTicks, half)) {
        product = WrappingAdd(product, half);
    }
    const std::int64_t ticks = Divide(product, numerator);
    return negative ? WrappingNegate(ticks) : ticks;
}

[[gnu::always_inline]] inline std::int64_t TicksToFrames(std::int64_t ticks, std::int64_t numerator,
                                                         std::int64_t denominator, std::int64_t ticksPerSecond) {
    std::int64_t ticksFactor = ticksPerSecond;
    ReduceTicksFactor(ticksFactor, numerator, numerator != 1);
    const bool negative = ticks < 0;
    std::int64_t magnitude = negative ? WrappingNegate(ticks) : ticks;
    // Half a frame, so that the truncating divisions round to the nearest frame.
    const std::int64_t ticksPerSecondScaled = WrappingMultiply(denominator, ticksFactor);
    if (ticksPerSecondScaled != 1) {
        const std::int64_t half = Divide(ticksPerSecondScaled, numerator) >> 1;
        if (magnitude < WrappingSubtract(kMaximumTicks, half)) {
            magnitude = WrappingAdd(magnitude, half);
        }
    }
    std::int64_t frames = 0;
    if (IsBelowMaximumOver(magnitude, numerator)) {
        const std::int64_t scaled = WrappingMultiply(magnitude, numerator);
        // One division instead of two where the divisor product is exact; truncation nests.
        std::int64_t divisor = 0;
        const bool singleDivision =
            denominator > 0 && ticksFactor > 0 && !__builtin_mul_overflow(denominator, ticksFactor, &divisor);
        frames = singleDivision ? Divide(scaled, divisor) : Divide(Divide(scaled, denominator), ticksFactor);
    } else {
        const std::int64_t ticksPerFrame = Divide(WrappingAdd(numerator / 2, ticksFactor), numerator);
        if (ticksPerFrame == 0) {
            ThrowUnusableRate(kWriterName, "less than one tick per frame", numerator, denominator, ticksPerSecond,
                              TicksSubject(ticks));
        }
        frames = Divide(Divide(magnitude, ticksPerFrame), denominator);
    }
    return negative ? WrappingNegate(frames) : frames;
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

void ReadRate(std::string_view rate, char separator, std::int64_t& numerator, std::int64_t& denominator) noexcept {
    const SplitText parts = SplitAtSoleSeparator(rate, separator);
    if (parts.isSplit) {
        denominator = ParseInteger(parts.after);
        numerator = ParseInteger(parts.before);
    } else {
        numerator = ParseInteger(rate);
    }
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
    const std::int64_t frames =
        AtCommonRate(numerator, denominator, ticksPerSecond, [ticks](auto rateN, auto rateD, auto rateTicks) {
            return TicksToFrames(ticks, rateN, rateD, rateTicks);
        });
    char* last = WriteInteger(first, frames);
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
