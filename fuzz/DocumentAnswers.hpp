#pragma once
// Both readers on one packet for what the collector and the ingredient list
// read: the collection of every mask over the whole timeline and over a
// range, and the ingredient list, as text to compare. Shared by the
// differential fuzz target and the streaming reader's tests.

#include <cstddef>
#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include <keltemporalxmp/collector.hpp>
#include <keltemporalxmp/markers.hpp>
#include <keltemporalxmp/streamread.hpp>

#include "TrackAnswers.hpp"

namespace keltemporalxmp::fuzz {

using Collection = XMPTemporalMetadataCollector::Collection;

struct CollectionCall {
    unsigned char mask;
    std::int64_t start;
    std::int64_t duration;
};

// Few records: the answers differ long before a large bound is reached.
constexpr std::size_t kAnswerMaxRecords = 2000;
constexpr std::int64_t kWholeTimeline = std::numeric_limits<std::int64_t>::max();

inline const CollectionCall kCollectionCalls[] = {
    {XMPTemporalMetadataCollector::kDefaultCollectionMask, 0, kWholeTimeline},
    {0x7F, 0, kWholeTimeline},
    {0x01 | 0x02 | 0x20 | 0x40, 0, kWholeTimeline},
    {0x08 | 0x10, 0, kWholeTimeline},
    {XMPTemporalMetadataCollector::kDefaultCollectionMask, 1000, -400},
};

inline std::string DescribeCollection(const Collection& collection) {
    std::ostringstream out;
    for (const auto& [key, record] : collection) {
        out << key << " ";
        DescribeRecord(out, record);
    }
    return out.str();
}

inline std::string DescribeIngredients(const XMPDocOpsTemporal::IngredientList& ingredients) {
    std::string text;
    for (const auto& [key, ingredient] : ingredients) {
        text += key;
        for (int field = XMP_internalIngredient::kIngredientFieldKey;
             field <= XMP_internalIngredient::kIngredientFieldMaskMarkers; ++field) {
            text +=
                " [" +
                *ingredient.GetIngredientFieldPtr(static_cast<XMP_internalIngredient::_ingredientFieldEnum>(field)) +
                "]";
        }
        text += "\n";
    }
    return text;
}

// Each call's answer, or its error, then the ingredient list.
inline std::string DescribeDocuments(const std::function<void(const CollectionCall&, Collection&)>& collect,
                                     const std::function<void(XMPDocOpsTemporal::IngredientList&)>& ingredients) {
    std::string text;
    for (const CollectionCall& call : kCollectionCalls) {
        try {
            Collection collection;
            collect(call, collection);
            text += "collection\n" + DescribeCollection(collection);
        } catch (...) {
            text += "collection " + ErrorText(std::current_exception()) + "\n";
        }
    }
    XMPDocOpsTemporal::IngredientList list;
    ingredients(list);
    return text + "ingredients\n" + DescribeIngredients(list);
}

inline Answer ToolkitDocumentsAnswer(std::string_view packet) {
    try {
        SXMPMeta meta(packet.data(), static_cast<XMP_StringLen>(packet.size()));
        return {false, DescribeDocuments(
                           [&](const CollectionCall& call, Collection& collection) {
                               XMPTemporalMetadataCollector collector(call.mask, meta, call.start, call.duration,
                                                                      kAnswerMaxRecords);
                               collection = std::move(collector.GetXMPTemporalMetadataInfoCollection());
                           },
                           [&](XMPDocOpsTemporal::IngredientList& list) {
                               XMPDocOpsTemporal document;
                               document.OpenXMP(&meta, "");
                               list.insert(document.IngredientListIteratorBegin(),
                                           document.IngredientListIteratorEnd());
                           })};
    } catch (...) {
        return {false, ErrorText(std::current_exception())};
    }
}

inline Answer StreamDocumentsAnswer(std::string_view packet, std::size_t pieceBytes = 0) {
    PacketDocumentReader reader;
    const std::size_t step = pieceBytes == 0 ? std::max<std::size_t>(packet.size(), 1) : pieceBytes;
    for (std::size_t offset = 0; offset < packet.size(); offset += step) {
        if (!reader.Feed(packet.substr(offset, step))) {
            return {true, ""};
        }
    }
    if (!reader.Finish()) {
        return {true, ""};
    }
    return {false, DescribeDocuments(
                       [&](const CollectionCall& call, Collection& collection) {
                           reader.Collect(call.mask, call.start, call.duration, kAnswerMaxRecords, collection);
                       },
                       [&](XMPDocOpsTemporal::IngredientList& list) { reader.Ingredients(list); })};
}

// The pantry as the tool lists it: each item's document, its markers
// counted as ReadAllMarkers gives them.
inline std::string DescribePantry(const std::vector<PantryItemDocument>& items) {
    std::string text = "pantry\n";
    for (const PantryItemDocument& item : items) {
        MarkerList markers;
        AppendMarkersOfTracks(item.tracks, markers);
        text += std::to_string(item.item) + " [" + item.instanceID + "] [" + item.documentID + "] " +
                std::to_string(markers.size()) + " markers in " + std::to_string(item.tracks.size()) + " tracks, " +
                std::to_string(item.ingredients) + " ingredients\n" + Describe(item.tracks);
    }
    return text;
}

inline Answer ToolkitPantryAnswer(std::string_view packet) {
    try {
        const SXMPMeta meta(packet.data(), static_cast<XMP_StringLen>(packet.size()));
        std::vector<PantryItemDocument> items;
        const int count = meta.CountArrayItems(kXMP_NS_XMP_MM, "xmpMM:Pantry");
        for (int item = 1; item <= count; ++item) {
            SXMPMeta source;
            XMPDocOpsTemporal::ExtractXMPMetaFromPantry(&source, meta,
                                                        ("xmpMM:Pantry[" + std::to_string(item) + "]").c_str());
            XMPDocOpsTemporal document;
            document.OpenXMP(&source, "");
            std::string instanceID;
            std::string documentID;
            source.GetProperty(kXMP_NS_XMP_MM, "xmpMM:InstanceID", &instanceID, nullptr);
            source.GetProperty(kXMP_NS_XMP_MM, "xmpMM:DocumentID", &documentID, nullptr);
            items.push_back({item, instanceID, documentID,
                             {document.TrackListIteratorBegin(), document.TrackListIteratorEnd()},
                             source.CountArrayItems(kXMP_NS_XMP_MM, "xmpMM:Ingredients")});
        }
        return {false, DescribePantry(items)};
    } catch (...) {
        return {false, ErrorText(std::current_exception())};
    }
}

inline Answer StreamPantryAnswer(std::string_view packet, std::size_t pieceBytes = 0) {
    PacketPantryReader reader;
    const std::size_t step = pieceBytes == 0 ? std::max<std::size_t>(packet.size(), 1) : pieceBytes;
    for (std::size_t offset = 0; offset < packet.size(); offset += step) {
        if (!reader.Feed(packet.substr(offset, step))) {
            return {true, ""};
        }
    }
    std::vector<PantryItemDocument> items;
    if (!reader.Finish(items)) {
        return {true, ""};
    }
    return {false, DescribePantry(items)};
}

}  // namespace keltemporalxmp::fuzz
