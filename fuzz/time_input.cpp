// The command-line tool's time text, as `time`, `collect --start` and the
// JSON marker reader take it, and its part strings; then shown at its rate.

#include "Errors.hpp"
#include "FuzzInput.hpp"
#include "TimeInput.hpp"

using namespace keltemporalxmp::tool;

namespace {

void Show(const UserTime& time) {
    if (time.rate) {
        TimeJson(time.ticks, *time.rate);
        XmpTimeText(time.ticks, *time.rate);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    keltemporalxmp::fuzz::FuzzInput input(data, size);
    const FrameRate given{input.TakeInt64(), input.TakeInt64()};
    // Rates reach the scanner only through ParseFrameRate, which takes positive members.
    const std::optional<FrameRate> rate = IsUsableRate(given) ? std::optional(given) : std::nullopt;
    const std::string text = input.TakeText();
    try {
        Show(ParseUserTime(text, rate));
    } catch (const InputError&) {
    } catch (const XMP_Error& error) {
        keltemporalxmp::fuzz::CheckError(error);
    }
    try {
        const UserPart part = ParseUserPart(text, rate);
        Show(part.start);
        Show(part.duration);
    } catch (const InputError&) {
    } catch (const XMP_Error& error) {
        keltemporalxmp::fuzz::CheckError(error);
    }
    return 0;
}
