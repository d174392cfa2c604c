// XMPDocOpsTemporal's pantry (xmpMM:Pantry): read at its first use, kept by
// instance ID, written back whole by PrepareForSave.

#include <keltemporalxmp/docops.hpp>

#include <algorithm>
#include <optional>

#include "docops/IngredientLayout.hpp"
#include "docops/ListRead.hpp"
#include "docops/TrackLayout.hpp"

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
    docops::ReadKeepingFailure(m_pantryReadFailure, [&] {
        for (const docops::ListItem& item : docops::StructItems(*m_xmpMetaPtr, kPantryPath)) {
            SXMPMeta document;
            ExtractXMPMetaFromPantry(&document, *m_xmpMetaPtr, item.m_path.c_str());
            AddToPantry(document);
        }
    });
}

// Nested pantries are flattened into this one by reference: their items are
// copied only when this pantry is written.
void XMPDocOpsTemporal::AddToPantry(const SXMPMeta& document) {
    const std::string instanceID = docops::DocumentInstanceID(document);
    if (instanceID.empty() || m_mergedPantrySources.insert(instanceID).second) {
        for (const docops::ListItem& item : docops::StructItems(document, kPantryPath)) {
            const std::string nestedID = docops::PantryItemInstanceID(document, item.m_path);
            if (!nestedID.empty()) {
                m_pantry.try_emplace(nestedID, nestedID, document, item.m_index);
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
    docops::RequireCompleteRead(m_pantryReadFailure, kPantryPath);
    // A document used in itself is copied as it stood before its pantry is replaced.
    std::optional<SXMPMeta> before;
    if (std::any_of(m_pantry.begin(), m_pantry.end(),
                    [&](const auto& entry) { return docops::SharesTree(entry.second.m_SourceXMPMeta, meta); })) {
        before = meta.Clone();
    }
    meta.DeleteProperty(kXMP_NS_XMP_MM, kPantryPath);
    std::size_t index = 0;
    for (const auto& [key, entry] : m_pantry) {
        const SXMPMeta& source = docops::SharesTree(entry.m_SourceXMPMeta, meta) ? *before : entry.m_SourceXMPMeta;
        meta.AppendArrayItem(kXMP_NS_XMP_MM, kPantryPath, docops::kListForm, "", docops::kItemForm);
        std::string itemPath(kPantryPath);
        docops::AppendItemIndex(itemPath, ++index);
        if (entry.m_SourcePantryIndex == 0) {
            SXMPUtils::DuplicateSubtree(source, &meta, "*", "*", kXMP_NS_XMP_MM, itemPath.c_str());
            // Its own pantry is flattened into this one.
            meta.DeleteProperty(kXMP_NS_XMP_MM, (itemPath + "/xmpMM:Pantry").c_str());
        } else {
            std::string sourceItem(kPantryPath);
            docops::AppendItemIndex(sourceItem, static_cast<std::size_t>(entry.m_SourcePantryIndex));
            SXMPUtils::DuplicateSubtree(source, &meta, kXMP_NS_XMP_MM, sourceItem.c_str(), kXMP_NS_XMP_MM,
                                        itemPath.c_str());
        }
    }
}

}  // namespace keltemporalxmp
