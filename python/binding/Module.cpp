#include <pybind11/pybind11.h>

#include <kelmediatypes/TickTime.hpp>

#include "Bindings.hpp"

PYBIND11_MODULE(_core, module) {
    using namespace keltemporalxmp::python;
    module.doc() = "The compiled part of keltemporalxmp; import keltemporalxmp instead.";
    module.attr("__version__") = KELTXMP_VERSION;
    module.attr("TICKS_PER_SECOND") = kelmediatypes::TickTime::kTicksPerSecond;
    BindErrors(module);
    BindTimes(module);
    BindMarkers(module);
    BindComposition(module);
    BindExchange(module);
}
