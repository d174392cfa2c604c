// XMPDocOpsTemporal's frame-rate strings: "f25", "f30000s1001".

#include <keltemporalxmp/docops.hpp>

#include "timestrings/Arguments.hpp"
#include "timestrings/TimeText.hpp"

namespace keltemporalxmp {

using timestrings::ParseInteger;
using timestrings::SplitAtSoleSeparator;
using timestrings::SplitText;

void XMPDocOpsTemporal::CreateExternalFrameRateString(std::string* frameRateString, std::int64_t frameRateNumerator,
                                                      std::int64_t frameRateDenominator) {
    std::string& output = Required(frameRateString, "CreateExternalFrameRateString", "output string");
    char text[timestrings::kMaxRateTextLength];
    char* end = timestrings::WriteRateText(text, frameRateNumerator, frameRateDenominator);
    output.assign(text, end);
}

void XMPDocOpsTemporal::ParseExternalFrameRateString(const char* frameRateString, std::int64_t* frameRateNumerator,
                                                     std::int64_t* frameRateDenominator) {
    constexpr const char* operation = "ParseExternalFrameRateString";
    std::int64_t& numerator = Required(frameRateNumerator, operation, "frame-rate numerator");
    std::int64_t& denominator = Required(frameRateDenominator, operation, "frame-rate denominator");
    numerator = 1;
    denominator = 1;
    const std::string_view text = TextOrEmpty(frameRateString);
    // Whatever stands before the "f" (a frame count, say) is not part of the rate.
    const timestrings::RateText rate = timestrings::ReadRateText(text, 0);
    if (rate.hasRate) {
        numerator = rate.numerator;
        denominator = rate.hasDenominator ? rate.denominator : denominator;
        return;
    }
    // An older notation separated the denominator with a second "f": f30000f1001.
    const std::size_t firstF = text.find('f');
    if (firstF != std::string_view::npos && text.find('s') == std::string_view::npos) {
        const SplitText parts = SplitAtSoleSeparator(text.substr(firstF + 1), 'f');
        if (parts.isSplit) {
            numerator = ParseInteger(parts.before);
            denominator = ParseInteger(parts.after);
            return;
        }
    }
    numerator = ParseInteger(text);
}

}  // namespace keltemporalxmp
