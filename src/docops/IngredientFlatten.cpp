// Flattening: an ingredient's own ingredients become ingredients of this
// document, mapped through the ingredient's parts.

#include <keltemporalxmp/docops.hpp>

#include "docops/IngredientLayout.hpp"
#include "docops/PartSpans.hpp"

namespace keltemporalxmp {
namespace {

using Ingredient = XMP_internalIngredient;

const std::string& FieldText(const Ingredient& ingredient, Ingredient::_ingredientFieldEnum field) {
    return *ingredient.GetIngredientFieldPtr(field);
}

std::optional<docops::IngredientSpans> SpansOf(const Ingredient& ingredient) {
    const std::optional<docops::PartSpan> from =
        docops::TryParsePartSpan(FieldText(ingredient, Ingredient::kIngredientFieldFromPart));
    const std::optional<docops::PartSpan> to =
        docops::TryParsePartSpan(FieldText(ingredient, Ingredient::kIngredientFieldToPart));
    if (!from || !to) {
        return std::nullopt;
    }
    return docops::IngredientSpans{
        *from, *to, docops::IsReversedMapping(FieldText(ingredient, Ingredient::kIngredientFieldPartMapping))};
}

}  // namespace

// A nested ingredient whose parts cannot be read cannot be placed, and is left out.
void XMPDocOpsTemporal::AddNestedIngredients(const SXMPMeta& ingredientXMP, const XMP_internalIngredient& ingredient) {
    const std::optional<docops::IngredientSpans> outer = SpansOf(ingredient);
    if (!outer) {
        return;
    }
    const bool masked = FieldText(ingredient, Ingredient::kIngredientFieldMaskMarkers) == "All";
    for (const docops::ListItem& item : docops::StructItems(ingredientXMP, docops::kIngredientsPath)) {
        Ingredient nested = docops::ReadIngredientItem(ingredientXMP, item.m_path);
        const std::optional<docops::IngredientSpans> spans = SpansOf(nested);
        const std::optional<docops::IngredientSpans> mapped = spans ? docops::MapThrough(*outer, *spans) : std::nullopt;
        if (!mapped) {
            continue;
        }
        if (outer->m_reversed) {
            const std::string mapping =
                docops::FlippedMapping(FieldText(nested, Ingredient::kIngredientFieldPartMapping));
            nested.SetIngredientField(Ingredient::kIngredientFieldPartMapping, mapping.c_str());
        }
        nested.SetIngredientField(Ingredient::kIngredientFieldFromPart, docops::ComposePart(mapped->m_from).c_str());
        nested.SetIngredientField(Ingredient::kIngredientFieldToPart, docops::ComposePart(mapped->m_to).c_str());
        if (masked) {
            nested.SetIngredientField(Ingredient::kIngredientFieldMaskMarkers, "All");
        }
        const std::string key =
            docops::IngredientKey(FieldText(nested, Ingredient::kIngredientFieldInstanceID), mapped->m_from);
        nested.SetIngredientField(Ingredient::kIngredientFieldKey, key.c_str());
        m_ingredients.emplace(key, std::move(nested));
    }
}

}  // namespace keltemporalxmp
