#pragma once
// TXMPDocOps: document-level change tracking over the Media Management schema:
// document and instance IDs, the history of resource events, part change IDs.

#include <string>
#include <vector>

#include <xmptoolkit/TXMPMeta.hpp>

template <class tStringObj>
class TXMPDocOps {
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
    TXMPMeta<tStringObj> m_meta;
    bool m_bound = false;
    bool m_dirty = false;
    std::vector<tStringObj> m_changedParts;
    tStringObj m_appName;
    tStringObj m_mimeType;
};

extern template class TXMPDocOps<std::string>;
