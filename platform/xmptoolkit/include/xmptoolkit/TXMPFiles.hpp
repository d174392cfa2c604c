#pragma once
// TXMPFiles: the XMP embedded in a media file, through the toolkit's file
// handlers: open, read, put back (in place or by safe update), close.
//
// A file whose name ends in ".xmp" is a sidecar: the whole file is the packet,
// and a sidecar opened for update need not exist yet. PutXMP only checks and
// remembers the XMP; CloseFile writes it, and with kXMPFiles_UpdateSafely the
// file is left as it was if writing fails. Destroying the object, opening
// another file, or closing without a put never writes. The format argument of
// OpenFile is not needed: the format is always detected. Failures are
// XMP_Error naming the operation and the file: kXMPErr_NoFile for a missing
// file, kXMPErr_NoFileHandler for a format without a handler (unless packet
// scanning is asked for).
//
// Opening for update refuses a read-only file (kXMPErr_FilePermission) and
// holds an exclusive advisory lock on the file until it is closed, so that
// a read-modify-write by several processes loses no update; a waiter gives up
// after 10 seconds (KELTEMPORALXMP_LOCK_TIMEOUT, in seconds, changes that).
// A safe update replaces the file by a complete new one (see PutXMPIntoCopy).

#include <memory>
#include <optional>
#include <string>

#include <keltemporalxmp/export.hpp>
#include <xmptoolkit/TXMPMeta.hpp>

namespace xmptoolkit_detail {
struct FileHandle;
class FileLock;
}  // namespace xmptoolkit_detail

template <class tStringObj>
class KELTXMP_API TXMPFiles {
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

    // Writes a copy of the media file at sourcePath that carries xmpObj to
    // destinationPath, which is replaced (or created) only once the copy is
    // complete and on disk; sourcePath is only read. The copy is created
    // exclusively under an unpredictable name beside the destination; a
    // symbolic link at the destination has its target replaced; the
    // destination's mode, owner and extended attributes are kept; a
    // destination with several hard links is refused.
    static void PutXMPIntoCopy(XMP_StringPtr sourcePath, XMP_StringPtr destinationPath,
                               const TXMPMeta<tStringObj>& xmpObj, XMP_OptionBits openFlags = 0);

private:
    KELTXMP_LOCAL void RequireOpenFile(XMP_StringPtr operation) const;

    std::unique_ptr<xmptoolkit_detail::FileLock> m_lock;  // while open for update
    std::unique_ptr<xmptoolkit_detail::FileHandle> m_file;
    tStringObj m_path;
    bool m_forUpdate = false;
    std::optional<tStringObj> m_pendingPacket;  // put, written by CloseFile
};

extern template class TXMPFiles<std::string>;
