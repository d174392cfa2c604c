#include <gtest/gtest.h>

#include <string>

#include <kelcore/UTF.hpp>

using kelcore::UTF16String;

namespace {

struct ValidCase {
    std::string utf8;
    std::u16string utf16;
};

const ValidCase kValid[] = {
    {"", u""},
    {"plain ASCII", u"plain ASCII"},
    {"\xC3\xA9t\xC3\xA9", u"\u00E9t\u00E9"},                       // two-byte
    {"\xE2\x82\xAC 5", u"\u20AC 5"},                                // three-byte
    {"\xF0\x9F\x8E\xAC", u"\U0001F3AC"},                            // four-byte, surrogate pair
    {"a\xF4\x8F\xBF\xBFz", u"a\U0010FFFFz"},                        // highest code point
    {std::string("nul\0in", 6), std::u16string(u"nul\0in", 6)},       // embedded nul
};

struct InvalidUTF8Case {
    std::string input;
    std::u16string replaced;
    std::size_t offset;
};

const InvalidUTF8Case kInvalidUTF8[] = {
    {"\xFF", u"\uFFFD", 0},                                   // never a lead byte
    {"ab\x80", u"ab\uFFFD", 2},                               // stray trail byte
    {"x\xC3", u"x\uFFFD", 1},                                 // truncated at the end
    {"\xE2\x82z", u"\uFFFDz", 0},                             // truncated in the middle
    {"\xC0\xAF!", u"\uFFFD!", 0},                             // overlong slash
    {"\xED\xA0\x80", u"\uFFFD", 0},                           // encoded surrogate
    {"ok\xF4\x90\x80\x80", u"ok\uFFFD", 2},                   // beyond U+10FFFF
    {"\xC3\xA9\xFF\xE2\x82\xAC\xFE", u"\u00E9\uFFFD\u20AC\uFFFD", 2},  // two faults
};

struct InvalidUTF16Case {
    std::u16string input;
    std::string replaced;
    std::size_t offset;
};

const InvalidUTF16Case kInvalidUTF16[] = {
    {std::u16string{0xD83C}, "\xEF\xBF\xBD", 0},                             // lone lead at end
    {std::u16string{u'a', 0xD83C, u'b'}, "a\xEF\xBF\xBD" "b", 1},            // lead without trail
    {std::u16string{u'a', 0xDFAC}, "a\xEF\xBF\xBD", 1},                      // lone trail
    {std::u16string{0xDFAC, 0xD83C}, "\xEF\xBF\xBD\xEF\xBF\xBD", 0},         // reversed pair
    {std::u16string{0xD83C, 0xDFAC, 0xD83C}, "\xF0\x9F\x8E\xAC\xEF\xBF\xBD", 2},  // pair then lone lead
};

}  // namespace

TEST(KelcoreUTF, ValidTextRoundTrips) {
    for (const ValidCase& test : kValid) {
        SCOPED_TRACE(testing::PrintToString(test.utf8));
        int code = -1;
        std::size_t offset = 99;
        UTF16String utf16 = kelcore::UTF8to16(test.utf8, &code, &offset);
        EXPECT_EQ(std::u16string(utf16.begin(), utf16.end()), test.utf16);
        EXPECT_EQ(code, kelcore::kUTFError_None);
        EXPECT_EQ(offset, test.utf8.size());
        EXPECT_EQ(kelcore::UTF16to8(utf16, &code), test.utf8);
        EXPECT_EQ(code, kelcore::kUTFError_None);
    }
}

TEST(KelcoreUTF, InvalidUTF8IsReplacedOrReported) {
    for (const InvalidUTF8Case& test : kInvalidUTF8) {
        SCOPED_TRACE(testing::PrintToString(test.input));
        UTF16String replaced = kelcore::UTF8to16(test.input);
        EXPECT_EQ(std::u16string(replaced.begin(), replaced.end()), test.replaced);

        int code = kelcore::kUTFError_None;
        std::size_t offset = 0;
        UTF16String strict = kelcore::UTF8to16(test.input, &code, &offset);
        EXPECT_EQ(code, kelcore::kUTFError_InvalidUTF8);
        EXPECT_EQ(offset, test.offset);
        EXPECT_EQ(strict, kelcore::UTF8to16(test.input.substr(0, test.offset)));
    }
}

TEST(KelcoreUTF, InvalidUTF16IsReplacedOrReported) {
    for (const InvalidUTF16Case& test : kInvalidUTF16) {
        SCOPED_TRACE(test.replaced);
        EXPECT_EQ(kelcore::UTF16to8(test.input), test.replaced);

        int code = kelcore::kUTFError_None;
        std::size_t offset = 0;
        std::string strict = kelcore::UTF16to8(test.input, &code, &offset);
        EXPECT_EQ(code, kelcore::kUTFError_InvalidUTF16);
        EXPECT_EQ(offset, test.offset);
        EXPECT_EQ(strict, kelcore::UTF16to8(test.input.substr(0, test.offset)));
    }
}

TEST(KelcoreUTF, OffsetAloneDoesNotStopTheConversion) {
    std::size_t offset = 0;
    UTF16String replaced = kelcore::UTF8to16("a\xFF" "b", nullptr, &offset);
    EXPECT_EQ(offset, 1u);
    EXPECT_EQ(std::u16string(replaced.begin(), replaced.end()), u"a\uFFFDb");
}
