#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include <keltemporalxmp/docops.hpp>

namespace {

using keltemporalxmp::XMPDocOpsTemporal;

TEST(FrameRateStringWrite, DenominatorOneIsLeftOut) {
    const struct {
        std::int64_t numerator, denominator;
        const char* text;
    } cases[] = {{25, 1, "f25"}, {30000, 1001, "f30000s1001"}, {50, 2, "f50s2"}, {24, 0, "f24s0"}, {-5, -1, "f-5s-1"}};
    for (const auto& c : cases) {
        std::string text = "previous";
        XMPDocOpsTemporal::CreateExternalFrameRateString(&text, c.numerator, c.denominator);
        EXPECT_EQ(text, c.text);
    }
}

TEST(FrameRateStringRead, NotationsAndFallbacks) {
    const struct {
        const char* text;
        std::int64_t numerator, denominator;
    } cases[] = {
        {"f25", 25, 1},
        {"f30000s1001", 30000, 1001},
        {"25", 25, 1},
        {"100f30000s1001", 30000, 1001},
        {"f30000f1001", 30000, 1001},  // older notation
        {"30000s1001", 30000, 1},      // "s" only counts after an "f"
        {"f2997s100x", 2997, 100},
        {"", 0, 1},
        {"f", 0, 1},
        {"fabc", 0, 1},
        {"f30000s", 30000, 0},
        {"f25s1", 25, 1},
        {"1f2f3s4", 1, 1},
        {"f1f2f3", 0, 1},
        {"f30s2s3", 30, 1},
    };
    for (const auto& c : cases) {
        // Preset values that no case yields: every call must write both outputs.
        std::int64_t numerator = -77;
        std::int64_t denominator = -77;
        XMPDocOpsTemporal::ParseExternalFrameRateString(c.text, &numerator, &denominator);
        EXPECT_EQ(numerator, c.numerator) << '"' << c.text << '"';
        EXPECT_EQ(denominator, c.denominator) << '"' << c.text << '"';
    }
}

}  // namespace
