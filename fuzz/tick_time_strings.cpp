// Tick time text in, ticks out, and back to text at the rate the text named.

#include <kelmediatypes/TickTime.hpp>
#include <keltemporalxmp/docops.hpp>

#include "FuzzInput.hpp"

using keltemporalxmp::XMPDocOpsTemporal;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    keltemporalxmp::fuzz::FuzzInput input(data, size);
    std::int64_t numerator = input.TakeInt64();
    std::int64_t denominator = input.TakeInt64();
    const std::int64_t ticksPerSecond =
        input.TakeInt64() & 1 ? kelmediatypes::TickTime::kTicksPerSecond : input.TakeInt64();
    const std::string text = input.TakeText();
    try {
        const std::int64_t ticks =
            XMPDocOpsTemporal::ConvertExternalTimeStringToTicks(text.c_str(), &numerator, &denominator, ticksPerSecond);
        std::string written;
        XMPDocOpsTemporal::ConvertTicksToExternalTimeString(&written, ticks, numerator, denominator, ticksPerSecond,
                                                            true);
        XMPDocOpsTemporal::ConvertTicksToSeconds(ticks);
    } catch (const XMP_Error& error) {
        keltemporalxmp::fuzz::CheckError(error);
    }
    return 0;
}
