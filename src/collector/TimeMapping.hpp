#pragma once
// Spans, intervals and mappings of the collector's timeline, under the
// saturating tick policy: the unspecified time is absorbing.

#include <cstdint>

#include "timestrings/TickArithmetic.hpp"

namespace keltemporalxmp {
namespace collector {

using timestrings::kUnspecifiedTicks;
using timestrings::SaturatingAdd;
using timestrings::SaturatingNegate;
using timestrings::SaturatingSubtract;

// A span held as start and duration; a negative duration runs backwards.
struct Span {
    std::int64_t m_start = 0;
    std::int64_t m_duration = kUnspecifiedTicks;

    std::int64_t End() const { return SaturatingAdd(m_start, m_duration); }
    // The same times, forwards.
    Span Forwards() const;
    // Starts at its end and runs back to its start.
    Span Reversed() const;
};

// Closed, m_low <= m_high.
struct Interval {
    std::int64_t m_low = 0;
    std::int64_t m_high = 0;

    static Interval Between(std::int64_t a, std::int64_t b);
    // Between a and b, one tick long when they are equal: what overlap tests
    // compare, so that a zero-length marker still meets its surroundings.
    static Interval ForOverlap(std::int64_t a, std::int64_t b);
    static Interval Of(const Span& span) { return Between(span.m_start, span.End()); }

    // Both ways strictly: touching ends do not overlap.
    bool Overlaps(const Interval& other) const { return m_low < other.m_high && other.m_low < m_high; }
    std::int64_t Clamp(std::int64_t time) const;
    // The part inside `other`; zero-length at the nearer end when none is.
    Interval ClampedInto(const Interval& other) const;
    Interval Intersection(const Interval& other) const;
    Span AsSpan() const { return {m_low, SaturatingSubtract(m_high, m_low)}; }
};

// Maps a time of a source span that starts at m_fromStart onto a target that
// starts at m_toStart, scaled; the result is truncated toward zero.
struct Mapping {
    std::int64_t m_fromStart = 0;
    std::int64_t m_toStart = 0;
    double m_scale = 1.0;

    std::int64_t operator()(std::int64_t time) const;
};

}  // namespace collector
}  // namespace keltemporalxmp
