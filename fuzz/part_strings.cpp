// Part text in, its times, rates and path out, and the part back to text.

#include <keltemporalxmp/docops.hpp>

#include "FuzzInput.hpp"

using keltemporalxmp::XMPDocOpsTemporal;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    keltemporalxmp::fuzz::FuzzInput input(data, size);
    std::int64_t startNumerator = input.TakeInt64();
    std::int64_t startDenominator = input.TakeInt64();
    std::int64_t durationNumerator = input.TakeInt64();
    std::int64_t durationDenominator = input.TakeInt64();
    const std::int64_t defaultDuration = input.TakeInt64();
    const std::string text = input.TakeText();
    std::int64_t start = 0;
    std::int64_t duration = 0;
    std::string path;
    try {
        XMPDocOpsTemporal::ParsePart(text.c_str(), &start, &startNumerator, &startDenominator, &duration,
                                     &durationNumerator, &durationDenominator, defaultDuration, &path);
        std::string written;
        XMPDocOpsTemporal::CreatePartString(&written, start, startNumerator, startDenominator, duration,
                                            durationNumerator, durationDenominator, defaultDuration, path.c_str());
    } catch (const XMP_Error& error) {
        keltemporalxmp::fuzz::CheckError(error);
    }
    return 0;
}
