#include "Arguments.hpp"

#include "Errors.hpp"

namespace keltemporalxmp::python {
namespace {

std::string TypeName(py::handle object) {
    return Py_TYPE(object.ptr())->tp_name;
}

std::int64_t IntFrom(py::handle value, const char* argument) {
    if (!PyLong_Check(value.ptr())) {
        throw ArgumentTypeError(std::string(argument) + " must be an int, not " + TypeName(value));
    }
    int overflow = 0;
    const long long result = PyLong_AsLongLongAndOverflow(value.ptr(), &overflow);
    if (overflow != 0) {
        throw ArgumentError(std::string(argument) + " does not fit in 64 bits");
    }
    if (result == -1 && PyErr_Occurred() != nullptr) {
        throw py::error_already_set();
    }
    return result;
}

}  // namespace

std::string TextFrom(py::handle text, const char* argument) {
    if (!PyUnicode_Check(text.ptr())) {
        throw ArgumentTypeError(std::string(argument) + " must be str, not " + TypeName(text));
    }
    Py_ssize_t size = 0;
    const char* data = PyUnicode_AsUTF8AndSize(text.ptr(), &size);
    if (data == nullptr) {
        throw py::error_already_set();  // lone surrogates: UnicodeEncodeError, a ValueError
    }
    std::string result(data, static_cast<std::size_t>(size));
    if (result.find('\0') != std::string::npos) {
        throw ArgumentError(std::string(argument) + ": embedded null character");
    }
    return result;
}

std::int64_t TicksFrom(py::handle ticks, const char* argument) {
    return ticks.is_none() ? kTimeUnspecified : IntFrom(ticks, argument);
}

py::object TicksObject(std::int64_t ticks) {
    return ticks == kTimeUnspecified ? py::object(py::none()) : py::object(py::int_(ticks));
}

std::optional<Rate> RateFrom(py::handle rate, const char* argument) {
    if (rate.is_none()) {
        return std::nullopt;
    }
    if (!PyTuple_Check(rate.ptr()) && !PyList_Check(rate.ptr())) {
        throw ArgumentTypeError(std::string(argument) + " must be a (numerator, denominator) tuple, not " +
                                TypeName(rate));
    }
    const py::sequence pair = py::reinterpret_borrow<py::sequence>(rate);
    if (pair.size() != 2) {
        throw ArgumentError(std::string(argument) + " must hold two ints, (numerator, denominator)");
    }
    const Rate result{IntFrom(pair[0], argument), IntFrom(pair[1], argument)};
    if (result.numerator <= 0 || result.denominator <= 0) {
        throw ArgumentError(std::string(argument) + " must be positive, not (" + std::to_string(result.numerator) +
                            ", " + std::to_string(result.denominator) + ")");
    }
    return result;
}

py::object RateObject(const std::optional<Rate>& rate) {
    return rate ? py::object(py::make_tuple(rate->numerator, rate->denominator)) : py::object(py::none());
}

}  // namespace keltemporalxmp::python
