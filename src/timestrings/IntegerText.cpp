#include "timestrings/IntegerText.hpp"

#include <charconv>

namespace keltemporalxmp::timestrings {

char* WriteInteger(char* first, std::int64_t value) noexcept {
    return std::to_chars(first, first + kMaxIntegerTextLength, value).ptr;
}

}  // namespace keltemporalxmp::timestrings
