// The tool's time text and JSON markers under hostile input: every value that
// does not fit 64 bits is refused with a message naming it, never wrapped;
// text of any length or depth is refused before any work grows with it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Errors.hpp"
#include "MarkerJson.hpp"
#include "TimeInput.hpp"

using namespace keltemporalxmp::tool;
using testing::HasSubstr;

namespace {

constexpr std::int64_t kSecond = 254016000000;
constexpr FrameRate kNtsc{30000, 1001};

// The message of the InputError `action` throws, or "" when it throws none.
template <typename Action>
std::string RefusalOf(Action action) {
    try {
        action();
    } catch (const InputError& error) {
        return error.what();
    }
    return "";
}

struct TimeCase {
    std::string text;
    std::optional<FrameRate> rate;
    std::int64_t ticks;
    std::optional<FrameRate> counted;
};

TEST(ToolTimeInput, ReadsEveryNotationUpToTheLargestTickCount) {
    const std::vector<TimeCase> cases = {
        {"90f25", std::nullopt, 90 * kSecond / 25, FrameRate{25, 1}},
        {"90", FrameRate{25, 1}, 90 * kSecond / 25, FrameRate{25, 1}},
        {"90", std::nullopt, 90, std::nullopt},
        {"-25f25", std::nullopt, -kSecond, FrameRate{25, 1}},
        {"1800f30000s1001", std::nullopt, 15256200960000, kNtsc},
        {"3.6s", std::nullopt, 914457600000, std::nullopt},
        {".5", std::nullopt, kSecond / 2, std::nullopt},
        {"-2s", FrameRate{25, 1}, -2 * kSecond, FrameRate{25, 1}},
        {"00:00:03:15", FrameRate{25, 1}, 914457600000, FrameRate{25, 1}},
        {"00:01:00;02", kNtsc, 15256200960000, kNtsc},
        {"-00:10:00;00", kNtsc, -152409447590400, kNtsc},
        {"maximum", std::nullopt, INT64_MAX, std::nullopt},
        // The edges of the tick range.
        {"36310201f1", std::nullopt, 36310201 * kSecond, FrameRate{1, 1}},
        {"9223372036854775807", std::nullopt, INT64_MAX, std::nullopt},
        {"-9223372036854775807f254016000000", std::nullopt, -INT64_MAX, FrameRate{kSecond, 1}},
    };
    for (const TimeCase& c : cases) {
        const UserTime time = ParseUserTime(c.text, c.rate);
        EXPECT_EQ(time.ticks, c.ticks) << c.text;
        EXPECT_EQ(time.rate, c.counted) << c.text;
    }
}

struct RefusalCase {
    std::string text;
    std::optional<FrameRate> rate;
    std::string message;
};

TEST(ToolTimeInput, RefusesWhatDoesNotFitNamingTheValue) {
    const std::vector<RefusalCase> cases = {
        // Once wrapped to -27,420,107.765 s.
        {"999999:59:59:29", kNtsc, "107999999999 frames at f30000s1001 is beyond the 2^63 ticks"},
        {"36310202f1", std::nullopt, "too far from zero"},
        {"-9223372036854775808", std::nullopt, "too far from zero"},
        {"5", FrameRate{1, INT64_MAX}, "5 frames at f1s9223372036854775807"},
        {"999999:59:59:00", FrameRate{INT64_MAX, 1}, "too many frames"},
        {"99999999999999999999", std::nullopt, "'99999999999999999999' does not fit 64 bits"},
        {"90f99999999999999999999", std::nullopt, "does not fit 64 bits"},
        {"90f0", std::nullopt, "zero numerator"},
        {"90f25s0", std::nullopt, "zero denominator"},
        {"90f25s-1", std::nullopt, "frame rate f25s-1 is negative"},
        {"1e999s", std::nullopt, "expected XMP notation"},
        {"5.", std::nullopt, "expected XMP notation"},
        {"", std::nullopt, "expected XMP notation"},
        {"00:00:01:00", std::nullopt, "needs --rate"},
        // Once a stack overflow in the matcher.
        {std::string(100000, '9'), std::nullopt, "(100000 characters) as a time: longer than the 64 characters"},
        {std::string(100000, '9') + "f25", std::nullopt, "longer than"},
    };
    for (const RefusalCase& c : cases) {
        EXPECT_THAT(RefusalOf([&] { ParseUserTime(c.text, c.rate); }), HasSubstr(c.message)) << c.text.substr(0, 40);
    }
}

struct PartCase {
    std::string text;
    std::optional<FrameRate> rate;
    std::string path;
    std::int64_t start;
    std::int64_t duration;
};

TEST(ToolTimeInput, ReadsPartStringsAsTheLibraryDoes) {
    const std::vector<PartCase> cases = {
        {"metadata/time:0d25f25", std::nullopt, "metadata", 0, kSecond},
        {"time:10r35", FrameRate{1, 1}, "", 10 * kSecond, 25 * kSecond},
        {"time:50f25d10f25", std::nullopt, "", 2 * kSecond, 10 * kSecond / 25},
        {"time:5", std::nullopt, "", 5 * kSecond, INT64_MAX},
        {"time:time:0dmaximum", std::nullopt, "", 0, INT64_MAX},
        {"clip.mov", std::nullopt, "clip.mov", 0, INT64_MAX},
    };
    for (const PartCase& c : cases) {
        const UserPart part = ParseUserPart(c.text, c.rate);
        EXPECT_EQ(part.path, c.path) << c.text;
        EXPECT_EQ(part.start.ticks, c.start) << c.text;
        EXPECT_EQ(part.duration.ticks, c.duration) << c.text;
    }
}

TEST(ToolTimeInput, RefusesPartStringsTheLibraryWouldWrapOrReadAsZero) {
    const std::vector<RefusalCase> cases = {
        // Once reported as given and written as another part.
        {"time:100000000000f25d25f25", std::nullopt, "'100000000000f25' as a time: too far from zero"},
        {"time:0d99999999999999999999", std::nullopt, "does not fit 64 bits"},
        {"time:0f25s-1", std::nullopt, "f25s-1 is negative"},
        {"time:-36310201f1r36310201f1", std::nullopt, "end minus its start does not fit"},
        {"time:abc", std::nullopt, "'abc' is not a time in the XMP notation"},
        {"time:1d2d3", std::nullopt, "more than one 'd' or 'r'"},
        {"time:" + std::string(5000, '1'), std::nullopt, "longer than the 4096 characters"},
    };
    for (const RefusalCase& c : cases) {
        EXPECT_THAT(RefusalOf([&] { ParseUserPart(c.text, c.rate); }), HasSubstr(c.message)) << c.text.substr(0, 40);
    }
}

TEST(ToolTimeDisplay, RefusesFrameCountsBeyond64Bits) {
    EXPECT_EQ(FrameCount(kSecond, FrameRate{25, 1}), 25);
    EXPECT_EQ(XmpTimeText(-kSecond, kNtsc), "-30f30000s1001");
    EXPECT_THAT(RefusalOf([] {
                    FrameCount(INT64_MAX - 1, FrameRate{INT64_MAX, 1});
                }),
                HasSubstr("cannot be counted in frames at f9223372036854775807"));
    EXPECT_THAT(RefusalOf([] {
                    XmpTimeText(-INT64_MAX, FrameRate{kSecond * 2, 1});
                }),
                HasSubstr("does not fit 64 bits"));
}

TEST(ToolMarkerJson, RefusesNumbersBeyond64BitsAndBadRates) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        // Once read as -1 tick.
        {R"([{"start": 18446744073709551615}])", "marker 1 \"start\": 18446744073709551615 ticks is beyond"},
        {R"([{"duration": {"ticks": 9223372036854775808}}])", "marker 1 \"duration\": 9223372036854775808 ticks"},
        {R"([{"start": "999999:59:59:29"}])", "marker 1 \"start\": cannot read '999999:59:59:29'"},
        {R"([{}, {"rate": {"numerator": 18446744073709551615, "denominator": 1}}])",
         "marker 2 \"rate\": \"numerator\" must be a whole number"},
        {R"([{"rate": {"numerator": 25, "denominator": -1}}])", "\"denominator\" must be a whole number from 1"},
        {R"([{"rate": "f25"}])", "marker 1 \"rate\": must be"},
    };
    for (const auto& [text, message] : cases) {
        EXPECT_THAT(RefusalOf([&] { ReadMarkersJson(text, std::nullopt); }), HasSubstr(message)) << text;
    }
    const MarkersFromJson read = ReadMarkersJson(
        R"([{"start": {"ticks": 9223372036854775807}, "rate": {"numerator": 25, "denominator": 1}}])", std::nullopt);
    EXPECT_EQ(read.markers.at(0)->GetStartTime().GetTicks(), INT64_MAX);
    EXPECT_EQ(read.rate, (FrameRate{25, 1}));
}

TEST(ToolMarkerJson, BoundsDepthAndSizeAndPlacesSyntaxErrors) {
    // Once a crash: the value was built, and walked, one level per bracket.
    const std::string deep = std::string(1000000, '[') + std::string(1000000, ']');
    std::string deepFiles;
    for (int i = 0; i < 100000; ++i) {
        deepFiles += R"({"files":[)";
    }
    std::string shallow = std::string(kMaxJsonDepth, '[') + std::string(kMaxJsonDepth, ']');
    const std::vector<std::pair<std::string, std::string>> cases = {
        {deep, "nested deeper than 64 levels"},
        {deepFiles, "nested deeper than 64 levels"},
        {std::string(kMaxJsonBytes + 1, ' '), "larger than the 67108864 bytes"},
        {"{\n  \"markers\": [1,,]}", "not JSON at line 2, column 17: unexpected ','"},
        {"[\n\n  {\"name\": \"a\"}\n  x", "not JSON at line 4, column 3"},
        {"[{\"name\": \"" + std::string(100000, 'a') + "\xff\"}]", "ill-formed UTF-8"},
        {"", "not JSON at line 1, column 1: unexpected end of input"},
    };
    for (const auto& [text, message] : cases) {
        const std::string refusal = RefusalOf([&] { ReadMarkersJson(text, std::nullopt); });
        EXPECT_THAT(refusal, HasSubstr(message)) << text.substr(0, 40);
        EXPECT_LT(refusal.size(), 300u) << "the message quotes the text";
    }
    // As deep as allowed: read, then refused for its shape only.
    EXPECT_THAT(RefusalOf([&] { ReadMarkersJson(shallow, std::nullopt); }), HasSubstr("must be an object"));
}

}  // namespace
