#pragma once
// What the streaming reader keeps of one document (the packet's own, or an
// item of its xmpMM:Pantry) as the nodes of its properties arrive: its
// instance and document IDs, its track list and the struct items of its
// ingredient list, read the way the toolkit path reads them by path.

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <keltemporalxmp/docops.hpp>

#include "streamread/RdfWalk.hpp"
#include "streamread/TrackListReading.hpp"

namespace keltemporalxmp {
namespace [[gnu::visibility("hidden")]] streamread {

class DocumentReading {
public:
    // tracksPath names the track list in messages.
    DocumentReading(std::string tracksPath, docops::KeywordCuePoints keywords);

    // A node of one of the document's properties, depth 0 for the property.
    bool Take(const TreeNode& node, std::string& value);
    // After its last node.
    void Finish();

    const std::string& InstanceID() const { return m_instanceID; }
    const std::string& DocumentID() const { return m_documentID; }
    TrackListReading& TrackList() { return m_tracks; }
    // In list order, with the fields read from the item; the fields read from
    // top-level properties are in TopLevelFields.
    const std::vector<XMP_internalIngredient>& Ingredients() const { return m_ingredients; }
    // The ingredient fields that come from the document's own properties;
    // null when it has none.
    const XMP_internalIngredient* TopLevelFields() const { return m_topLevelFields.get(); }
    // Items of any form in its ingredient list, as the toolkit counts them.
    std::size_t IngredientItems() const { return m_ingredientItems; }
    // Its xmpMM:Ingredients is there but no list: the toolkit will not count it.
    bool IngredientsNotAList() const { return m_ingredientsNotAList; }

private:
    enum class Part { kNone, kTracks, kIngredients };

    bool TakeProperty(const TreeNode& node, std::string& value);
    bool TakeIngredientNode(const TreeNode& node, std::string& value);
    void FinishPart();

    std::string m_instanceID;
    std::string m_documentID;
    TrackListReading m_tracks;
    std::vector<XMP_internalIngredient> m_ingredients;
    // Made when first needed: a pantry can hold many documents.
    std::unique_ptr<XMP_internalIngredient> m_topLevelFields;
    Part m_part = Part::kNone;
    bool m_inIngredient = false;
    std::size_t m_ingredientItems = 0;
    bool m_ingredientsNotAList = false;
};

}  // namespace streamread
}  // namespace keltemporalxmp
