// A whole XMP packet through the ingredient and pantry readers, then through
// their writers.

#include <keltemporalxmp/docops.hpp>

#include "FuzzInput.hpp"

using namespace keltemporalxmp;

namespace {

void ReadIngredientsAndPantry(SXMPMeta& meta) {
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    for (auto it = doc.IngredientListIteratorBegin(); it != doc.IngredientListIteratorEnd(); ++it) {
        const std::string* instanceID =
            it->second.GetIngredientFieldPtr(XMP_internalIngredient::kIngredientFieldInstanceID);
        std::string path;
        if (XMPDocOpsTemporal::LookupXMPPantryPathGivenInstanceId(meta, instanceID->c_str(), &path)) {
            SXMPMeta source;
            XMPDocOpsTemporal::ExtractXMPMetaFromPantry(&source, meta, path.c_str());
        }
    }
    doc.RemoveIngredient(0);  // reads the pantry, removes nothing
    doc.IngredientListChanged();
    doc.PantryListChanged();
    doc.PrepareForSave("");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    SXMPMeta meta;
    if (!fuzz::ParsePacket(data, size, &meta)) {
        return 0;
    }
    try {
        ReadIngredientsAndPantry(meta);
    } catch (const XMP_Error& error) {
        fuzz::CheckError(error);
    }
    return 0;
}
