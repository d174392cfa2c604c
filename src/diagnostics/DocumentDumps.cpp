// Dumps of the document state: its flags and handles, then its three lists.

#include <keltemporalxmp/docops.hpp>

#include <cstdio>

#include "diagnostics/DumpFormat.hpp"

namespace keltemporalxmp {
namespace {

using diagnostics::DumpFrame;
using diagnostics::kFieldOffset;

constexpr int kDocumentColumn = 30;
constexpr int kListItemIndent = diagnostics::kListIndent + kFieldOffset;

// The ingredient list and the pantry: numbered entries under their keys.
template <typename KeyedList>
void DumpKeyedList(const char* memberName, const char* itemName, const KeyedList& list) {
    const DumpFrame frame(diagnostics::kListIndent, "XMPDocOpsTemporal", memberName);
    int number = 0;
    for (const auto& [key, entry] : list) {
        diagnostics::PrintIndent(kListItemIndent);
        std::printf("%s[%d] Key='%s'\n", itemName, ++number, key.c_str());
        entry.debug_Dump();
    }
}

}  // namespace

void XMPDocOpsTemporal::debug_Dump() const {
    const DumpFrame frame(diagnostics::kDocumentIndent, "XMPDocOpsTemporal");
    const diagnostics::FieldLines fields(diagnostics::kDocumentIndent + kFieldOffset, kDocumentColumn);
    fields.Boolean("m_hasTrackDataChanged", m_hasTrackDataChanged);
    fields.Boolean("m_hasIngredientDataChanged", m_hasIngredientDataChanged);
    fields.Boolean("m_hasPantryDataChanged", m_hasPantryDataChanged);
    fields.Boolean("m_cachedTrackData", m_cachedTrackData);
    fields.Boolean("m_cachedIngredientData", m_cachedIngredientData);
    fields.Boolean("m_cachedPantryData", m_cachedPantryData);
    fields.Pointer("m_xmpDocOpsPtr", m_xmpDocOpsPtr.get());
    fields.Pointer("m_xmpMetaPtr", m_xmpMetaPtr.get());
    debug_DumpTrackList();
    debug_DumpIngredientList();
    debug_DumpPantryList();
}

void XMPDocOpsTemporal::debug_DumpTrackList() const {
    const DumpFrame frame(diagnostics::kListIndent, "XMPDocOpsTemporal", "debug_DumpTrackList");
    int number = 0;
    for (const XMPTrack& track : m_tracks) {
        std::string name;
        track.GetTrackName(&name);
        diagnostics::PrintIndent(kListItemIndent);
        std::printf("Track[%d] TrackName = '%s'\n", ++number, name.c_str());
        track.debug_Dump();
    }
}

void XMPDocOpsTemporal::debug_DumpIngredientList() const {
    DumpKeyedList("debug_DumpIngredientList", "Ingredient", m_ingredients);
}

void XMPDocOpsTemporal::debug_DumpPantryList() const {
    DumpKeyedList("debug_DumpPantryList", "PantryEntry", m_pantry);
}

}  // namespace keltemporalxmp
