#pragma once
// The parts of the extension module; each adds its classes and functions.

#include <pybind11/pybind11.h>

namespace keltemporalxmp::python {

namespace py = pybind11;

void BindErrors(py::module_& module);
void BindTimes(py::module_& module);
void BindMarkers(py::module_& module);
void BindComposition(py::module_& module);
void BindExchange(py::module_& module);

}  // namespace keltemporalxmp::python
