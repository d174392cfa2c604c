// to_ticks and from_ticks: XMP's time notations as the library reads and
// writes them. Too quick to be worth releasing the GIL.

#include <cmath>
#include <cstdlib>

#include <keltemporalxmp/docops.hpp>

#include "Arguments.hpp"
#include "Bindings.hpp"
#include "Errors.hpp"

namespace keltemporalxmp::python {
namespace {

py::object ToTicks(py::handle text, py::handle rate) {
    const std::string time = TextFrom(text, "text");
    Rate counted = RateFrom(rate, "rate").value_or(kTickRate);
    const std::int64_t ticks = XMPDocOpsTemporal::ConvertExternalTimeStringToTicks(
        time.c_str(), &counted.numerator, &counted.denominator, kTickRate.numerator);
    // The library wraps a count that overflows; refuse it instead.
    const double frames = std::strtod(time.c_str(), nullptr);
    if (!(std::fabs(frames * static_cast<double>(counted.denominator) / static_cast<double>(counted.numerator) *
                    static_cast<double>(kTickRate.numerator)) < static_cast<double>(kTimeUnspecified))) {
        throw ArgumentError("cannot read '" + time + "' as a time: too far from zero");
    }
    return TicksObject(ticks);
}

std::string FromTicks(py::handle ticks, py::handle rate) {
    const Rate counted = RateFrom(rate, "rate").value_or(kTickRate);
    std::string text;
    XMPDocOpsTemporal::ConvertTicksToExternalTimeString(&text, TicksFrom(ticks, "ticks"), counted.numerator,
                                                        counted.denominator, kTickRate.numerator, true);
    return text;
}

}  // namespace

void BindTimes(py::module_& module) {
    module.def("to_ticks", &ToTicks, py::arg("text"), py::arg("rate") = py::none(),
               R"(Ticks of a time in XMP's notation, as the library reads it.

"90f25" is 90 frames at 25 per second, "1001f30000s1001" counts at
30000/1001, a bare count "90" counts frames at `rate` (default: ticks).
"maximum" gives None, the unspecified time. Malformed numbers read as 0.
rate: (numerator, denominator), both positive.)");
    module.def("from_ticks", &FromTicks, py::arg("ticks"), py::arg("rate") = py::none(),
               R"(A tick count in XMP's notation at `rate`: from_ticks(914457600000, rate=(25, 1)) is "90f25".

The count is rounded to whole frames of the rate (default: ticks, exact);
None, the unspecified time, gives "maximum".)");
}

}  // namespace keltemporalxmp::python
