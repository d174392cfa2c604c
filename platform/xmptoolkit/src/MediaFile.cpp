#include <sys/stat.h>

#include <filesystem>
#include <utility>

#include <exempi/xmp.h>

#include "FileHandle.hpp"
#include "MappedFile.hpp"
#include "MetaTree.hpp"
#include "PacketGuard.hpp"
#include "SafeReplace.hpp"
#include "ToolkitCall.hpp"
#include "XmpText.hpp"

namespace xmptoolkit_detail {
namespace {

constexpr XMP_StringPtr kOpen = "TXMPFiles::OpenFile";
constexpr XMP_StringPtr kClose = "TXMPFiles::CloseFile";

// `shown` names the file in errors.
XmpFilePtr OpenToolkitFile(const std::string& path, XMP_OptionBits openFlags, const std::string& shown) {
    XmpFilePtr file = nullptr;
    RequireSuccess(CallToolkit([&] { return (file = xmp_files_new()) != nullptr; }), kOpen, shown, kXMPErr_NoMemory);
    const ToolkitOutcome opened =
        CallToolkit([&] { return xmp_files_open(file, path.c_str(), static_cast<XmpOpenFileOptions>(openFlags)); });
    if (!opened.m_succeeded) {
        CallToolkit([&] { return xmp_files_free(file); });
        RequireSuccess(opened, kOpen, shown, kXMPErr_BadFileFormat);
    }
    return file;
}

// Closes without writing (nothing was put) and frees the handle.
void ReleaseToolkitFile(XmpFilePtr file) {
    CallToolkit([&] { return xmp_files_close(file, XMP_CLOSE_NOOPTION); });
    CallToolkit([&] { return xmp_files_free(file); });
}

void PutAndClose(XmpFilePtr file, const std::string& packet, const std::string& path) {
    const ToolkitOutcome put = CallToolkit([&] { return xmp_files_put_xmp_cstr(file, packet.data(), packet.size()); });
    if (!put.m_succeeded) {
        ReleaseToolkitFile(file);
        RequireSuccess(put, kClose, path, kXMPErr_Unavailable);
    }
    const ToolkitOutcome closed = CallToolkit([&] { return xmp_files_close(file, XMP_CLOSE_NOOPTION); });
    CallToolkit([&] { return xmp_files_free(file); });
    RequireSuccess(closed, kClose, path, kXMPErr_ExternalFailure);
}

// Opened for update, the toolkit pads a truncated file with zeros as soon as
// it reads it, while opening it for reading refuses it; so a file is first
// opened for reading, and only a file that passes is opened for update.
XmpFilePtr OpenCheckedToolkitFile(const std::string& path, XMP_OptionBits openFlags, const std::string& shown) {
    if ((openFlags & kXMPFiles_OpenForUpdate) != 0)
        ReleaseToolkitFile(
            OpenToolkitFile(path, (openFlags & ~kXMPFiles_OpenForUpdate) | kXMPFiles_OpenForRead, shown));
    return OpenToolkitFile(path, openFlags, shown);
}

// The toolkit fails on some relative paths (a one-letter folder), so it is
// only ever given absolute, normalised ones.
std::string ToolkitPath(const std::string& path) {
    return std::filesystem::absolute(path).lexically_normal().string();
}

// A put is held back until CloseFile, so a file that is closed without writing
// is never touched. The safe write works on a copy that replaces the file only
// once the toolkit has updated it: whatever fails, the file stays as it was.
class MediaFile final : public FileHandle {
public:
    MediaFile(const std::string& path, XMP_OptionBits openFlags)
        : m_path(path),
          m_toolkitPath(ToolkitPath(path)),
          m_openFlags(openFlags),
          m_file(OpenCheckedToolkitFile(m_toolkitPath, openFlags, path)) {}

    ~MediaFile() override {
        if (m_file != nullptr) ReleaseToolkitFile(m_file);
    }

    MediaFile(const MediaFile&) = delete;
    MediaFile& operator=(const MediaFile&) = delete;

    bool GetPacket(std::string* packet, XMP_PacketInfo* packetInfo) override {
        XmpText text;
        XmpPacketInfo info{};
        const ToolkitOutcome outcome =
            CallToolkit([&] { return xmp_files_get_xmp_xmpstring(m_file, text.Get(), &info); });
        if (!FoundUnlessFailed(outcome, "TXMPFiles::GetXMP", m_path)) return false;
        text.CopyTo(packet);
        if (packetInfo != nullptr) {
            *packetInfo = XMP_PacketInfo();
            packetInfo->offset = info.offset;
            packetInfo->length = info.length;
            packetInfo->padSize = info.padSize;
            packetInfo->charForm = info.charForm;
            packetInfo->writeable = info.writeable;
            packetInfo->hasWrapper = info.hasWrapper;
        }
        return true;
    }

    // The handler's own tree: with a JPEG's extended XMP, which the packet
    // text leaves out (and a write would then drop), and without parsing
    // again what the handler parsed. Every packet it read was guarded at open.
    bool GetTree(MetaTree& tree) override {
        auto object = XmpObject::NewEmpty();
        const ToolkitOutcome outcome = CallToolkit([&] { return xmp_files_get_xmp(m_file, object->Get()); });
        if (!FoundUnlessFailed(outcome, "TXMPFiles::GetXMP", m_path)) return false;
        tree = MetaTree(std::move(object));
        return true;
    }

    bool CanPutPacket(const std::string& packet) override {
        return CallToolkit([&] { return xmp_files_can_put_xmp_cstr(m_file, packet.data(), packet.size()); })
            .m_succeeded;
    }

    void WriteAndRelease(const std::string& packet, bool safely) override {
        XmpFilePtr file = std::exchange(m_file, nullptr);
        if (!safely) return PutAndClose(file, packet, m_path);
        ReleaseToolkitFile(file);
        WriteMediaCopy(m_path, m_path, packet, m_openFlags);
    }

private:
    std::string m_path;
    std::string m_toolkitPath;
    XMP_OptionBits m_openFlags;
    XmpFilePtr m_file;
};

// Narrows the process's umask for as long as it lives.
class PrivateFilesOnly {
public:
    PrivateFilesOnly() : m_previous(::umask(077)) {}
    ~PrivateFilesOnly() { ::umask(m_previous); }
    PrivateFilesOnly(const PrivateFilesOnly&) = delete;
    PrivateFilesOnly& operator=(const PrivateFilesOnly&) = delete;

private:
    mode_t m_previous;
};

}  // namespace

void WriteMediaCopy(const std::string& source, const std::string& destination, const std::string& packet,
                    XMP_OptionBits openFlags) {
    ReplaceFileSafely(destination, [&](ReplacementFile& copy) {
        copy.AppendFileContent(source);
        // Some handlers rewrite the copy through files of their own: those
        // too stay private until the copy is complete.
        const PrivateFilesOnly privateFiles;
        PutAndClose(OpenToolkitFile(copy.TemporaryPath(), openFlags | kXMPFiles_OpenForUpdate, destination), packet,
                    destination);
    });
}

std::unique_ptr<FileHandle> OpenMediaFile(const std::string& path, XMP_OptionBits openFlags) {
    const bool scanForPacket = (openFlags & kXMPFiles_OpenUsePacketScanning) != 0;
    if (!scanForPacket && CheckMediaFileFormat(path) == kXMP_UnknownFile)
        RaiseError(kXMPErr_NoFileHandler, kOpen, path, "");
    // The toolkit parses a media file's packet inside its own calls, where no
    // guard can reach it: so every packet in the file is checked first.
    GuardEmbeddedPackets(MappedFile(path, kOpen).Bytes(), kOpen, path);
    return std::make_unique<MediaFile>(path, openFlags);
}

XMP_FileFormat CheckMediaFileFormat(const std::string& path) {
    XMP_FileFormat format = kXMP_UnknownFile;
    CallToolkit([&] {
        format = xmp_files_check_file_format(ToolkitPath(path).c_str());
        return true;
    });
    return format;
}

}  // namespace xmptoolkit_detail
