#include "collector/XmpDocumentSource.hpp"

#include <utility>

#include "docops/IngredientLayout.hpp"
#include "docops/TrackLayout.hpp"
#include "docops/TrackListReader.hpp"

namespace keltemporalxmp::collector {
namespace {

// Where a top-level property of a document sits in the top document's XMP,
// and the namespace of that path's first step: inside a pantry item every
// path starts at xmpMM:Pantry.
std::string PropertyPath(const std::string& documentPath, const char* path) {
    return documentPath.empty() ? std::string(path) : documentPath + "/" + path;
}

const char* PathNamespace(const std::string& documentPath, const char* propertyNS) {
    return documentPath.empty() ? propertyNS : kXMP_NS_XMP_MM;
}

std::string Field(const SXMPMeta& xmp, const std::string& itemPath, const char* name) {
    return docops::ReadText(xmp, kXMP_NS_XMP_MM, itemPath + "/stRef:" + name);
}

std::vector<IngredientUse> ReadIngredients(const SXMPMeta& xmp, const std::string& documentPath) {
    std::vector<IngredientUse> uses;
    const std::string listPath = PropertyPath(documentPath, docops::kIngredientsPath);
    for (const docops::ListItem& item : docops::StructItems(xmp, listPath.c_str())) {
        std::optional<IngredientUse> use =
            ReadIngredientUse({Field(xmp, item.m_path, "instanceID"), Field(xmp, item.m_path, "fromPart"),
                               Field(xmp, item.m_path, "toPart"), Field(xmp, item.m_path, "partMapping"),
                               Field(xmp, item.m_path, "maskMarkers")});
        if (use) {
            uses.push_back(std::move(*use));
        }
    }
    return uses;
}

}  // namespace

XmpDocumentSource::XmpDocumentSource(const SXMPMeta& xmp) : m_xmp(xmp) {
    for (docops::ListItem& item : docops::StructItems(m_xmp, docops::kPantryPath)) {
        std::string instanceID = docops::PantryItemInstanceID(m_xmp, item.m_path);
        if (!instanceID.empty()) {
            Document document;
            document.m_path = std::move(item.m_path);
            document.m_records.m_instanceID = instanceID;
            m_pantry.emplace(std::move(instanceID), std::move(document));
        }
    }
    m_top.m_records.m_instanceID = docops::DocumentInstanceID(m_xmp);
}

const DocumentRecords& XmpDocumentSource::Top(Content content) {
    return Read(m_top, content);
}

const DocumentRecords* XmpDocumentSource::Find(const std::string& instanceID, Content content) {
    const auto found = m_pantry.find(instanceID);
    return found == m_pantry.end() ? nullptr : &Read(found->second, content);
}

DocumentRecords& XmpDocumentSource::Read(Document& document, Content content) {
    if (!document.m_ingredientsRead) {
        document.m_records.m_ingredients = ReadIngredients(m_xmp, document.m_path);
        document.m_ingredientsRead = true;
    }
    if (content == Content::kTracksAndIngredients && !document.m_tracksRead) {
        // Whole or not at all: a failed read leaves no half list behind.
        std::vector<XMPTrack> tracks;
        docops::ReadTrackList(m_xmp, PathNamespace(document.m_path, kXMP_NS_DM),
                              PropertyPath(document.m_path, docops::kTracksPath).c_str(), tracks,
                              docops::KeywordCuePoints::kKeptAsCuePoints);
        document.m_records.m_tracks = std::move(tracks);
        document.m_tracksRead = true;
    }
    return document.m_records;
}

}  // namespace keltemporalxmp::collector
