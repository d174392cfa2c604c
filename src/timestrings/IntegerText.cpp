#include "timestrings/IntegerText.hpp"

#include <charconv>

namespace keltemporalxmp::timestrings {

std::int64_t ParseInteger(std::string_view text) noexcept {
    const bool negative = !text.empty() && text.front() == '-';
    // The magnitude of the most negative value is one more than the largest.
    const std::uint64_t limit = negative ? std::uint64_t{1} << 63 : (std::uint64_t{1} << 63) - 1;
    std::uint64_t magnitude = 0;
    for (std::size_t i = negative ? 1 : 0; i < text.size(); ++i) {
        const unsigned digit = static_cast<unsigned>(static_cast<unsigned char>(text[i])) - '0';
        if (digit > 9) {
            break;
        }
        if (magnitude > (limit - digit) / 10) {
            return 0;
        }
        magnitude = magnitude * 10 + digit;
    }
    return static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude);
}

char* WriteInteger(char* first, std::int64_t value) noexcept {
    return std::to_chars(first, first + kMaxIntegerTextLength, value).ptr;
}

SplitText SplitAtSoleSeparator(std::string_view text, char separator) noexcept {
    const std::size_t at = text.find(separator);
    if (at == std::string_view::npos || text.find(separator, at + 1) != std::string_view::npos) {
        return {};
    }
    return {true, text.substr(0, at), text.substr(at + 1)};
}

}  // namespace keltemporalxmp::timestrings
