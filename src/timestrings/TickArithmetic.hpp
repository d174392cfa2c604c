#pragma once
// Arithmetic on tick counts, under one of two named policies:
// - wrapping: the time conversions accept any input; where a result leaves the
//   64-bit range it wraps, never becoming undefined behaviour;
// - saturating: the timeline arithmetic of spans and mappings; the unspecified
//   time (an unbounded range or span) is absorbing, and a result that would
//   leave the range becomes it.
// Division here cannot trap.

#include <cstdint>
#include <limits>

namespace keltemporalxmp::timestrings {

inline constexpr std::int64_t kMaximumTicks = std::numeric_limits<std::int64_t>::max();
// The time of an unbounded range or span: the largest tick count.
inline constexpr std::int64_t kUnspecifiedTicks = kMaximumTicks;

// --- Wrapping ---------------------------------------------------------------

constexpr std::int64_t WrappingAdd(std::int64_t a, std::int64_t b) noexcept {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) + static_cast<std::uint64_t>(b));
}

constexpr std::int64_t WrappingSubtract(std::int64_t a, std::int64_t b) noexcept {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) - static_cast<std::uint64_t>(b));
}

constexpr std::int64_t WrappingMultiply(std::int64_t a, std::int64_t b) noexcept {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) * static_cast<std::uint64_t>(b));
}

constexpr std::int64_t WrappingNegate(std::int64_t a) noexcept {
    return WrappingSubtract(0, a);
}

// --- Saturating --------------------------------------------------------------

constexpr std::int64_t SaturatingAdd(std::int64_t a, std::int64_t b) noexcept {
    std::int64_t sum = 0;
    if (a == kUnspecifiedTicks || b == kUnspecifiedTicks || __builtin_add_overflow(a, b, &sum)) {
        return kUnspecifiedTicks;
    }
    return sum;
}

constexpr std::int64_t SaturatingSubtract(std::int64_t a, std::int64_t b) noexcept {
    std::int64_t difference = 0;
    if (a == kUnspecifiedTicks || b == kUnspecifiedTicks || __builtin_sub_overflow(a, b, &difference)) {
        return kUnspecifiedTicks;
    }
    return difference;
}

constexpr std::int64_t SaturatingNegate(std::int64_t a) noexcept {
    return a == kUnspecifiedTicks || a == std::numeric_limits<std::int64_t>::min() ? kUnspecifiedTicks : -a;
}

// --- Division and bounds ------------------------------------------------------

// Truncating division; the one overflowing case (minimum / -1) wraps.
// The divisor must not be 0. Dividing by 1, the common case once a rate is
// reduced, skips the slow division instruction.
constexpr std::int64_t Divide(std::int64_t dividend, std::int64_t divisor) noexcept {
    if (divisor == 1) {
        return dividend;
    }
    return divisor == -1 ? WrappingNegate(dividend) : dividend / divisor;
}

// `value > kMaximumTicks / divisor` (truncating) for a non-zero divisor; where
// both are positive it is a multiplication overflow test, without a division.
constexpr bool IsAboveMaximumOver(std::int64_t value, std::int64_t divisor) noexcept {
    if (value >= 0 && divisor > 0) {
        std::int64_t product = 0;
        return __builtin_mul_overflow(value, divisor, &product);
    }
    return value > kMaximumTicks / divisor;
}

// `value < kMaximumTicks / divisor` (truncating) for a non-zero divisor.
constexpr bool IsBelowMaximumOver(std::int64_t value, std::int64_t divisor) noexcept {
    return value < kMaximumTicks && !IsAboveMaximumOver(value + 1, divisor);
}

// Only 0 is a multiple of 0.
constexpr bool IsWholeMultiple(std::int64_t value, std::int64_t step) noexcept {
    if (step == 0) {
        return value == 0;
    }
    return step == 1 || step == -1 || value % step == 0;
}

}  // namespace keltemporalxmp::timestrings
