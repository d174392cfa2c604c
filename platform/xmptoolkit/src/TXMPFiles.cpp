#include <xmptoolkit/TXMPFiles.hpp>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <utility>

#include "FileChecks.hpp"
#include "FileHandle.hpp"
#include "FileLock.hpp"
#include "MetaTree.hpp"
#include "ToolkitCall.hpp"

namespace {

bool IsSidecarPath(const std::string& path) {
    std::string extension = std::filesystem::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension == ".xmp";
}

std::string Serialize(const TXMPMeta<std::string>& xmpObj) {
    std::string packet;
    xmpObj.SerializeToBuffer(&packet);
    return packet;
}

// A JPEG file holds its XMP in one segment of at most 65535 bytes, less the
// segment's length field and namespace header.
constexpr std::size_t kJpegPacketLimit = 65535 - 2 - 29;

[[noreturn]] void RaiseCannotPut(const std::string& path, const std::string& packet) {
    if (xmptoolkit_detail::CheckMediaFileFormat(path) == kXMP_JPEGFile && packet.size() > kJpegPacketLimit)
        xmptoolkit_detail::RaiseError(kXMPErr_TooLargeForJPEG, "TXMPFiles::PutXMP", path,
                                      "the XMP is " + std::to_string(packet.size()) + " bytes, more than the " +
                                          std::to_string(kJpegPacketLimit) +
                                          " a JPEG file's single XMP segment holds; write less metadata");
    xmptoolkit_detail::RaiseError(kXMPErr_Unavailable, "TXMPFiles::PutXMP", path,
                                  "the file handler cannot write this XMP into the file");
}

}  // namespace

template <class tStringObj>
TXMPFiles<tStringObj>::TXMPFiles() = default;

template <class tStringObj>
TXMPFiles<tStringObj>::TXMPFiles(XMP_StringPtr filePath, XMP_FileFormat format, XMP_OptionBits openFlags) {
    OpenFile(filePath, format, openFlags);
}

template <class tStringObj>
TXMPFiles<tStringObj>::~TXMPFiles() = default;

template <class tStringObj>
void TXMPFiles<tStringObj>::RequireOpenFile(XMP_StringPtr operation) const {
    if (m_file == nullptr) xmptoolkit_detail::RaiseError(kXMPErr_BadObject, operation, "", "no file is open");
}

template <class tStringObj>
bool TXMPFiles<tStringObj>::OpenFile(XMP_StringPtr filePath, XMP_FileFormat, XMP_OptionBits openFlags) {
    xmptoolkit_detail::RequireArgument(filePath, "TXMPFiles::OpenFile", "file path");
    m_file.reset();
    m_lock.reset();
    m_pendingPacket.reset();
    const tStringObj path = filePath;
    const bool sidecar = IsSidecarPath(path);
    m_forUpdate = (openFlags & kXMPFiles_OpenForUpdate) != 0;
    if (!std::filesystem::exists(path) && !(sidecar && m_forUpdate))
        xmptoolkit_detail::RaiseError(kXMPErr_NoFile, "TXMPFiles::OpenFile", path, "");
    if (m_forUpdate) {
        xmptoolkit_detail::RequireWritableFile(path, "TXMPFiles::OpenFile");
        m_lock = std::make_unique<xmptoolkit_detail::FileLock>(path, "TXMPFiles::OpenFile");
    }
    m_file = sidecar ? xmptoolkit_detail::OpenSidecarFile(path, openFlags)
                     : xmptoolkit_detail::OpenMediaFile(path, openFlags);
    m_path = path;
    return true;
}

template <class tStringObj>
void TXMPFiles<tStringObj>::CloseFile(XMP_OptionBits closeFlags) {
    // Moved out first: the file is released even when writing fails, and
    // the lock only after the file.
    const std::unique_ptr<xmptoolkit_detail::FileLock> lock = std::move(m_lock);
    const std::unique_ptr<xmptoolkit_detail::FileHandle> file = std::move(m_file);
    const std::optional<tStringObj> packet = std::exchange(m_pendingPacket, std::nullopt);
    if (file != nullptr && packet.has_value())
        file->WriteAndRelease(*packet, (closeFlags & kXMPFiles_UpdateSafely) != 0);
}

template <class tStringObj>
bool TXMPFiles<tStringObj>::GetXMP(TXMPMeta<tStringObj>* xmpObj, tStringObj* xmpPacket, XMP_PacketInfo* packetInfo) {
    RequireOpenFile("TXMPFiles::GetXMP");
    if (xmpObj != nullptr) {
        if (!m_file->GetTree(xmpObj->Tree())) return false;
        if (xmpPacket == nullptr && packetInfo == nullptr) return true;
    }
    return m_file->GetPacket(xmpPacket, packetInfo);
}

template <class tStringObj>
bool TXMPFiles<tStringObj>::CanPutXMP(const TXMPMeta<tStringObj>& xmpObj) {
    RequireOpenFile("TXMPFiles::CanPutXMP");
    return m_file->CanPutPacket(Serialize(xmpObj));
}

template <class tStringObj>
void TXMPFiles<tStringObj>::PutXMP(const TXMPMeta<tStringObj>& xmpObj) {
    RequireOpenFile("TXMPFiles::PutXMP");
    tStringObj packet = Serialize(xmpObj);
    if (!m_forUpdate)
        xmptoolkit_detail::RaiseError(kXMPErr_BadObject, "TXMPFiles::PutXMP", m_path, "not opened for update");
    if (!m_file->CanPutPacket(packet)) RaiseCannotPut(m_path, packet);
    m_pendingPacket = std::move(packet);
}

template <class tStringObj>
XMP_FileFormat TXMPFiles<tStringObj>::CheckFileFormat(XMP_StringPtr filePath) {
    return filePath != nullptr ? xmptoolkit_detail::CheckMediaFileFormat(filePath) : kXMP_UnknownFile;
}

template <class tStringObj>
void TXMPFiles<tStringObj>::PutXMPIntoCopy(XMP_StringPtr sourcePath, XMP_StringPtr destinationPath,
                                           const TXMPMeta<tStringObj>& xmpObj, XMP_OptionBits openFlags) {
    xmptoolkit_detail::RequireArgument(sourcePath, "TXMPFiles::PutXMPIntoCopy", "source path");
    xmptoolkit_detail::RequireArgument(destinationPath, "TXMPFiles::PutXMPIntoCopy", "destination path");
    const tStringObj source = sourcePath;
    if (!std::filesystem::exists(source))
        xmptoolkit_detail::RaiseError(kXMPErr_NoFile, "TXMPFiles::PutXMPIntoCopy", source, "");
    // Opening checks the source as a safe update of it would.
    xmptoolkit_detail::OpenMediaFile(source, (openFlags & ~kXMPFiles_OpenForUpdate) | kXMPFiles_OpenForRead);
    const tStringObj packet = Serialize(xmpObj);
    try {
        xmptoolkit_detail::WriteMediaCopy(source, destinationPath, packet, openFlags);
    } catch (const XMP_Error& error) {
        if (error.GetID() == kXMPErr_Unavailable) RaiseCannotPut(source, packet);
        throw;
    }
}

template class TXMPFiles<std::string>;
