#pragma once
// TXMPFiles: the XMP embedded in a media file, through the toolkit's file
// handlers: open, read, put back (in place or by safe update), close.

#include <memory>
#include <string>

#include <xmptoolkit/TXMPMeta.hpp>

namespace xmptoolkit_detail {
struct FileHandle;
}

template <class tStringObj>
class TXMPFiles {
public:
    TXMPFiles();
    TXMPFiles(XMP_StringPtr filePath, XMP_FileFormat format = kXMP_UnknownFile, XMP_OptionBits openFlags = 0);
    TXMPFiles(const TXMPFiles&) = delete;
    TXMPFiles& operator=(const TXMPFiles&) = delete;
    ~TXMPFiles();

    bool OpenFile(XMP_StringPtr filePath, XMP_FileFormat format = kXMP_UnknownFile, XMP_OptionBits openFlags = 0);
    void CloseFile(XMP_OptionBits closeFlags = 0);
    bool GetXMP(TXMPMeta<tStringObj>* xmpObj = nullptr, tStringObj* xmpPacket = nullptr,
                XMP_PacketInfo* packetInfo = nullptr);
    bool CanPutXMP(const TXMPMeta<tStringObj>& xmpObj);
    void PutXMP(const TXMPMeta<tStringObj>& xmpObj);

    static XMP_FileFormat CheckFileFormat(XMP_StringPtr filePath);

private:
    std::unique_ptr<xmptoolkit_detail::FileHandle> m_file;
};

extern template class TXMPFiles<std::string>;
