#include "Source.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string_view>

#include <xmptoolkit/DocumentFiles.hpp>
#include <xmptoolkit/XMP_PacketLimits.hpp>

#include "Errors.hpp"

namespace keltemporalxmp::python {
namespace {

namespace fs = std::filesystem;

std::string TypeName(py::handle object) {
    return Py_TYPE(object.ptr())->tp_name;
}

// A strided view (memoryview(data)[::-1]) is refused: it is not the packet's bytes in order.
std::string BytesOf(py::handle object) {
    Py_buffer view{};
    if (PyObject_GetBuffer(object.ptr(), &view, PyBUF_SIMPLE) != 0) {
        PyErr_Clear();
        throw ArgumentTypeError("an XMP packet must be bytes or a contiguous buffer of them");
    }
    std::string bytes(static_cast<const char*>(view.buf), static_cast<std::size_t>(view.len));
    PyBuffer_Release(&view);
    return bytes;
}

[[noreturn]] void FailWithErrno(const std::string& path) {
    const int number = errno;
    throw FileError(number, path, std::strerror(number));
}

// Checked before the toolkit sees the file: a FIFO or a device would block
// or stream without end, and the errno gives the right OSError.
void RequireRegularFile(const std::string& path, int access) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0) {
        FailWithErrno(path);
    }
    if (S_ISDIR(info.st_mode)) {
        throw FileError(EISDIR, path, std::strerror(EISDIR));
    }
    if (!S_ISREG(info.st_mode)) {
        throw FileError(EINVAL, path, "not a regular file");
    }
    if (::access(path.c_str(), access) != 0) {
        FailWithErrno(path);
    }
}

// Writing replaces files by renaming a complete new one into place.
void RequireWritableDirectoryOf(const std::string& path) {
    const fs::path parent = fs::path(path).parent_path();
    const std::string directory = parent.empty() ? "." : parent.string();
    if (::access(directory.c_str(), W_OK) != 0) {
        FailWithErrno(directory);
    }
}

}  // namespace

std::string PathFrom(py::handle path, const char* argument) {
    if (!PyUnicode_Check(path.ptr()) && PyObject_HasAttrString(path.ptr(), "__fspath__") == 0) {
        throw ArgumentTypeError(std::string(argument) + " must be a path (str or os.PathLike), not " + TypeName(path));
    }
    const py::object encoded = py::module_::import("os").attr("fsencode")(path);
    std::string text = encoded.cast<std::string>();
    if (text.find('\0') != std::string::npos) {
        throw ArgumentError(std::string(argument) + ": embedded null byte");
    }
    if (text.empty()) {
        throw ArgumentError(std::string(argument) + " is empty");
    }
    return text;
}

Source SourceFrom(py::handle source) {
    if (PyBytes_Check(source.ptr()) || PyByteArray_Check(source.ptr()) || PyMemoryView_Check(source.ptr())) {
        Source result{true, {}, BytesOf(source)};
        if (result.packet.size() > XMP_PacketLimits::kMaxPacketBytes) {
            throw ArgumentError("the XMP packet is larger than " + std::to_string(XMP_PacketLimits::kMaxPacketBytes) +
                                " bytes");
        }
        return result;
    }
    if (!PyUnicode_Check(source.ptr()) && PyObject_HasAttrString(source.ptr(), "__fspath__") == 0) {
        throw ArgumentTypeError("source must be a path (str or os.PathLike) or an XMP packet (bytes), not " +
                                TypeName(source));
    }
    return Source{false, PathFrom(source, "source"), {}};
}

std::optional<std::string> PacketTextOf(const Source& source) {
    if (source.isPacket) {
        return source.packet;
    }
    if (!xmptoolkit::IsSidecarPath(source.path)) {
        return std::nullopt;
    }
    RequireRegularFile(source.path, R_OK);
    std::ifstream file(source.path, std::ios::binary);
    std::string text;
    if (file) {
        file.seekg(0, std::ios::end);
        const std::streamoff size = file.tellg();
        if (size < 0 || static_cast<std::uint64_t>(size) > XMP_PacketLimits::kMaxPacketBytes) {
            return std::nullopt;
        }
        text.resize(static_cast<std::size_t>(size));
        file.seekg(0);
        file.read(text.data(), size);
    }
    if (!file) {
        return std::nullopt;  // the toolkit path says what is wrong
    }
    return text;
}

SXMPMeta LoadSource(const Source& source) {
    if (source.isPacket) {
        return SXMPMeta(source.packet.data(), static_cast<XMP_StringLen>(source.packet.size()));
    }
    RequireRegularFile(source.path, R_OK);
    return xmptoolkit::ReadDocumentXMP(source.path);
}

void UpdateDocument(const std::string& path, const std::string& output, const xmptoolkit::XMPEdit& edit) {
    RequireRegularFile(path, output.empty() ? R_OK | W_OK : R_OK);
    if (!output.empty() && !xmptoolkit::IsSidecarPath(output) && xmptoolkit::IsSidecarPath(path)) {
        throw ArgumentError("the XMP of a sidecar can only be written to a sidecar (.xmp), not to " + output);
    }
    RequireWritableDirectoryOf(output.empty() ? path : output);
    xmptoolkit::PutDocumentXMP(path, output, SXMPMeta(), &edit);
}

}  // namespace keltemporalxmp::python
