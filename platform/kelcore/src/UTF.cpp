#include <kelcore/UTF.hpp>

#include <iterator>

#include <utf8.h>

namespace kelcore {
namespace {

constexpr char kReplacementUTF8[] = "\xEF\xBF\xBD";

bool IsLeadSurrogate(char16_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool IsTrailSurrogate(char16_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

// The first unit that is a surrogate without its partner, or end.
const char16_t* FindInvalidUTF16(const char16_t* begin, const char16_t* end) {
    for (const char16_t* unit = begin; unit != end; ++unit) {
        if (IsLeadSurrogate(*unit) && unit + 1 != end && IsTrailSurrogate(unit[1])) {
            ++unit;
        } else if (IsLeadSurrogate(*unit) || IsTrailSurrogate(*unit)) {
            return unit;
        }
    }
    return end;
}

// Fills the caller's outputs; returns whether the caller asked for strict conversion.
template <typename Unit>
bool ReportFirstError(const Unit* begin, const Unit* bad, const Unit* end, int errorKind, int* errorCode,
                      std::size_t* errorOffset) {
    if (errorOffset != nullptr) *errorOffset = static_cast<std::size_t>(bad - begin);
    if (errorCode != nullptr) *errorCode = bad == end ? kUTFError_None : errorKind;
    return errorCode != nullptr;
}

}  // namespace

UTF16String UTF8to16(std::string_view text, int* errorCode, std::size_t* errorOffset) {
    const char* begin = text.data();
    const char* end = begin + text.size();
    const char* bad = utf8::find_invalid(begin, end);
    const bool strict = ReportFirstError(begin, bad, end, kUTFError_InvalidUTF8, errorCode, errorOffset);

    UTF16String result;
    result.reserve(text.size());
    if (bad == end || strict) {
        utf8::unchecked::utf8to16(begin, bad, std::back_inserter(result));
        return result;
    }
    std::string repaired(begin, bad);
    utf8::replace_invalid(bad, end, std::back_inserter(repaired));
    utf8::unchecked::utf8to16(repaired.begin(), repaired.end(), std::back_inserter(result));
    return result;
}

std::string UTF16to8(std::u16string_view text, int* errorCode, std::size_t* errorOffset) {
    const char16_t* begin = text.data();
    const char16_t* end = begin + text.size();
    const char16_t* bad = FindInvalidUTF16(begin, end);
    const bool strict = ReportFirstError(begin, bad, end, kUTFError_InvalidUTF16, errorCode, errorOffset);

    std::string result;
    result.reserve(text.size());
    utf8::unchecked::utf16to8(begin, bad, std::back_inserter(result));
    while (bad != end && !strict) {
        result += kReplacementUTF8;
        const char16_t* next = bad + 1;
        bad = FindInvalidUTF16(next, end);
        utf8::unchecked::utf16to8(next, bad, std::back_inserter(result));
    }
    return result;
}

}  // namespace kelcore
