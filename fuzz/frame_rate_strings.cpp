// Frame-rate text in, a rate out, and the rate back to text.

#include <keltemporalxmp/docops.hpp>

#include "FuzzInput.hpp"

using keltemporalxmp::XMPDocOpsTemporal;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = keltemporalxmp::fuzz::FuzzInput(data, size).TakeText();
    std::int64_t numerator = 0;
    std::int64_t denominator = 0;
    XMPDocOpsTemporal::ParseExternalFrameRateString(text.c_str(), &numerator, &denominator);
    std::string written;
    XMPDocOpsTemporal::CreateExternalFrameRateString(&written, numerator, denominator);
    return 0;
}
