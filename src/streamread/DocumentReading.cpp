#include "streamread/DocumentReading.hpp"

#include <utility>

#include "docops/IngredientLayout.hpp"
#include "docops/TrackLayout.hpp"

namespace keltemporalxmp::streamread {
namespace {

constexpr std::string_view kInstanceIDPath = "xmpMM:InstanceID";
constexpr std::string_view kDocumentIDPath = "xmpMM:DocumentID";
constexpr std::string_view kFieldPrefix = "stRef:";

bool IsSimple(XMP_OptionBits options) {
    return (options & kXMP_PropCompositeMask) == 0;
}

// The ingredient field an item's field, or a top-level property, is read into.
const docops::IngredientFieldLayout* IngredientField(std::string_view name, bool atTopLevel) {
    if (!atTopLevel) {
        if (!name.starts_with(kFieldPrefix)) {
            return nullptr;
        }
        name.remove_prefix(kFieldPrefix.size());
    }
    for (const docops::IngredientFieldLayout& layout : docops::kIngredientFields) {
        if (layout.m_readAtTopLevel == atTopLevel && name == layout.m_readName) {
            return &layout;
        }
    }
    return nullptr;
}

}  // namespace

DocumentReading::DocumentReading(std::string tracksPath, docops::KeywordCuePoints keywords)
    : m_tracks(std::move(tracksPath), keywords) {}

bool DocumentReading::Take(const TreeNode& node, std::string& value) {
    if (node.depth == 0) {
        FinishPart();
        return TakeProperty(node, value);
    }
    switch (m_part) {
        case Part::kTracks:
            return m_tracks.Take(node, value);
        case Part::kIngredients:
            return TakeIngredientNode(node, value);
        case Part::kNone:
            return false;
    }
    return false;
}

void DocumentReading::Finish() {
    FinishPart();
}

bool DocumentReading::TakeProperty(const TreeNode& node, std::string& value) {
    if (node.name == kInstanceIDPath || node.name == kDocumentIDPath) {
        if (IsSimple(node.options)) {
            (node.name == kInstanceIDPath ? m_instanceID : m_documentID) = std::move(value);
        }
        return false;
    }
    if (node.name == docops::kTracksPath) {
        m_part = m_tracks.Start(node.options) ? Part::kTracks : Part::kNone;
        return m_part != Part::kNone;
    }
    if (node.name == docops::kIngredientsPath) {
        m_part = (node.options & docops::kListForm) != 0 ? Part::kIngredients : Part::kNone;
        m_ingredientsNotAList = m_part == Part::kNone;
        return m_part != Part::kNone;
    }
    if (const docops::IngredientFieldLayout* layout = IngredientField(node.name, true);
        layout != nullptr && IsSimple(node.options)) {
        if (!m_topLevelFields) {
            m_topLevelFields = std::make_unique<XMP_internalIngredient>();
        }
        m_topLevelFields->SetIngredientField(layout->m_field, value.c_str());
    }
    return false;
}

// Items at depth 1, their fields at depth 2; only simple fields are read.
bool DocumentReading::TakeIngredientNode(const TreeNode& node, std::string& value) {
    if (node.depth == 1) {
        ++m_ingredientItems;
        m_inIngredient = (node.options & docops::kItemForm) != 0;
        if (m_inIngredient) {
            m_ingredients.emplace_back();
        }
        return m_inIngredient;
    }
    if (node.depth == 2 && m_inIngredient && IsSimple(node.options)) {
        if (const docops::IngredientFieldLayout* layout = IngredientField(node.name, false)) {
            m_ingredients.back().SetIngredientField(layout->m_field, value.c_str());
        }
    }
    return false;
}

void DocumentReading::FinishPart() {
    if (m_part == Part::kTracks) {
        m_tracks.Finish();
    }
    m_part = Part::kNone;
    m_inIngredient = false;
}

}  // namespace keltemporalxmp::streamread
