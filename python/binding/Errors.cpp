#include "Errors.hpp"

#include <cerrno>
#include <cstring>
#include <exception>

#include <xmptoolkit/XMP.hpp>

#include "Bindings.hpp"

namespace keltemporalxmp::python {
namespace {

// Created once and kept for the life of the interpreter, like a built-in type.
PyObject* g_xmpErrorType = nullptr;

// Messages may carry bytes of a file name that are not UTF-8.
py::str Text(const std::string& text) {
    return py::reinterpret_steal<py::str>(
        PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "replace"));
}

// OSError(errno, message, filename) constructs the subclass that errno names.
void RaiseOSError(int number, const py::str& message, const py::object& filename) {
    const py::object error = py::reinterpret_borrow<py::object>(PyExc_OSError)(number, message, filename);
    PyErr_SetObject(reinterpret_cast<PyObject*>(Py_TYPE(error.ptr())), error.ptr());
}

void RaiseXMPError(const XMP_Error& error) {
    const py::str message = Text(error.GetErrMsg());
    switch (error.GetID()) {
        case kXMPErr_NoFile:
            RaiseOSError(ENOENT, message, py::none());
            return;
        case kXMPErr_FilePermission:
            RaiseOSError(EACCES, message, py::none());
            return;
        default:
            break;
    }
    const py::object exception = py::reinterpret_borrow<py::object>(g_xmpErrorType)(message);
    exception.attr("id") = error.GetID();
    exception.attr("message") = message;
    PyErr_SetObject(g_xmpErrorType, exception.ptr());
}

void Translate(std::exception_ptr pending) {
    try {
        std::rethrow_exception(pending);
    } catch (const XMP_Error& error) {
        RaiseXMPError(error);
    } catch (const FileError& error) {
        const std::string& path = error.Path();
        const py::object filename = py::reinterpret_steal<py::object>(
            PyUnicode_DecodeFSDefaultAndSize(path.data(), static_cast<Py_ssize_t>(path.size())));
        RaiseOSError(error.Number(), Text(error.what()), filename);
    } catch (const ArgumentTypeError& error) {
        PyErr_SetString(PyExc_TypeError, error.what());
    }
}

}  // namespace

void BindErrors(py::module_& module) {
    g_xmpErrorType = PyErr_NewExceptionWithDoc(
        "keltemporalxmp.XMPError",
        "An error of the XMP toolkit or of the library: bad XMP, a bad value in it, a file format it cannot "
        "handle.\n\n.id is the toolkit's error number (bad parameter 4, bad value 5, bad parse 106, bad XML "
        "201, bad XMP 203, ...), .message says what failed and where.",
        PyExc_Exception, nullptr);
    if (g_xmpErrorType == nullptr) {
        throw py::error_already_set();
    }
    module.attr("XMPError") = py::handle(g_xmpErrorType);
    py::register_exception_translator(Translate);
}

}  // namespace keltemporalxmp::python
