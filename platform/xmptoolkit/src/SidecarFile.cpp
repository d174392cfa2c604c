#include <filesystem>
#include <fstream>
#include <iterator>

#include <xmptoolkit/XMP_Error.hpp>

#include "FileHandle.hpp"
#include "MetaTree.hpp"
#include "SafeReplace.hpp"
#include "ToolkitCall.hpp"

namespace xmptoolkit_detail {
namespace {

// The whole file is the packet. A sidecar opened for update need not exist
// yet: closing it after a put creates it.
class SidecarFile final : public FileHandle {
public:
    SidecarFile(const std::string& path, XMP_OptionBits openFlags)
        : m_path(path), m_forUpdate((openFlags & kXMPFiles_OpenForUpdate) != 0) {
        if (!std::filesystem::exists(m_path)) return;
        std::ifstream in(m_path, std::ios::binary);
        m_packet.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
        if (in.bad() || !in.is_open()) RaiseError(kXMPErr_FilePermission, "TXMPFiles::OpenFile", m_path, "cannot read");
    }

    bool GetPacket(std::string* packet, XMP_PacketInfo* packetInfo) override {
        if (m_packet.empty()) return false;
        if (packet != nullptr) *packet = m_packet;
        if (packetInfo != nullptr) {
            *packetInfo = XMP_PacketInfo();
            packetInfo->offset = 0;
            packetInfo->length = static_cast<XMP_Int32>(m_packet.size());
            packetInfo->writeable = m_forUpdate;
        }
        return true;
    }

    bool GetTree(MetaTree& tree) override {
        if (m_packet.empty()) return false;
        ParseFilePacket(tree, m_packet, m_path);
        return true;
    }

    bool CanPutPacket(const std::string&) override { return m_forUpdate; }

    // Always through a temporary file: a sidecar is small.
    void WriteAndRelease(const std::string& packet, bool) override {
        ReplaceFileSafely(m_path, [&](ReplacementFile& file) { file.Append(packet.data(), packet.size()); });
    }

private:
    std::string m_path;
    bool m_forUpdate;
    std::string m_packet;
};

}  // namespace

void ParseFilePacket(MetaTree& tree, const std::string& packet, const std::string& path) {
    try {
        tree.Parse(packet.c_str(), static_cast<XMP_StringLen>(packet.size()));
    } catch (const XMP_Error& error) {
        RaiseError(error.GetID(), "TXMPFiles::GetXMP", path, error.GetErrMsg());
    }
}

std::unique_ptr<FileHandle> OpenSidecarFile(const std::string& path, XMP_OptionBits openFlags) {
    return std::make_unique<SidecarFile>(path, openFlags);
}

}  // namespace xmptoolkit_detail
