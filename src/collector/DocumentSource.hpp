#pragma once
// What the collector reads of a document, as plain records, and where it
// gets them. The walk only ever sees these, so a reader of another form of
// the metadata can feed it by implementing DocumentSource.

#include <string>
#include <vector>

#include <keltemporalxmp/records.hpp>

#include "collector/IngredientUse.hpp"

namespace keltemporalxmp {
namespace [[gnu::visibility("hidden")]] collector {

struct DocumentRecords {
    std::string m_instanceID;
    // Each marker keeps the rates its times were read at; cue points that
    // carry keywords stay cue points. Empty until asked for (see Content).
    std::vector<XMPTrack> m_tracks;
    // In the order of the document's ingredient list; items whose parts
    // cannot be read are left out.
    std::vector<IngredientUse> m_ingredients;
};

// Tracks are read only when markers are collected from the document, so a
// document whose tracks cannot be read fails a collection only if it needs
// them.
enum class Content { kIngredients, kTracksAndIngredients };

// Each document's records are read at most once per source and stay at the
// same address for the source's lifetime; asking again for more content
// fills in the same record. Read failures raise XMP_Error.
class DocumentSource {
public:
    virtual ~DocumentSource() = default;

    virtual const DocumentRecords& Top(Content content) = 0;
    // A document of the top document's pantry; null when none has that
    // instance ID.
    virtual const DocumentRecords* Find(const std::string& instanceID, Content content) = 0;
};

}  // namespace collector
}  // namespace keltemporalxmp
