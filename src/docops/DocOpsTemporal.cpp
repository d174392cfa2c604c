// XMPDocOpsTemporal's document lifecycle: the toolkit's document operations,
// with the cached lists written back before every save.

#include <keltemporalxmp/docops.hpp>

#include "docops/IngredientLayout.hpp"
#include "docops/ListRead.hpp"
#include "docops/TrackLayout.hpp"
#include "timestrings/Arguments.hpp"

namespace keltemporalxmp {
namespace {

std::unique_ptr<SXMPMeta> HandleOn(const SXMPMeta* meta) {
    return meta != nullptr ? std::make_unique<SXMPMeta>(*meta) : nullptr;
}

}  // namespace

XMPDocOpsTemporal::XMPDocOpsTemporal() : m_xmpDocOpsPtr(std::make_unique<SXMPDocOps>()) {}

XMPDocOpsTemporal::~XMPDocOpsTemporal() = default;

void XMPDocOpsTemporal::NewXMP(SXMPMeta* meta, const char* mimeType, XMP_OptionBits options) {
    m_xmpMetaPtr = HandleOn(meta);
    m_xmpDocOpsPtr->NewXMP(meta, mimeType, options);
}

void XMPDocOpsTemporal::OpenXMP(SXMPMeta* meta, const char* mimeType, XMP_OptionBits /*options*/) {
    OpenXMP(meta, mimeType, nullptr, 0);
}

void XMPDocOpsTemporal::OpenXMP(SXMPMeta* meta, const char* mimeType, const char* filePath,
                                XMP_OptionBits /*options*/) {
    if (m_xmpMetaPtr == nullptr) {
        m_xmpMetaPtr = HandleOn(meta);
    }
    m_xmpDocOpsPtr->OpenXMP(meta, mimeType, filePath);
}

void XMPDocOpsTemporal::OpenXMP(SXMPMeta* meta, const char* mimeType, const char* filePath, XMP_DateTime& modDate,
                                XMP_OptionBits /*options*/) {
    if (m_xmpMetaPtr == nullptr) {
        m_xmpMetaPtr = HandleOn(meta);
    }
    m_xmpDocOpsPtr->OpenXMP(meta, mimeType, filePath, &modDate);
}

void XMPDocOpsTemporal::BranchXMP(XMPDocOpsTemporal* derived, SXMPMeta* derivedMeta, const char* mimeType,
                                  XMP_OptionBits options) {
    XMPDocOpsTemporal& target = Required(derived, "XMPDocOpsTemporal::BranchXMP", "derived document");
    if (IsDirty()) {
        PrepareForSave("", 0);
    }
    m_xmpDocOpsPtr->BranchXMP(target.m_xmpDocOpsPtr.get(), derivedMeta, mimeType, options);
    target.m_xmpMetaPtr = HandleOn(derivedMeta);
}

void XMPDocOpsTemporal::PrepareForSave(const char* mimeType, XMP_OptionBits options) {
    PrepareForSave(mimeType, nullptr, options);
}

void XMPDocOpsTemporal::PrepareForSave(const char* mimeType, const char* filePath, XMP_OptionBits options) {
    WriteChangedLists();
    m_xmpDocOpsPtr->PrepareForSave(mimeType, filePath, nullptr, options);
}

void XMPDocOpsTemporal::PrepareForSave(const char* mimeType, const char* filePath, XMP_DateTime& modDate,
                                       XMP_OptionBits options) {
    WriteChangedLists();
    m_xmpDocOpsPtr->PrepareForSave(mimeType, filePath, &modDate, options);
}

// The order is fixed, and the flags stay set: a changed list is written on
// every save. A list that cannot be written stops the save before anything
// is written.
void XMPDocOpsTemporal::WriteChangedLists() {
    struct ChangedList {
        bool m_changed;
        const std::string& m_readFailure;
        const char* m_path;
    };
    for (const ChangedList& list :
         {ChangedList{m_hasTrackDataChanged, m_trackReadFailure, docops::kTracksPath},
          ChangedList{m_hasIngredientDataChanged, m_ingredientReadFailure, docops::kIngredientsPath},
          ChangedList{m_hasPantryDataChanged, m_pantryReadFailure, docops::kPantryPath}}) {
        if (list.m_changed) docops::RequireCompleteRead(list.m_readFailure, list.m_path);
    }
    if (m_hasTrackDataChanged) {
        WriteTrackList();
    }
    if (m_hasIngredientDataChanged) {
        WriteIngredientList();
    }
    if (m_hasPantryDataChanged) {
        WritePantry();
    }
}

bool XMPDocOpsTemporal::IsDirty() const {
    return m_xmpDocOpsPtr->IsDirty() || m_hasTrackDataChanged || m_hasIngredientDataChanged || m_hasPantryDataChanged;
}

void XMPDocOpsTemporal::NoteChange(const char* part) {
    m_xmpDocOpsPtr->NoteChange(part);
}

void XMPDocOpsTemporal::NoteChange(const std::vector<const char*>& parts) {
    m_xmpDocOpsPtr->NoteChange(parts);
}

bool XMPDocOpsTemporal::HasPartChanged(const char* prefixInstanceID, const char* part) const {
    return m_xmpDocOpsPtr->HasPartChanged(prefixInstanceID, part);
}

bool XMPDocOpsTemporal::HasPartChanged(const char* prefixInstanceID, const std::vector<const char*>& parts) const {
    return m_xmpDocOpsPtr->HasPartChanged(prefixInstanceID, parts);
}

bool XMPDocOpsTemporal::GetPartChangeID(const char* part, std::string* changeInstanceID) const {
    return m_xmpDocOpsPtr->GetPartChangeID(part, changeInstanceID);
}

bool XMPDocOpsTemporal::GetPartChangeID(const std::vector<const char*>& parts, std::string* changeInstanceID) const {
    return m_xmpDocOpsPtr->GetPartChangeID(parts, changeInstanceID);
}

void XMPDocOpsTemporal::EnsureIDsExist(XMP_OptionBits options) {
    m_xmpDocOpsPtr->EnsureIDsExist(options);
}

void XMPDocOpsTemporal::CreateID(std::string* id, const char* prefix) {
    SXMPDocOps::CreateID(prefix, id);
}

void XMPDocOpsTemporal::SetAppName(const char* appName) {
    m_xmpDocOpsPtr->SetAppName(appName);
}

}  // namespace keltemporalxmp
