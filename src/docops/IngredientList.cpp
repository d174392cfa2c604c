// XMPDocOpsTemporal's ingredient list (xmpMM:Ingredients): read at its first
// use, kept by key, written back whole by PrepareForSave.

#include <keltemporalxmp/docops.hpp>

#include <algorithm>
#include <iterator>

#include "docops/IngredientLayout.hpp"
#include "docops/ListRead.hpp"
#include "docops/PartSpans.hpp"
#include "docops/TrackLayout.hpp"

namespace keltemporalxmp {

using docops::kIngredientsPath;

// The flag goes first: a read that fails part-way is not tried again.
void XMPDocOpsTemporal::CacheIngredientList() {
    if (m_cachedIngredientData) {
        return;
    }
    m_cachedIngredientData = true;
    if (m_xmpMetaPtr == nullptr) {
        return;
    }
    docops::ReadKeepingFailure(m_ingredientReadFailure, [&] {
        for (const docops::ListItem& item : docops::StructItems(*m_xmpMetaPtr, kIngredientsPath)) {
            XMP_internalIngredient ingredient = docops::ReadIngredientItem(*m_xmpMetaPtr, item.m_path);
            const std::optional<docops::PartSpan> from = docops::TryParsePartSpan(
                *ingredient.GetIngredientFieldPtr(XMP_internalIngredient::kIngredientFieldFromPart));
            const std::string key = docops::IngredientKey(
                *ingredient.GetIngredientFieldPtr(XMP_internalIngredient::kIngredientFieldInstanceID),
                from.value_or(docops::PartSpan{}));
            ingredient.SetIngredientField(XMP_internalIngredient::kIngredientFieldKey, key.c_str());
            m_ingredients.emplace(key, std::move(ingredient));
        }
    });
}

void XMPDocOpsTemporal::CacheIngredientsAndPantry() {
    CacheIngredientList();
    CachePantry();
}

// Read first, so that marking an unread list changed cannot wipe it.
void XMPDocOpsTemporal::WriteIngredientList() {
    SXMPMeta& meta = MetaToWrite();
    CacheIngredientList();
    docops::RequireCompleteRead(m_ingredientReadFailure, kIngredientsPath);
    meta.DeleteProperty(kXMP_NS_XMP_MM, kIngredientsPath);
    std::size_t index = 0;
    for (const auto& [key, ingredient] : m_ingredients) {
        meta.AppendArrayItem(kXMP_NS_XMP_MM, kIngredientsPath, docops::kListForm, "", docops::kItemForm);
        std::string itemPath(kIngredientsPath);
        docops::AppendItemIndex(itemPath, ++index);
        for (const docops::IngredientFieldLayout& layout : docops::kIngredientFields) {
            const std::string& text = *ingredient.GetIngredientFieldPtr(layout.m_field);
            if (!text.empty()) {
                meta.SetStructField(kXMP_NS_XMP_MM, itemPath.c_str(), kXMP_NS_XMP_ResourceRef, layout.m_writtenName,
                                    text.c_str());
            }
        }
    }
}

SXMPMeta& XMPDocOpsTemporal::MetaToWrite() const {
    if (m_xmpMetaPtr == nullptr) {
        docops::ThrowNullMeta();
    }
    return *m_xmpMetaPtr;
}

void XMPDocOpsTemporal::RemoveIngredient(int index) {
    CacheIngredientsAndPantry();
    m_mergedPantrySources.clear();
    if (index < 1 || static_cast<std::size_t>(index) > m_ingredients.size()) {
        return;
    }
    RemoveIngredient(std::next(m_ingredients.begin(), index - 1));
}

void XMPDocOpsTemporal::RemoveIngredient(IngredientList::iterator position) {
    CacheIngredientsAndPantry();
    m_mergedPantrySources.clear();
    if (position == m_ingredients.end()) {
        return;
    }
    // The source's document stays in the pantry while another use remains.
    const std::string& instanceID =
        *position->second.GetIngredientFieldPtr(XMP_internalIngredient::kIngredientFieldInstanceID);
    const auto uses = std::count_if(m_ingredients.begin(), m_ingredients.end(), [&](const auto& entry) {
        return *entry.second.GetIngredientFieldPtr(XMP_internalIngredient::kIngredientFieldInstanceID) == instanceID;
    });
    if (uses == 1) {
        m_pantry.erase(instanceID);
        m_hasPantryDataChanged = true;
    }
    m_ingredients.erase(position);
    m_hasIngredientDataChanged = true;
}

// Both lists are read first, so that a later read cannot bring them back.
void XMPDocOpsTemporal::ClearIngredients() {
    CacheIngredientsAndPantry();
    m_ingredients.clear();
    ErasePantry();
    m_hasIngredientDataChanged = true;
    m_hasPantryDataChanged = true;
}

XMPDocOpsTemporal::IngredientList::iterator XMPDocOpsTemporal::IngredientListIteratorBegin() {
    CacheIngredientList();
    return m_ingredients.begin();
}

XMPDocOpsTemporal::IngredientList::iterator XMPDocOpsTemporal::IngredientListIteratorEnd() {
    CacheIngredientList();
    return m_ingredients.end();
}

}  // namespace keltemporalxmp
