#pragma once
// The arithmetic between frame counts and ticks, with its rounding rules.
// Inline, always: each common rate gets its own instance, in which the rate is
// a constant (see CommonRates.hpp).

#include <cstdint>
#include <optional>

#include "timestrings/TickArithmetic.hpp"

namespace keltemporalxmp {
namespace timestrings {

// How the factor ticks-per-second / numerator is simplified before use. The
// two readers differ here on purpose, which only shows for negative numerators.
enum class Reduction { kAnyNumeratorButOne, kNumeratorsAboveOne };

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

// Nothing when the rate has less than one tick per frame and the tick count is
// too large to scale exactly.
[[gnu::always_inline]] inline std::optional<std::int64_t> TicksToFrames(std::int64_t ticks, std::int64_t numerator,
                                                                        std::int64_t denominator,
                                                                        std::int64_t ticksPerSecond) {
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
            return std::nullopt;
        }
        frames = Divide(Divide(magnitude, ticksPerFrame), denominator);
    }
    return negative ? WrappingNegate(frames) : frames;
}

}  // namespace timestrings
}  // namespace keltemporalxmp
