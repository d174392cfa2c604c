#include <keltemporalxmp/streamread.hpp>

#include <optional>

#include "collector/Walk.hpp"
#include "docops/IngredientLayout.hpp"
#include "docops/PartSpans.hpp"
#include "streamread/PacketDocuments.hpp"
#include "streamread/PacketParser.hpp"
#include "streamread/RdfWalk.hpp"
#include "streamread/StreamDocumentSource.hpp"

namespace keltemporalxmp {

struct [[gnu::visibility("hidden")]] PacketDocumentReader::State {
    streamread::PacketDocuments documents;
    streamread::RdfWalk walk{documents};
    streamread::PacketParser parser{walk};
    // Once the packet is read whole; kept so that each document is read once.
    std::optional<streamread::StreamDocumentSource> source;
};

PacketDocumentReader::PacketDocumentReader() : m_state(std::make_unique<State>()) {}

PacketDocumentReader::~PacketDocumentReader() = default;

bool PacketDocumentReader::Feed(std::string_view text) {
    return m_state->parser.Feed(text, false);
}

bool PacketDocumentReader::Finish() {
    if (m_state->source) {
        return true;
    }
    if (!m_state->parser.Feed({}, true)) {
        return false;
    }
    m_state->walk.Finish();
    if (m_state->walk.GaveUp()) {
        return false;
    }
    m_state->documents.Finish();
    m_state->source.emplace(m_state->documents);
    return true;
}

void PacketDocumentReader::Collect(unsigned char mask, std::int64_t rangeStart, std::int64_t rangeDuration,
                                   std::size_t maxRecords, XMPTemporalMetadataCollector::Collection& collection) {
    if (!m_state->source) {
        throw XMP_Error(kXMPErr_BadParam, "Collecting from a packet that was not read whole");
    }
    collector::Walk(*m_state->source, collection, maxRecords).Run(mask, rangeStart, rangeDuration);
}

void PacketDocumentReader::Ingredients(XMPDocOpsTemporal::IngredientList& ingredients) const {
    if (!m_state->source) {
        throw XMP_Error(kXMPErr_BadParam, "Listing the ingredients of a packet that was not read whole");
    }
    const streamread::DocumentReading& top = m_state->documents.Top();
    const XMP_internalIngredient* topLevelFields = top.TopLevelFields();
    for (XMP_internalIngredient ingredient : top.Ingredients()) {
        for (const docops::IngredientFieldLayout& layout : docops::kIngredientFields) {
            if (layout.m_readAtTopLevel && topLevelFields != nullptr) {
                ingredient.SetIngredientField(layout.m_field,
                                              topLevelFields->GetIngredientFieldPtr(layout.m_field)->c_str());
            }
        }
        const std::optional<docops::PartSpan> from = docops::TryParsePartSpan(
            *ingredient.GetIngredientFieldPtr(XMP_internalIngredient::kIngredientFieldFromPart));
        const std::string key =
            docops::IngredientKey(*ingredient.GetIngredientFieldPtr(XMP_internalIngredient::kIngredientFieldInstanceID),
                                  from.value_or(docops::PartSpan{}));
        ingredient.SetIngredientField(XMP_internalIngredient::kIngredientFieldKey, key.c_str());
        ingredients.emplace(key, std::move(ingredient));
    }
}

bool StreamCollect(std::string_view packet, unsigned char mask, std::int64_t rangeStart, std::int64_t rangeDuration,
                   std::size_t maxRecords, XMPTemporalMetadataCollector::Collection& collection) {
    PacketDocumentReader reader;
    if (!reader.Feed(packet) || !reader.Finish()) {
        return false;
    }
    reader.Collect(mask, rangeStart, rangeDuration, maxRecords, collection);
    return true;
}

}  // namespace keltemporalxmp
