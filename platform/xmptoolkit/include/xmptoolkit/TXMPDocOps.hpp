#pragma once
// TXMPDocOps: document-level change tracking over the Media Management schema:
// document and instance IDs, the history of resource events, part change IDs.
//
// Part names are paths that start with "/" ("/", "/metadata", "/content/audio").
// A history event that names no changed parts counts as a change of every part;
// a changed part counts as a change of the parts below and above it. A null
// metadata pointer binds the document to an empty tree of its own.

#include <string>
#include <vector>

#include <keltemporalxmp/export.hpp>
#include <xmptoolkit/TXMPMeta.hpp>

template <class tStringObj>
class KELTXMP_API TXMPDocOps {
public:
    TXMPDocOps();

    // Binds meta (a shared handle) and gives it fresh IDs and a "created" event.
    void NewXMP(TXMPMeta<tStringObj>* xmpMeta, XMP_StringPtr mimeType, XMP_OptionBits options = 0);
    // Binds meta and changes nothing.
    void OpenXMP(TXMPMeta<tStringObj>* xmpMeta, XMP_StringPtr mimeType, XMP_StringPtr filePath = nullptr,
                 const XMP_DateTime* fileModTime = nullptr);
    void BranchXMP(TXMPDocOps* derivedDoc, TXMPMeta<tStringObj>* derivedMeta, XMP_StringPtr mimeType,
                   XMP_OptionBits options = 0) const;
    void PrepareForSave(XMP_StringPtr mimeType, XMP_StringPtr filePath = nullptr,
                        const XMP_DateTime* fileModTime = nullptr, XMP_OptionBits options = 0);

    bool IsDirty() const;
    void NoteChange(XMP_StringPtr partName);
    void NoteChange(const std::vector<XMP_StringPtr>& partNames);
    bool HasPartChanged(XMP_StringPtr prefixInstanceID, XMP_StringPtr partName) const;
    bool HasPartChanged(XMP_StringPtr prefixInstanceID, const std::vector<XMP_StringPtr>& partNames) const;
    bool GetPartChangeID(XMP_StringPtr partName, tStringObj* changeInstanceID) const;
    bool GetPartChangeID(const std::vector<XMP_StringPtr>& partNames, tStringObj* changeInstanceID) const;
    void EnsureIDsExist(XMP_OptionBits options = 0);

    static void CreateID(XMP_StringPtr prefix, tStringObj* id);
    void SetAppName(XMP_StringPtr appName);

    // The bound metadata (an empty tree before NewXMP / OpenXMP).
    TXMPMeta<tStringObj> GetMeta() const { return m_meta; }

private:
    KELTXMP_LOCAL void Bind(TXMPMeta<tStringObj>* xmpMeta);
    KELTXMP_LOCAL void AppendEvent(TXMPMeta<tStringObj>& meta, XMP_StringPtr action, const tStringObj& instanceID,
                                   const tStringObj& when, const tStringObj& changed) const;

    TXMPMeta<tStringObj> m_meta;
    bool m_dirty = false;
    std::vector<tStringObj> m_changedParts;  // in the order first noted, no repeats
    tStringObj m_appName;
};

extern template class TXMPDocOps<std::string>;
