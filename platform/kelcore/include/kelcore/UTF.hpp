#pragma once
// Conversions between UTF-8 and UTF-16 text.
//
// Without errorCode, every invalid piece of the input becomes U+FFFD and the
// conversion runs to the end. With errorCode, the conversion is strict: it
// stops at the first invalid unit and returns the text converted before it;
// *errorCode tells what was wrong (kUTFError_None when nothing was). When
// given, *errorOffset receives the offset, in input units, of the first
// invalid unit, or the input length when there is none (in both modes).

#include <cstddef>
#include <string>
#include <string_view>

#include <kelcore/Strings.hpp>
#include <keltemporalxmp/export.hpp>

namespace kelcore {

enum _utfErrorEnum : int {
    kUTFError_None = 0,
    kUTFError_InvalidUTF8 = 1,   // bad lead or trail byte, overlong, truncated, surrogate or out of range
    kUTFError_InvalidUTF16 = 2,  // a surrogate without its partner
};

KELTXMP_API UTF16String UTF8to16(std::string_view text, int* errorCode = nullptr, std::size_t* errorOffset = nullptr);

KELTXMP_API std::string UTF16to8(std::u16string_view text, int* errorCode = nullptr,
                                 std::size_t* errorOffset = nullptr);

}  // namespace kelcore
