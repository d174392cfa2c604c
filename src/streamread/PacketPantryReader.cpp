#include <keltemporalxmp/streamread.hpp>

#include <limits>

#include "streamread/PacketDocuments.hpp"
#include "streamread/PacketParser.hpp"
#include "streamread/RdfWalk.hpp"

namespace keltemporalxmp {
namespace {

// The toolkit counts in int; a count beyond it is not ours to give.
bool FitsCount(std::size_t count) {
    return count <= static_cast<std::size_t>(std::numeric_limits<int>::max());
}

}  // namespace

struct [[gnu::visibility("hidden")]] PacketPantryReader::State {
    streamread::PacketDocuments documents{streamread::PantryItems::kExtracted};
    streamread::RdfWalk walk{documents};
    streamread::PacketParser parser{walk};
};

PacketPantryReader::PacketPantryReader() : m_state(std::make_unique<State>()) {}

PacketPantryReader::~PacketPantryReader() = default;

bool PacketPantryReader::Feed(std::string_view text) {
    return m_state->parser.Feed(text, false);
}

bool PacketPantryReader::Finish(std::vector<PantryItemDocument>& items) {
    if (!m_state->parser.Feed({}, true)) {
        return false;
    }
    m_state->walk.Finish();
    if (m_state->walk.GaveUp()) {
        return false;
    }
    streamread::PacketDocuments& documents = m_state->documents;
    documents.Finish();
    if (documents.PantryUnlistable() || !FitsCount(documents.Pantry().size())) {
        return false;
    }
    for (streamread::DocumentReading& document : documents.Pantry()) {
        if (document.IngredientsNotAList() || document.TrackList().Failed() || !FitsCount(document.IngredientItems())) {
            return false;
        }
    }
    int item = 0;
    for (streamread::DocumentReading& document : documents.Pantry()) {
        items.push_back({++item, document.InstanceID(), document.DocumentID(), std::move(document.TrackList().Tracks()),
                         static_cast<int>(document.IngredientItems())});
    }
    return true;
}

}  // namespace keltemporalxmp
