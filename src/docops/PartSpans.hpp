#pragma once
// An ingredient's parts as numbers: the span used from the source (from-part),
// where it lands (to-part), and whether the mapping runs backwards.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "timestrings/TickArithmetic.hpp"

namespace keltemporalxmp {
namespace docops {

using timestrings::kUnspecifiedTicks;

// A parsed part string; rates default to 1/1, an absent duration is unspecified.
struct PartSpan {
    std::int64_t m_start = 0;
    std::int64_t m_startNumerator = 1;
    std::int64_t m_startDenominator = 1;
    std::int64_t m_duration = kUnspecifiedTicks;
    std::int64_t m_durationNumerator = 1;
    std::int64_t m_durationDenominator = 1;
    std::string m_path;
};

// Raises kXMPErr_BadValue when a rate in the text cannot convert its time.
PartSpan ParsePartSpan(const std::string& part);
// Null when the text cannot be read.
std::optional<PartSpan> TryParsePartSpan(const std::string& part);
std::string ComposePart(const PartSpan& span);

// The key an ingredient is kept under: its instance ID and the start and
// duration of its from-part, as a part string.
std::string IngredientKey(const std::string& instanceID, const PartSpan& from);

bool IsReversedMapping(std::string_view mapping);
// "linear" and empty become "linear-reversed" and back; anything else stays.
std::string FlippedMapping(std::string_view mapping);

// A reversed span (negative duration) is held forwards: its start moves to
// its other end and the mapping flips.
void NormaliseReversedSpan(std::int64_t& start, std::int64_t& duration, std::string& mapping);

struct IngredientSpans {
    PartSpan m_from;
    PartSpan m_to;
    bool m_reversed = false;
};

// Where a nested ingredient (its spans relative to the outer ingredient's
// document) lands when carried through the outer ingredient onto the outer
// document's timeline: only the part inside the outer used span, from-part on
// the nested source's own timeline, to-part on the outer document's. Null
// when nothing of it is used.
std::optional<IngredientSpans> MapThrough(const IngredientSpans& outer, const IngredientSpans& nested);

}  // namespace docops
}  // namespace keltemporalxmp
