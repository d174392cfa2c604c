#include "streamread/StreamDocumentSource.hpp"

#include <utility>

namespace keltemporalxmp::streamread {
namespace {

using Field = XMP_internalIngredient;

std::string Text(const XMP_internalIngredient& ingredient, Field::_ingredientFieldEnum field) {
    return *ingredient.GetIngredientFieldPtr(field);
}

std::vector<collector::IngredientUse> IngredientUses(const DocumentReading& reading) {
    std::vector<collector::IngredientUse> uses;
    for (const XMP_internalIngredient& item : reading.Ingredients()) {
        std::optional<collector::IngredientUse> use = collector::ReadIngredientUse(
            {Text(item, Field::kIngredientFieldInstanceID), Text(item, Field::kIngredientFieldFromPart),
             Text(item, Field::kIngredientFieldToPart), Text(item, Field::kIngredientFieldPartMapping),
             Text(item, Field::kIngredientFieldMaskMarkers)});
        if (use) {
            uses.push_back(std::move(*use));
        }
    }
    return uses;
}

}  // namespace

StreamDocumentSource::StreamDocumentSource(PacketDocuments& documents) {
    for (DocumentReading& item : documents.Pantry()) {
        if (!item.InstanceID().empty()) {
            Document document;
            document.m_reading = &item;
            document.m_records.m_instanceID = item.InstanceID();
            m_pantry.emplace(item.InstanceID(), std::move(document));
        }
    }
    m_top.m_reading = &documents.Top();
    m_top.m_records.m_instanceID = documents.Top().InstanceID();
}

const collector::DocumentRecords& StreamDocumentSource::Top(collector::Content content) {
    return Read(m_top, content);
}

const collector::DocumentRecords* StreamDocumentSource::Find(const std::string& instanceID,
                                                             collector::Content content) {
    const auto found = m_pantry.find(instanceID);
    return found == m_pantry.end() ? nullptr : &Read(found->second, content);
}

collector::DocumentRecords& StreamDocumentSource::Read(Document& document, collector::Content content) {
    if (!document.m_ingredientsRead) {
        document.m_records.m_ingredients = IngredientUses(*document.m_reading);
        document.m_ingredientsRead = true;
    }
    if (content == collector::Content::kTracksAndIngredients && !document.m_tracksRead) {
        // Raises what reading them raised, every time they are asked for.
        document.m_records.m_tracks = std::move(document.m_reading->TrackList().Tracks());
        document.m_tracksRead = true;
    }
    return document.m_records;
}

}  // namespace keltemporalxmp::streamread
