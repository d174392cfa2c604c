#include "docops/PartSpans.hpp"

#include <keltemporalxmp/docops.hpp>

#include <algorithm>
#include <cmath>

#include "timestrings/TickArithmetic.hpp"

namespace keltemporalxmp::docops {
namespace {

using timestrings::WrappingAdd;
using timestrings::WrappingSubtract;

// [start, end); no end when unbounded.
struct Range {
    std::int64_t m_start = 0;
    std::optional<std::int64_t> m_end;
};

// A missing duration on one side takes the other side's.
std::int64_t UsedLength(const PartSpan& side, const PartSpan& otherSide) {
    return side.m_duration != kUnspecifiedTicks ? side.m_duration : otherSide.m_duration;
}

Range RangeOf(std::int64_t start, std::int64_t length) {
    std::int64_t end = 0;
    if (length == kUnspecifiedTicks || __builtin_add_overflow(start, length, &end)) {
        return {start, std::nullopt};
    }
    return {start, end};
}

// Ticks of `to` per tick of `from`; 1 unless both durations are known.
double Ratio(const PartSpan& to, const PartSpan& from) {
    if (to.m_duration == kUnspecifiedTicks || from.m_duration == kUnspecifiedTicks || from.m_duration == 0) {
        return 1.0;
    }
    return static_cast<double>(to.m_duration) / static_cast<double>(from.m_duration);
}

// Truncated toward zero, kept inside the range of times that are specified.
std::int64_t Scaled(std::int64_t ticks, double ratio) {
    if (ratio == 1.0) {
        return ticks;
    }
    constexpr double kLimit = 9.2e18;
    const double product = std::trunc(static_cast<double>(ticks) * ratio);
    return static_cast<std::int64_t>(std::clamp(product, -kLimit, kLimit));
}

// How far into `range` the piece [pieceStart, pieceEnd) begins, counted from
// the far end when the mapping runs backwards (and the range has an end).
std::int64_t OffsetInto(const Range& range, std::int64_t pieceStart, const std::optional<std::int64_t>& pieceEnd,
                        bool reversed) {
    if (reversed && range.m_end && pieceEnd) {
        return WrappingSubtract(*range.m_end, *pieceEnd);
    }
    return WrappingSubtract(pieceStart, range.m_start);
}

}  // namespace

PartSpan ParsePartSpan(const std::string& part) {
    PartSpan span;
    XMPDocOpsTemporal::ParsePart(part.c_str(), &span.m_start, &span.m_startNumerator, &span.m_startDenominator,
                                 &span.m_duration, &span.m_durationNumerator, &span.m_durationDenominator,
                                 kUnspecifiedTicks, &span.m_path);
    return span;
}

// A part string of another writer with a zero rate cannot be converted; its
// ingredient is still read, just without that span.
std::optional<PartSpan> TryParsePartSpan(const std::string& part) {
    try {
        return ParsePartSpan(part);
    } catch (const XMP_Error& error) {
        if (error.GetID() != kXMPErr_BadValue) {
            throw;
        }
        return std::nullopt;
    }
}

std::string ComposePart(const PartSpan& span) {
    std::string part;
    XMPDocOpsTemporal::CreatePartString(&part, span.m_start, span.m_startNumerator, span.m_startDenominator,
                                        span.m_duration, span.m_durationNumerator, span.m_durationDenominator,
                                        kUnspecifiedTicks, span.m_path.c_str());
    return part;
}

std::string IngredientKey(const std::string& instanceID, const PartSpan& from) {
    std::string key;
    XMPDocOpsTemporal::CreatePartString(&key, from.m_start, 0, 0, from.m_duration, 0, 0, kUnspecifiedTicks,
                                        instanceID.c_str());
    return key;
}

bool IsReversedMapping(std::string_view mapping) {
    return mapping == "linear-reversed";
}

std::string FlippedMapping(std::string_view mapping) {
    if (mapping.empty() || mapping == "linear") {
        return "linear-reversed";
    }
    return std::string(IsReversedMapping(mapping) ? "linear" : mapping);
}

void NormaliseReversedSpan(std::int64_t& start, std::int64_t& duration, std::string& mapping) {
    if (duration >= 0) {
        return;
    }
    start = WrappingAdd(start, duration);
    duration = duration == std::numeric_limits<std::int64_t>::min() ? kUnspecifiedTicks : -duration;
    mapping = FlippedMapping(mapping);
}

std::optional<IngredientSpans> MapThrough(const IngredientSpans& outer, const IngredientSpans& nested) {
    // Both ranges lie on the outer ingredient's document's timeline.
    const Range used = RangeOf(outer.m_from.m_start, UsedLength(outer.m_from, outer.m_to));
    const Range placed = RangeOf(nested.m_to.m_start, UsedLength(nested.m_to, nested.m_from));
    const std::int64_t start = std::max(used.m_start, placed.m_start);
    std::optional<std::int64_t> end = used.m_end;
    if (!end || (placed.m_end && *placed.m_end < *end)) {
        end = placed.m_end;
    }
    if (end && *end <= start) {
        return std::nullopt;
    }
    const std::int64_t length = end ? WrappingSubtract(*end, start) : kUnspecifiedTicks;

    IngredientSpans mapped;
    mapped.m_reversed = outer.m_reversed != nested.m_reversed;
    const double sourcePerPlaced = Ratio(nested.m_from, nested.m_to);
    mapped.m_from = nested.m_from;
    mapped.m_from.m_start =
        WrappingAdd(nested.m_from.m_start, Scaled(OffsetInto(placed, start, end, nested.m_reversed), sourcePerPlaced));
    mapped.m_from.m_duration = end ? Scaled(length, sourcePerPlaced) : kUnspecifiedTicks;

    const double targetPerUsed = Ratio(outer.m_to, outer.m_from);
    mapped.m_to = outer.m_to;
    mapped.m_to.m_start =
        WrappingAdd(outer.m_to.m_start, Scaled(OffsetInto(used, start, end, outer.m_reversed), targetPerUsed));
    mapped.m_to.m_duration = end ? Scaled(length, targetPerUsed) : kUnspecifiedTicks;
    return mapped;
}

}  // namespace keltemporalxmp::docops
