#include "collector/TimeMapping.hpp"

#include <algorithm>
#include <cmath>

namespace keltemporalxmp::collector {

Span Span::Forwards() const {
    return m_duration < 0 ? Reversed() : *this;
}

Span Span::Reversed() const {
    return {End(), SaturatingNegate(m_duration)};
}

Interval Interval::Between(std::int64_t a, std::int64_t b) {
    return {std::min(a, b), std::max(a, b)};
}

Interval Interval::ForOverlap(std::int64_t a, std::int64_t b) {
    return a == b ? Between(a, SaturatingAdd(b, 1)) : Between(a, b);
}

std::int64_t Interval::Clamp(std::int64_t time) const {
    return std::clamp(time, m_low, m_high);
}

Interval Interval::ClampedInto(const Interval& other) const {
    return {other.Clamp(m_low), other.Clamp(m_high)};
}

Interval Interval::Intersection(const Interval& other) const {
    const std::int64_t low = std::max(m_low, other.m_low);
    return {low, std::max(low, std::min(m_high, other.m_high))};
}

std::int64_t Mapping::operator()(std::int64_t time) const {
    std::int64_t offset = SaturatingSubtract(time, m_fromStart);
    if (offset == kUnspecifiedTicks || m_scale == 1.0) {
        return SaturatingAdd(offset, m_toStart);
    }
    // Products outside the 64-bit range (or not numbers) have no time.
    constexpr double kRangeLimit = 9223372036854775808.0;  // 2^63
    const double scaled = std::trunc(static_cast<double>(offset) * m_scale);
    if (!(scaled >= -kRangeLimit && scaled < kRangeLimit)) {
        return kUnspecifiedTicks;
    }
    return SaturatingAdd(static_cast<std::int64_t>(scaled), m_toStart);
}

}  // namespace keltemporalxmp::collector
