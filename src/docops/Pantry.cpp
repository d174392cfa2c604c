// XMPDocOpsTemporal's pantry (xmpMM:Pantry): read at its first use, kept by
// instance ID, written back whole by PrepareForSave.

#include <keltemporalxmp/docops.hpp>

#include <algorithm>
#include <optional>

#include "docops/IngredientLayout.hpp"

namespace keltemporalxmp {

using docops::kPantryPath;

// The flag goes first: a read that fails part-way is not tried again. The
// changed flag stays as adding leaves it: a pantry read is written again.
void XMPDocOpsTemporal::CachePantry() {
    if (m_cachedPantryData) {
        return;
    }
    m_cachedPantryData = true;
    if (m_xmpMetaPtr == nullptr) {
        return;
    }
    const SXMPMeta& meta = *m_xmpMetaPtr;
    const XMP_Index count = docops::CountListItems(meta, kPantryPath);
    for (XMP_Index index = 1; index <= count; ++index) {
        const std::string itemPath = docops::ListItemPath(kPantryPath, index);
        if (!docops::IsStructItem(meta, itemPath)) {
            continue;
        }
        SXMPMeta document;
        ExtractXMPMetaFromPantry(&document, meta, itemPath.c_str());
        AddToPantry(document);
    }
}

// Nested pantries are flattened into this one by reference: their items are
// copied only when this pantry is written.
void XMPDocOpsTemporal::AddToPantry(const SXMPMeta& document) {
    const std::string instanceID = docops::DocumentInstanceID(document);
    if (instanceID.empty() || m_mergedPantrySources.insert(instanceID).second) {
        const XMP_Index count = docops::CountListItems(document, kPantryPath);
        for (XMP_Index index = 1; index <= count; ++index) {
            const std::string itemPath = docops::ListItemPath(kPantryPath, index);
            if (!docops::IsStructItem(document, itemPath)) {
                continue;
            }
            const std::string nestedID = docops::PantryItemInstanceID(document, itemPath);
            if (!nestedID.empty()) {
                m_pantry.try_emplace(nestedID, nestedID, document, index);
                m_hasPantryDataChanged = true;
            }
        }
    }
    if (!instanceID.empty()) {
        m_pantry.try_emplace(instanceID, instanceID, document, 0);
        m_hasPantryDataChanged = true;
    }
}

void XMPDocOpsTemporal::ErasePantry() {
    m_pantry.clear();
    m_mergedPantrySources.clear();
}

// Read first, so that marking an unread pantry changed cannot wipe it.
void XMPDocOpsTemporal::WritePantry() {
    SXMPMeta& meta = MetaToWrite();
    CachePantry();
    // A document used in itself is copied as it stood before its pantry is replaced.
    std::optional<SXMPMeta> before;
    if (std::any_of(m_pantry.begin(), m_pantry.end(),
                    [&](const auto& entry) { return docops::SharesTree(entry.second.m_SourceXMPMeta, meta); })) {
        before = meta.Clone();
    }
    meta.DeleteProperty(kXMP_NS_XMP_MM, kPantryPath);
    XMP_Index index = 0;
    for (const auto& [key, entry] : m_pantry) {
        const SXMPMeta& source = docops::SharesTree(entry.m_SourceXMPMeta, meta) ? *before : entry.m_SourceXMPMeta;
        meta.AppendArrayItem(kXMP_NS_XMP_MM, kPantryPath, docops::kListForm, "", docops::kItemForm);
        const std::string itemPath = docops::ListItemPath(kPantryPath, ++index);
        if (entry.m_SourcePantryIndex == 0) {
            SXMPUtils::DuplicateSubtree(source, &meta, "*", "*", kXMP_NS_XMP_MM, itemPath.c_str());
            // Its own pantry is flattened into this one.
            meta.DeleteProperty(kXMP_NS_XMP_MM, (itemPath + "/xmpMM:Pantry").c_str());
        } else {
            const std::string sourceItem = docops::ListItemPath(kPantryPath, entry.m_SourcePantryIndex);
            SXMPUtils::DuplicateSubtree(source, &meta, kXMP_NS_XMP_MM, sourceItem.c_str(), kXMP_NS_XMP_MM,
                                        itemPath.c_str());
        }
    }
}

}  // namespace keltemporalxmp
