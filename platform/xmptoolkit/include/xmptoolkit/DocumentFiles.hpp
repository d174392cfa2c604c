#pragma once
// The XMP of a document file read and rewritten the way the tool and the
// Python package both do it: a sidecar (.xmp) is the packet itself; a media
// format without a file handler is scanned for its packet, which can then
// only be rewritten in place, within its padding; an edit in place holds the
// file's lock from the read to the write; another file gets the XMP through a
// copy that replaces it only once complete (see TXMPFiles). Callers check
// first what they refuse (special files, a sidecar's XMP into a media file).

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <functional>
#include <string>
#include <system_error>

#include <xmptoolkit/XMP.hpp>

namespace xmptoolkit {

using XMPEdit = std::function<void(SXMPMeta&)>;

// A sidecar is named .xmp, in any case.
inline bool IsSidecarPath(const std::string& path) {
    std::string extension = std::filesystem::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension == ".xmp";
}

inline void OpenDocumentFile(SXMPFiles& file, const std::string& path, XMP_OptionBits openFlags) {
    try {
        file.OpenFile(path.c_str(), kXMP_UnknownFile, openFlags);
    } catch (const XMP_Error& error) {
        if (error.GetID() != kXMPErr_NoFileHandler) throw;
        file.OpenFile(path.c_str(), kXMP_UnknownFile, openFlags | kXMPFiles_OpenUsePacketScanning);
    }
}

// Empty metadata when the file carries no XMP.
inline SXMPMeta ReadDocumentXMP(const std::string& path) {
    SXMPFiles file;
    OpenDocumentFile(file, path, kXMPFiles_OpenForRead);
    SXMPMeta meta;
    file.GetXMP(&meta);
    file.CloseFile();
    return meta;
}

// With `edit`, the file's XMP is read into `meta` and edited under the lock;
// without, `meta` is written as it is.
inline void PutDocumentXMPInPlace(const std::string& path, SXMPMeta& meta, const XMPEdit* edit) {
    SXMPFiles file;
    OpenDocumentFile(file, path, kXMPFiles_OpenForUpdate);
    if (edit != nullptr) {
        file.GetXMP(&meta);
        (*edit)(meta);
    }
    file.PutXMP(meta);
    file.CloseFile(kXMPFiles_UpdateSafely);
}

// `meta` (or the XMP of `path` changed by `edit`) into `path` itself, or into
// `output` when that names another file: a sidecar, or a copy of the media
// file at `path`. On any failure every existing file is left as it was.
inline void PutDocumentXMP(const std::string& path, const std::string& output, SXMPMeta meta, const XMPEdit* edit) {
    std::error_code ignored;
    if (output.empty() || output == path || std::filesystem::equivalent(path, output, ignored)) {
        PutDocumentXMPInPlace(path, meta, edit);
        return;
    }
    if (edit != nullptr) {
        meta = ReadDocumentXMP(path);
        (*edit)(meta);
    }
    if (IsSidecarPath(output)) {
        PutDocumentXMPInPlace(output, meta, nullptr);
        return;
    }
    try {
        SXMPFiles::PutXMPIntoCopy(path.c_str(), output.c_str(), meta);
    } catch (const XMP_Error& error) {
        if (error.GetID() != kXMPErr_NoFileHandler) throw;
        SXMPFiles::PutXMPIntoCopy(path.c_str(), output.c_str(), meta, kXMPFiles_OpenUsePacketScanning);
    }
}

}  // namespace xmptoolkit
