#pragma once
// Tick times in the frame notation: a frame count, optionally followed by the
// rate it counts in ("90", "90f25", "1001f30000s1001"), or "maximum".

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "timestrings/IntegerText.hpp"

namespace keltemporalxmp {
// Hidden: internal calls bind directly instead of through the export table.
namespace [[gnu::visibility("hidden")]] timestrings {

// How the factor ticks-per-second / numerator is simplified before use. The
// two readers differ here on purpose, which only shows for negative numerators.
enum class Reduction { kAnyNumeratorButOne, kNumeratorsAboveOne };

// `numerator` / `denominator` hold the default rate on entry and receive the
// rate the text carries, if any.
std::int64_t ReadTimeText(std::string_view text, std::int64_t* numerator, std::int64_t* denominator,
                          std::int64_t ticksPerSecond, Reduction reduction);

// A numerator, optionally followed by the separator and a denominator; the
// denominator is left alone when there is none.
void ReadRate(std::string_view rate, char separator, std::int64_t& numerator, std::int64_t& denominator) noexcept;

// Where the rate of a time text ("90f30000s1001") starts: after its "f", when
// the text has exactly one; the denominator after the "s", when exactly one
// follows the "f".
struct RateFields {
    bool hasRate = false;
    bool hasDenominator = false;
    std::size_t numeratorAt = 0;
    std::size_t denominatorAt = 0;
};

// One pass, from `from` (a frame count holds neither letter, so it can be skipped).
inline RateFields FindRateFields(std::string_view text, std::size_t from) noexcept {
    std::size_t fCount = 0;
    std::size_t sCount = 0;  // since the last "f"
    RateFields fields;
    for (std::size_t i = from; i < text.size(); ++i) {
        if (text[i] == 'f') {
            ++fCount;
            sCount = 0;
            fields.numeratorAt = i + 1;
        } else if (text[i] == 's') {
            ++sCount;
            fields.denominatorAt = i + 1;
        }
    }
    fields.hasRate = fCount == 1;
    fields.hasDenominator = fields.hasRate && sCount == 1;
    return fields;
}

// Reads the rate that `fields` locate; the denominator is left alone when there is none.
inline void ReadRateFields(std::string_view text, const RateFields& fields, std::int64_t& numerator,
                           std::int64_t& denominator) noexcept {
    numerator = ParseInteger(text.substr(fields.numeratorAt));
    if (fields.hasDenominator) {
        denominator = ParseInteger(text.substr(fields.denominatorAt));
    }
}

// "f", numerator, "s", denominator.
inline constexpr std::size_t kMaxRateTextLength = 2 * kMaxIntegerTextLength + 2;
// Frames, then the rate.
inline constexpr std::size_t kMaxTimeTextLength = kMaxIntegerTextLength + kMaxRateTextLength;

// Writes at `first` (room for kMaxTimeTextLength) and returns the end.
char* WriteTimeText(char* first, std::int64_t ticks, std::int64_t numerator, std::int64_t denominator,
                    std::int64_t ticksPerSecond, bool appendRate);

// Writes "f", the numerator and, unless the denominator is 1, "s" and the
// denominator at `first` (room for kMaxRateTextLength); returns the end.
char* WriteRateText(char* first, std::int64_t numerator, std::int64_t denominator) noexcept;

}  // namespace timestrings
}  // namespace keltemporalxmp
