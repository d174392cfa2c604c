#include <gtest/gtest.h>

#include <string>

#include <kelcore/UTF.hpp>

namespace {

// Each invalid input with its replaced form and the offset of its first bad unit.
const std::tuple<std::string, std::u16string, std::size_t> kInvalidUTF8[] = {
    {"\xFF", u"\uFFFD", 0},
    {"ab\x80", u"ab\uFFFD", 2},
    {"x\xC3", u"x\uFFFD", 1},
    {"\xE2\x82z", u"\uFFFDz", 0},
    {"\xC0\xAF!", u"\uFFFD!", 0},
    {"\xED\xA0\x80", u"\uFFFD", 0},
    {"ok\xF4\x90\x80\x80", u"ok\uFFFD", 2},
    {"\xC3\xA9\xFF\xE2\x82\xAC\xFE", u"\u00E9\uFFFD\u20AC\uFFFD", 2},
};

const std::tuple<std::u16string, std::string, std::size_t> kInvalidUTF16[] = {
    {{0xD83C}, "\xEF\xBF\xBD", 0},
    {{u'a', 0xD83C, u'b'},
     "a\xEF\xBF\xBD"
     "b",
     1},
    {{u'a', 0xDFAC}, "a\xEF\xBF\xBD", 1},
    {{0xDFAC, 0xD83C}, "\xEF\xBF\xBD\xEF\xBF\xBD", 0},
    {{0xD83C, 0xDFAC, 0xD83C}, "\xF0\x9F\x8E\xAC\xEF\xBF\xBD", 2},
};

}  // namespace

// Lenient, invalid input is replaced; strict, the conversion stops at the first bad unit.
template <class Input, class Output>
void ExpectReplacedOrReported(Output (*convert)(Input, int*, std::size_t*), Input input, const Output& replaced,
                              std::size_t badOffset, int expectedCode) {
    EXPECT_EQ(convert(input, nullptr, nullptr), replaced);
    int code = kelcore::kUTFError_None;
    std::size_t offset = 0;
    const Output strict = convert(input, &code, &offset);
    EXPECT_EQ(code, expectedCode);
    EXPECT_EQ(offset, badOffset);
    EXPECT_EQ(strict, convert(input.substr(0, badOffset), nullptr, nullptr));
}

TEST(KelcoreUTF, InvalidTextIsReplacedOrReported) {
    for (const auto& [input, replaced, badOffset] : kInvalidUTF8) {
        SCOPED_TRACE(testing::PrintToString(input));
        ExpectReplacedOrReported(&kelcore::UTF8to16, std::string_view(input),
                                 kelcore::UTF16String(replaced.begin(), replaced.end()), badOffset,
                                 kelcore::kUTFError_InvalidUTF8);
    }
    for (const auto& [input, replaced, badOffset] : kInvalidUTF16) {
        SCOPED_TRACE(replaced);
        ExpectReplacedOrReported(&kelcore::UTF16to8, std::u16string_view(input), replaced, badOffset,
                                 kelcore::kUTFError_InvalidUTF16);
    }
}
