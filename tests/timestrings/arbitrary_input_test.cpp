// Any text, rate or tick count either converts or raises XMP_Error; nothing
// traps, overflows into undefined behaviour or reads out of bounds (the
// sanitizer build runs this too).

#include <cstdint>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include <keltemporalxmp/docops.hpp>
#include <xmptoolkit/XMP_Error.hpp>

namespace {

using keltemporalxmp::XMPDocOpsTemporal;
using Limits = std::numeric_limits<std::int64_t>;

class ArbitraryInput {
public:
    std::int64_t Number() {
        const std::int64_t edges[] = {0, 1, -1, 2, Limits::min(), Limits::max(), 254016000000, -254016000000, 30000};
        return random_() % 2 == 0 ? edges[random_() % std::size(edges)] : static_cast<std::int64_t>(random_());
    }
    std::string Text() {
        static constexpr std::string_view kAlphabet = "0123456789--fffsssdr:/timeaxu";
        std::string text;
        const std::size_t length = random_() % 24;
        for (std::size_t i = 0; i < length; ++i) {
            text += kAlphabet[random_() % kAlphabet.size()];
        }
        return random_() % 8 == 0 ? "time:" + text : text;
    }

private:
    std::mt19937_64 random_{5};
};

template <class Call>
void ConvertsOrRaises(Call call) {
    try {
        call();
    } catch (const XMP_Error& error) {
        EXPECT_EQ(error.GetID(), kXMPErr_BadValue) << error.GetErrMsg();
    }
}

TEST(TimeStringArbitraryInput, ConvertsOrRaisesBadValue) {
    ArbitraryInput input;
    for (int i = 0; i < 20000; ++i) {
        const std::string text = input.Text();
        std::int64_t a = input.Number(), b = input.Number(), c = input.Number(), d = input.Number();
        std::int64_t e = input.Number(), f = input.Number();
        std::string output;
        ConvertsOrRaises([&] { XMPDocOpsTemporal::ConvertExternalTimeStringToTicks(text.c_str(), &a, &b, c); });
        ConvertsOrRaises([&] { XMPDocOpsTemporal::ConvertExternalTimeStringToTicks(text.c_str(), a, b, c); });
        ConvertsOrRaises([&] { XMPDocOpsTemporal::ConvertTicksToExternalTimeString(&output, a, b, c, d, i % 2 == 0); });
        ConvertsOrRaises([&] { XMPDocOpsTemporal::ParseExternalFrameRateString(text.c_str(), &a, &b); });
        ConvertsOrRaises([&] { XMPDocOpsTemporal::CreatePartString(&output, a, b, c, d, e, f, Limits::max(), "p"); });
        ConvertsOrRaises([&] { XMPDocOpsTemporal::ParsePart(text.c_str(), &a, &b, &c, &d, &e, &f, a, &output); });
    }
}

}  // namespace
