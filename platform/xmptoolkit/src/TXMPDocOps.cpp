#include <xmptoolkit/TXMPDocOps.hpp>

#include <algorithm>

#include <kelcore/Guid.hpp>
#include <xmptoolkit/TXMPUtils.hpp>

#include "DocHistory.hpp"
#include "ToolkitCall.hpp"

namespace {

constexpr XMP_StringPtr kDocumentIDPrefix = "xmp.did:";
constexpr XMP_StringPtr kInstanceIDPrefix = "xmp.iid:";

std::string NewID(XMP_StringPtr prefix) {
    std::string id;
    TXMPDocOps<std::string>::CreateID(prefix, &id);
    return id;
}

std::string CurrentDate() {
    XMP_DateTime now;
    TXMPUtils<std::string>::CurrentDateTime(&now);
    std::string text;
    TXMPUtils<std::string>::ConvertFromDate(now, &text);
    return text;
}

// Empty when the property is missing.
std::string GetMMProperty(const TXMPMeta<std::string>& meta, XMP_StringPtr name) {
    std::string value;
    meta.GetProperty(kXMP_NS_XMP_MM, name, &value, nullptr);
    return value;
}

void SetMMProperty(TXMPMeta<std::string>& meta, XMP_StringPtr name, const std::string& value) {
    meta.SetProperty(kXMP_NS_XMP_MM, name, value.c_str());
}

bool SetMMPropertyIfMissing(TXMPMeta<std::string>& meta, XMP_StringPtr name, const std::string& value) {
    if (!GetMMProperty(meta, name).empty()) return false;
    SetMMProperty(meta, name, value);
    return true;
}

void SetFormat(TXMPMeta<std::string>& meta, XMP_StringPtr mimeType) {
    if (mimeType != nullptr && mimeType[0] != '\0') meta.SetProperty(kXMP_NS_DC, "format", mimeType);
}

std::string JoinParts(const std::vector<std::string>& parts) {
    std::string joined;
    for (const std::string& part : parts) joined += (joined.empty() ? "" : ";") + part;
    return joined;
}

void SetDerivedFromField(TXMPMeta<std::string>& meta, XMP_StringPtr field, const std::string& value) {
    if (!value.empty())
        meta.SetStructField(kXMP_NS_XMP_MM, "DerivedFrom", kXMP_NS_XMP_ResourceRef, field, value.c_str());
}

}  // namespace

template <class tStringObj>
TXMPDocOps<tStringObj>::TXMPDocOps() = default;

template <class tStringObj>
void TXMPDocOps<tStringObj>::Bind(TXMPMeta<tStringObj>* xmpMeta) {
    m_meta = xmpMeta != nullptr ? *xmpMeta : TXMPMeta<tStringObj>();
    m_dirty = false;
    m_changedParts.clear();
}

template <class tStringObj>
void TXMPDocOps<tStringObj>::AppendEvent(TXMPMeta<tStringObj>& meta, XMP_StringPtr action, const tStringObj& instanceID,
                                         const tStringObj& when, const tStringObj& changed) const {
    xmptoolkit_detail::AppendHistoryEvent(meta, {action, instanceID, when, m_appName, changed});
}

template <class tStringObj>
void TXMPDocOps<tStringObj>::NewXMP(TXMPMeta<tStringObj>* xmpMeta, XMP_StringPtr mimeType, XMP_OptionBits) {
    Bind(xmpMeta);
    const tStringObj documentID = NewID(kDocumentIDPrefix);
    const tStringObj instanceID = NewID(kInstanceIDPrefix);
    SetMMProperty(m_meta, "DocumentID", documentID);
    SetMMProperty(m_meta, "OriginalDocumentID", documentID);
    SetMMProperty(m_meta, "InstanceID", instanceID);
    SetFormat(m_meta, mimeType);
    AppendEvent(m_meta, "created", instanceID, CurrentDate(), tStringObj());
    m_dirty = true;
}

template <class tStringObj>
void TXMPDocOps<tStringObj>::OpenXMP(TXMPMeta<tStringObj>* xmpMeta, XMP_StringPtr, XMP_StringPtr, const XMP_DateTime*) {
    Bind(xmpMeta);
}

template <class tStringObj>
void TXMPDocOps<tStringObj>::BranchXMP(TXMPDocOps* derivedDoc, TXMPMeta<tStringObj>* derivedMeta,
                                       XMP_StringPtr mimeType, XMP_OptionBits) const {
    xmptoolkit_detail::RequireArgument(derivedDoc, "TXMPDocOps::BranchXMP", "derived document");

    const tStringObj sourceInstanceID = GetMMProperty(m_meta, "InstanceID");
    const tStringObj sourceDocumentID = GetMMProperty(m_meta, "DocumentID");
    const tStringObj sourceOriginalID = GetMMProperty(m_meta, "OriginalDocumentID");
    const tStringObj documentID = NewID(kDocumentIDPrefix);
    const tStringObj instanceID = NewID(kInstanceIDPrefix);

    TXMPMeta<tStringObj> derived = m_meta.Clone();
    SetMMProperty(derived, "DocumentID", documentID);
    SetMMProperty(derived, "InstanceID", instanceID);
    // A source without IDs of its own makes the branch the first of its line.
    SetMMProperty(derived, "OriginalDocumentID",
                  !sourceOriginalID.empty()   ? sourceOriginalID
                  : !sourceDocumentID.empty() ? sourceDocumentID
                                              : documentID);
    derived.DeleteProperty(kXMP_NS_XMP_MM, "DerivedFrom");
    SetDerivedFromField(derived, "instanceID", sourceInstanceID);
    SetDerivedFromField(derived, "documentID", sourceDocumentID);
    SetDerivedFromField(derived, "originalDocumentID", sourceOriginalID);
    SetFormat(derived, mimeType);
    AppendEvent(derived, "derived", instanceID, CurrentDate(), tStringObj());

    if (derivedMeta != nullptr) *derivedMeta = derived;
    derivedDoc->Bind(&derived);
    derivedDoc->m_dirty = true;
}

template <class tStringObj>
void TXMPDocOps<tStringObj>::PrepareForSave(XMP_StringPtr mimeType, XMP_StringPtr, const XMP_DateTime*,
                                            XMP_OptionBits) {
    if (!m_dirty) return;
    EnsureIDsExist();
    const tStringObj instanceID = NewID(kInstanceIDPrefix);
    const tStringObj now = CurrentDate();
    // The event first: a history that cannot take it leaves the instance ID as it was.
    AppendEvent(m_meta, "saved", instanceID, now, JoinParts(m_changedParts));
    SetMMProperty(m_meta, "InstanceID", instanceID);
    m_meta.SetProperty(kXMP_NS_XMP, "MetadataDate", now.c_str());
    m_meta.SetProperty(kXMP_NS_XMP, "ModifyDate", now.c_str());
    SetFormat(m_meta, mimeType);
    m_dirty = false;
    m_changedParts.clear();
}

template <class tStringObj>
bool TXMPDocOps<tStringObj>::IsDirty() const {
    return m_dirty;
}

template <class tStringObj>
void TXMPDocOps<tStringObj>::NoteChange(XMP_StringPtr partName) {
    NoteChange(std::vector<XMP_StringPtr>{partName});
}

template <class tStringObj>
void TXMPDocOps<tStringObj>::NoteChange(const std::vector<XMP_StringPtr>& partNames) {
    xmptoolkit_detail::CheckPartNames(partNames, "TXMPDocOps::NoteChange");
    for (XMP_StringPtr part : partNames) {
        if (std::find(m_changedParts.begin(), m_changedParts.end(), part) == m_changedParts.end())
            m_changedParts.emplace_back(part);
    }
    m_dirty = true;
}

template <class tStringObj>
bool TXMPDocOps<tStringObj>::HasPartChanged(XMP_StringPtr prefixInstanceID, XMP_StringPtr partName) const {
    return HasPartChanged(prefixInstanceID, std::vector<XMP_StringPtr>{partName});
}

template <class tStringObj>
bool TXMPDocOps<tStringObj>::HasPartChanged(XMP_StringPtr prefixInstanceID,
                                            const std::vector<XMP_StringPtr>& partNames) const {
    xmptoolkit_detail::CheckPartNames(partNames, "TXMPDocOps::HasPartChanged");
    const auto history = xmptoolkit_detail::ReadHistoryChanges(m_meta);
    const tStringObj prefix = prefixInstanceID != nullptr ? prefixInstanceID : "";
    const auto since =
        std::find_if(history.rbegin(), history.rend(), [&](const auto& change) { return change.instanceID == prefix; });
    if (since == history.rend()) return true;
    return std::any_of(history.rbegin(), since,
                       [&](const auto& change) { return xmptoolkit_detail::ChangedAnyPart(change, partNames); });
}

template <class tStringObj>
bool TXMPDocOps<tStringObj>::GetPartChangeID(XMP_StringPtr partName, tStringObj* changeInstanceID) const {
    return GetPartChangeID(std::vector<XMP_StringPtr>{partName}, changeInstanceID);
}

template <class tStringObj>
bool TXMPDocOps<tStringObj>::GetPartChangeID(const std::vector<XMP_StringPtr>& partNames,
                                             tStringObj* changeInstanceID) const {
    xmptoolkit_detail::CheckPartNames(partNames, "TXMPDocOps::GetPartChangeID");
    const auto history = xmptoolkit_detail::ReadHistoryChanges(m_meta);
    const auto newest = std::find_if(history.rbegin(), history.rend(), [&](const auto& change) {
        return !change.instanceID.empty() && xmptoolkit_detail::ChangedAnyPart(change, partNames);
    });
    if (newest == history.rend()) return false;
    if (changeInstanceID != nullptr) *changeInstanceID = newest->instanceID;
    return true;
}

template <class tStringObj>
void TXMPDocOps<tStringObj>::EnsureIDsExist(XMP_OptionBits) {
    bool added = SetMMPropertyIfMissing(m_meta, "DocumentID", NewID(kDocumentIDPrefix));
    added |= SetMMPropertyIfMissing(m_meta, "OriginalDocumentID", GetMMProperty(m_meta, "DocumentID"));
    added |= SetMMPropertyIfMissing(m_meta, "InstanceID", NewID(kInstanceIDPrefix));
    if (added) m_dirty = true;  // the metadata now differs from what was opened
}

template <class tStringObj>
void TXMPDocOps<tStringObj>::CreateID(XMP_StringPtr prefix, tStringObj* id) {
    xmptoolkit_detail::RequireArgument(id, "TXMPDocOps::CreateID", "output string");
    *id = tStringObj(prefix != nullptr ? prefix : "") + kelcore::Guid::CreateUnique().AsUTF8String();
}

template <class tStringObj>
void TXMPDocOps<tStringObj>::SetAppName(XMP_StringPtr appName) {
    m_appName = appName != nullptr ? appName : "";
}

template class TXMPDocOps<std::string>;
