#pragma once
// Shared pieces of the ingredient and pantry tests.

#include <cstdint>
#include <string>
#include <vector>

#include <keltemporalxmp/docops.hpp>

namespace ingredients_test {

using keltemporalxmp::XMP_internalIngredient;
using keltemporalxmp::XMPDocOpsTemporal;
using Field = XMP_internalIngredient::_ingredientFieldEnum;

inline constexpr std::int64_t kSecond = 254016000000;

inline std::string Property(const SXMPMeta& meta, const char* ns, const std::string& path) {
    std::string value;
    meta.GetProperty(ns, path.c_str(), &value, nullptr);
    return value;
}

inline std::string InstanceID(const SXMPMeta& meta) {
    return Property(meta, kXMP_NS_XMP_MM, "xmpMM:InstanceID");
}

// Every node with its qualifiers, in document order: "path=value (options)".
inline std::vector<std::string> Nodes(const SXMPMeta& meta) {
    std::vector<std::string> nodes;
    SXMPIterator walk(meta);
    std::string path;
    std::string value;
    XMP_OptionBits options = 0;
    while (walk.Next(nullptr, &path, &value, &options)) {
        if (!path.empty()) {
            nodes.push_back(path + "=" + value + " (" + std::to_string(options & ~kXMP_SchemaNode) + ")");
        }
    }
    return nodes;
}

// A source document: an instance ID, a title in three languages, and a
// marker track.
inline SXMPMeta SourceDocument(const char* instanceID, const char* title) {
    SXMPMeta meta;
    meta.SetProperty(kXMP_NS_XMP_MM, "xmpMM:InstanceID", instanceID);
    meta.SetProperty(kXMP_NS_XMP_MM, "xmpMM:DocumentID", (std::string("xmp.did:") + title).c_str());
    meta.SetLocalizedText(kXMP_NS_DC, "dc:title", "", "x-default", title);
    meta.SetLocalizedText(kXMP_NS_DC, "dc:title", "de", "de-DE", (std::string("de ") + title).c_str());
    meta.SetLocalizedText(kXMP_NS_DC, "dc:title", "fr", "fr-FR", (std::string("fr ") + title).c_str());
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    keltemporalxmp::XMPTrack track("Markers", 25, 1);
    track.AddMarker(keltemporalxmp::XMPTemporalMetadataInfo("m", "", kSecond, kSecond, "Comment", "", "", "", {},
                                                            "", "", "guid-1", nullptr));
    doc.AddTrack("Markers", track);
    doc.PrepareForSave("");
    return meta;
}

inline std::vector<XMP_internalIngredient> Ingredients(XMPDocOpsTemporal& doc) {
    std::vector<XMP_internalIngredient> list;
    for (auto entry = doc.IngredientListIteratorBegin(); entry != doc.IngredientListIteratorEnd(); ++entry) {
        list.push_back(entry->second);
    }
    return list;
}

inline std::string Text(const XMP_internalIngredient& ingredient, Field field) {
    return *ingredient.GetIngredientFieldPtr(field);
}

inline std::vector<std::string> PantryIDs(const SXMPMeta& meta) {
    std::vector<std::string> ids;
    const XMP_Index count = meta.CountArrayItems(kXMP_NS_XMP_MM, "xmpMM:Pantry");
    for (XMP_Index index = 1; index <= count; ++index) {
        ids.push_back(Property(meta, kXMP_NS_XMP_MM, "xmpMM:Pantry[" + std::to_string(index) + "]/xmpMM:InstanceID"));
    }
    return ids;
}

// The document that doc's pantry holds under instanceID (empty when none).
inline SXMPMeta Extracted(const SXMPMeta& doc, const char* instanceID) {
    std::string path;
    SXMPMeta out;
    if (XMPDocOpsTemporal::LookupXMPPantryPathGivenInstanceId(doc, instanceID, &path)) {
        XMPDocOpsTemporal::ExtractXMPMetaFromPantry(&out, doc, path.c_str());
    }
    return out;
}

// Parts in ticks at the tick rate, for comparing spans.
inline std::string Part(std::int64_t start, std::int64_t duration) {
    std::string part;
    XMPDocOpsTemporal::CreatePartString(&part, start, 1, 1, duration, 1, 1, INT64_MAX, "");
    return part;
}

}  // namespace ingredients_test
