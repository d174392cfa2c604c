// Dumps of the document state: its flags and handles, then its lists.

#include <keltemporalxmp/docops.hpp>

#include <cstdio>

#include "diagnostics/DumpFormat.hpp"

namespace keltemporalxmp {
namespace {

using diagnostics::DumpFrame;
using diagnostics::kFieldOffset;

constexpr int kDocumentColumn = 30;
constexpr int kListItemIndent = diagnostics::kListIndent + kFieldOffset;

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

}  // namespace keltemporalxmp
