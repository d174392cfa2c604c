#pragma once
// Tick times in the frame notation: a frame count, optionally followed by the
// rate it counts in ("90", "90f25", "1001f30000s1001"), or "maximum".

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "timestrings/FrameArithmetic.hpp"
#include "timestrings/IntegerText.hpp"

namespace keltemporalxmp {
namespace timestrings {

// `numerator` / `denominator` hold the default rate on entry and receive the
// rate the text carries, if any.
std::int64_t ReadTimeText(std::string_view text, std::int64_t* numerator, std::int64_t* denominator,
                          std::int64_t ticksPerSecond, Reduction reduction);

// The rate of a time text ("90f30000s1001"): the number after its "f", when
// the text has exactly one, and the number after the "s", when exactly one
// follows the "f".
struct RateText {
    bool hasRate = false;
    bool hasDenominator = false;
    std::int64_t numerator = 0;
    std::int64_t denominator = 0;
};

// One pass from `from` (a frame count holds neither letter, so it can be
// skipped): the number after each letter is read as the letter is met, and the
// scan goes on after its digits.
inline RateText ReadRateText(std::string_view text, std::size_t from) noexcept {
    std::size_t fCount = 0;
    std::size_t sCount = 0;  // since the last "f"
    RateText rate;
    for (std::size_t i = from; i < text.size();) {
        const char letter = text[i++];
        if (letter != 'f' && letter != 's') {
            continue;
        }
        const LeadingInteger number = ParseLeadingInteger(text.substr(i));
        i += number.end;
        if (letter == 'f') {
            ++fCount;
            sCount = 0;
            rate.numerator = number.value;
        } else {
            ++sCount;
            rate.denominator = number.value;
        }
    }
    rate.hasRate = fCount == 1;
    rate.hasDenominator = rate.hasRate && sCount == 1;
    return rate;
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
