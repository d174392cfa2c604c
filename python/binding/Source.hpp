#pragma once
// Where a function's XMP comes from (a sidecar or media file, or a packet
// given as bytes) and where written XMP goes. Taking the argument apart needs
// the GIL; loading and storing do not, and run without it.

#include <optional>
#include <string>

#include <xmptoolkit/DocumentFiles.hpp>
#include <xmptoolkit/XMP.hpp>

#include "Bindings.hpp"

namespace keltemporalxmp::python {

struct Source {
    bool isPacket = false;
    std::string path;  // file-system encoding, as os.fsencode gives it
    std::string packet;
};

// bytes, bytearray or memoryview: a packet; str or os.PathLike: a path.
Source SourceFrom(py::handle source);
// str or os.PathLike only; `argument` names it in the error.
std::string PathFrom(py::handle path, const char* argument);

// The packet's text itself: the bytes given, or a sidecar's contents; none
// for a media file, whose packet only the toolkit's file handlers find.
std::optional<std::string> PacketTextOf(const Source& source);

// Empty metadata for a file without XMP.
SXMPMeta LoadSource(const Source& source);

// Reads the XMP of the file at path, lets edit change it and puts it back, or
// into output when that is not empty (a sidecar, or a copy of the media file
// at path). Writing in place holds the file's lock from the read to the
// write; every existing file stays as it was when this fails.
void UpdateDocument(const std::string& path, const std::string& output, const xmptoolkit::XMPEdit& edit);

}  // namespace keltemporalxmp::python
