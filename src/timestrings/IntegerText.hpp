#pragma once
// The one integer notation of time, rate and part strings.

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace keltemporalxmp {
namespace timestrings {

// "-9223372036854775808"
inline constexpr std::size_t kMaxIntegerTextLength = 20;

// A number read from the start of a text, and where reading stopped.
struct LeadingInteger {
    std::int64_t value;
    std::size_t end;
};

// ParseLeadingInteger for numbers that may leave the range: every digit checked.
inline LeadingInteger ParseCheckedInteger(std::string_view text, bool negative) noexcept {
    // The magnitude of the most negative value ends in 8, that of the largest in 7.
    constexpr std::uint64_t kLimitTens = 922337203685477580;
    const unsigned limitUnits = negative ? 8 : 7;
    std::uint64_t magnitude = 0;
    std::size_t i = negative ? 1 : 0;
    for (; i < text.size(); ++i) {
        const unsigned digit = static_cast<unsigned>(static_cast<unsigned char>(text[i])) - '0';
        if (digit > 9) {
            break;
        }
        if (magnitude > kLimitTens || (magnitude == kLimitTens && digit > limitUnits)) {
            return {0, i};
        }
        magnitude = magnitude * 10 + digit;
    }
    return {static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude), i};
}

// An optional "-" and decimal digits, up to the first other character.
// Never fails: no digits, or a value outside the signed 64-bit range, read as 0
// (reading then stops early, inside the digits).
// Inline: it runs for every number of every time string.
inline LeadingInteger ParseLeadingInteger(std::string_view text) noexcept {
    const bool negative = !text.empty() && text.front() == '-';
    const std::size_t first = negative ? 1 : 0;
    std::size_t i = first;
    std::uint64_t magnitude = 0;  // wraps past 19 digits, which are read again below
    for (; i < text.size(); ++i) {
        const unsigned digit = static_cast<unsigned>(static_cast<unsigned char>(text[i])) - '0';
        if (digit > 9) {
            break;
        }
        magnitude = magnitude * 10 + digit;
    }
    // 18 digits stay below the limit; only longer numbers need the checks.
    constexpr std::size_t kUncheckedDigits = 18;
    if (i - first > kUncheckedDigits) {
        return ParseCheckedInteger(text, negative);
    }
    return {static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude), i};
}

inline std::int64_t ParseInteger(std::string_view text) noexcept {
    return ParseLeadingInteger(text).value;
}

// Writes the decimal form at `first` (room for kMaxIntegerTextLength) and
// returns the end. Inline: it runs for every number of every time string.
inline char* WriteInteger(char* first, std::int64_t value) noexcept {
    return std::to_chars(first, first + kMaxIntegerTextLength, value).ptr;
}

// The two pieces around a separator that occurs exactly once; `occurs` tells
// a separator met more than once from none at all.
struct SplitText {
    bool isSplit = false;
    bool occurs = false;
    std::string_view before;
    std::string_view after;
};
inline SplitText SplitAtSoleSeparator(std::string_view text, char separator) noexcept {
    const std::size_t at = text.find(separator);
    if (at == std::string_view::npos) {
        return {};
    }
    if (text.find(separator, at + 1) != std::string_view::npos) {
        return {false, true, {}, {}};
    }
    return {true, true, text.substr(0, at), text.substr(at + 1)};
}

}  // namespace timestrings
}  // namespace keltemporalxmp
