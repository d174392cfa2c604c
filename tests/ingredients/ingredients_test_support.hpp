#pragma once
// Shared pieces of the ingredient and pantry tests.

#include <cstdint>
#include <string>
#include <vector>

#include <keltemporalxmp/docops.hpp>

namespace ingredients_test {

using keltemporalxmp::XMP_internalIngredient;
using keltemporalxmp::XMPDocOpsTemporal;
using I = XMP_internalIngredient;
using Field = I::_ingredientFieldEnum;

inline constexpr std::int64_t S = 254016000000;  // one second in ticks

inline std::string Property(const SXMPMeta& meta, const char* ns, const std::string& path) {
    std::string value;
    meta.GetProperty(ns, path.c_str(), &value, nullptr);
    return value;
}

// Every node with its qualifiers, in document order: "path=value (options)".
inline std::vector<std::string> Nodes(const SXMPMeta& meta) {
    std::vector<std::string> nodes;
    SXMPIterator walk(meta);
    std::string path, value;
    XMP_OptionBits options = 0;
    while (walk.Next(nullptr, &path, &value, &options)) {
        if (!path.empty()) {
            nodes.push_back(path + "=" + value + " (" + std::to_string(options & ~kXMP_SchemaNode) + ")");
        }
    }
    return nodes;
}

// A source document: IDs, a title in four languages (one the same as the
// default, which a copy through the localized-text calls would rewrite), a
// qualified property, an ordered array and a marker track.
inline SXMPMeta SourceDocument(const char* instanceID, const char* title) {
    SXMPMeta meta;
    meta.SetProperty(kXMP_NS_XMP_MM, "xmpMM:InstanceID", instanceID);
    meta.SetProperty(kXMP_NS_XMP_MM, "xmpMM:DocumentID", (std::string("xmp.did:") + title).c_str());
    meta.SetLocalizedText(kXMP_NS_DC, "dc:title", "", "x-default", title);
    meta.SetLocalizedText(kXMP_NS_DC, "dc:title", "en", "en-US", title);
    meta.SetLocalizedText(kXMP_NS_DC, "dc:title", "de", "de-DE", (std::string("de ") + title).c_str());
    meta.SetLocalizedText(kXMP_NS_DC, "dc:title", "fr", "fr-FR", (std::string("fr ") + title).c_str());
    meta.SetProperty(kXMP_NS_DC, "dc:source", "qualified");
    meta.SetQualifier(kXMP_NS_DC, "dc:source", kXMP_NS_XMP, "xmp:Label", "label");
    meta.AppendArrayItem(kXMP_NS_DC, "dc:subject", kXMP_PropArrayIsOrdered, "one");
    meta.AppendArrayItem(kXMP_NS_DC, "dc:subject", kXMP_PropArrayIsOrdered, "two");
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    keltemporalxmp::XMPTrack track("Markers", 25, 1);
    track.AddMarker(
        keltemporalxmp::XMPTemporalMetadataInfo("m", "", S, S, "Comment", "", "", "", {}, "", "", "guid-1", nullptr));
    doc.AddTrack("Markers", track);
    doc.PrepareForSave("");
    return meta;
}

inline std::vector<I> Ingredients(XMPDocOpsTemporal& doc) {
    std::vector<I> list;
    for (auto entry = doc.IngredientListIteratorBegin(); entry != doc.IngredientListIteratorEnd(); ++entry) {
        list.push_back(entry->second);
    }
    return list;
}

inline std::string Text(const I& ingredient, Field field) {
    return *ingredient.GetIngredientFieldPtr(field);
}

// One field of every ingredient, in key order.
inline std::vector<std::string> Column(XMPDocOpsTemporal& doc, Field field) {
    std::vector<std::string> texts;
    for (const I& ingredient : Ingredients(doc)) {
        texts.push_back(Text(ingredient, field));
    }
    return texts;
}

inline std::vector<std::string> PantryIDs(const SXMPMeta& meta) {
    std::vector<std::string> ids;
    for (XMP_Index index = 1; index <= meta.CountArrayItems(kXMP_NS_XMP_MM, "xmpMM:Pantry"); ++index) {
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

// A part string of whole seconds.
inline std::string Part(std::int64_t startSeconds, std::int64_t durationSeconds) {
    std::string part;
    XMPDocOpsTemporal::CreatePartString(&part, startSeconds * S, 1, 1, durationSeconds * S, 1, 1, INT64_MAX, "");
    return part;
}

}  // namespace ingredients_test
