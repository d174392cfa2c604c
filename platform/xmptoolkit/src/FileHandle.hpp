#pragma once
// One open file behind TXMPFiles: a media file read and written by the
// toolkit's file handlers, or an XMP sidecar that holds nothing but a packet.
// Destroying a handle releases the file without writing.

#include <memory>
#include <string>

#include <xmptoolkit/XMP_Const.hpp>

namespace xmptoolkit_detail {

class MetaTree;

struct FileHandle {
    virtual ~FileHandle() = default;
    // The packet as it stands in the file; false when the file holds no XMP.
    virtual bool GetPacket(std::string* packet, XMP_PacketInfo* packetInfo) = 0;
    // The file's XMP into `tree`; false when the file holds none.
    virtual bool GetTree(MetaTree& tree) = 0;
    virtual bool CanPutPacket(const std::string& packet) = 0;
    // Writes the packet into the file and releases it. A safe write leaves the
    // file as it was when anything fails.
    virtual void WriteAndRelease(const std::string& packet, bool safely) = 0;
};

// `packet`, read out of the file at `path`, into `tree`; errors name the file.
void ParseFilePacket(MetaTree& tree, const std::string& packet, const std::string& path);

std::unique_ptr<FileHandle> OpenMediaFile(const std::string& path, XMP_OptionBits openFlags);
std::unique_ptr<FileHandle> OpenSidecarFile(const std::string& path, XMP_OptionBits openFlags);
XMP_FileFormat CheckMediaFileFormat(const std::string& path);
// Replaces (or creates) `destination` by a copy of the media file `source`
// that carries `packet`; `source` is only read.
void WriteMediaCopy(const std::string& source, const std::string& destination, const std::string& packet,
                    XMP_OptionBits openFlags);

}  // namespace xmptoolkit_detail
