#pragma once
// The one integer notation of time, rate and part strings.

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace keltemporalxmp::timestrings {

// "-9223372036854775808"
inline constexpr std::size_t kMaxIntegerTextLength = 20;

// An optional "-" and decimal digits, up to the first other character.
// Never fails: no digits, or a value outside the signed 64-bit range, read as 0.
std::int64_t ParseInteger(std::string_view text) noexcept;

// Writes the decimal form at `first` (room for kMaxIntegerTextLength) and
// returns the end.
char* WriteInteger(char* first, std::int64_t value) noexcept;

// The two pieces around a separator that occurs exactly once.
struct SplitText {
    bool isSplit = false;
    std::string_view before;
    std::string_view after;
};
SplitText SplitAtSoleSeparator(std::string_view text, char separator) noexcept;

}  // namespace keltemporalxmp::timestrings
