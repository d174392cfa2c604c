// Adding ingredients: from tick spans, or from ready part strings.

#include <keltemporalxmp/docops.hpp>

#include "docops/IngredientLayout.hpp"
#include "docops/PartSpans.hpp"
#include "timestrings/Arguments.hpp"

namespace keltemporalxmp {
namespace {

using Ingredient = XMP_internalIngredient;

std::string PartString(std::int64_t start, std::int64_t startNumerator, std::int64_t startDenominator,
                       std::int64_t duration, std::int64_t durationNumerator, std::int64_t durationDenominator) {
    return docops::ComposePart(
        {start, startNumerator, startDenominator, duration, durationNumerator, durationDenominator, std::string()});
}

// The caller's instance ID, else the document's; a document without one is
// given a new one, so that its pantry entry can be found.
void TakeInstanceID(SXMPMeta& document, Ingredient& ingredient) {
    std::string instanceID = *ingredient.GetIngredientFieldPtr(Ingredient::kIngredientFieldInstanceID);
    if (instanceID.empty()) {
        instanceID = docops::DocumentInstanceID(document);
    }
    if (instanceID.empty()) {
        XMPDocOpsTemporal::CreateID(&instanceID, "xmp.iid:");
        document.SetProperty(kXMP_NS_XMP_MM, "xmpMM:InstanceID", instanceID.c_str());
    }
    ingredient.SetIngredientField(Ingredient::kIngredientFieldInstanceID, instanceID.c_str());
}

void FillFromDocument(const SXMPMeta& document, Ingredient& ingredient) {
    for (const docops::IngredientFieldLayout& layout : docops::kIngredientFields) {
        if (layout.m_documentProperty == nullptr || !ingredient.GetIngredientFieldPtr(layout.m_field)->empty()) {
            continue;
        }
        const std::string property = std::string("xmpMM:") + layout.m_documentProperty;
        ingredient.SetIngredientField(layout.m_field, docops::ReadText(document, kXMP_NS_XMP_MM, property).c_str());
    }
}

}  // namespace

void XMPDocOpsTemporal::AddIngredientXMPTemporal(const SXMPMeta& ingredientXMP, std::int64_t fromStart,
                                                 std::int64_t fromStartNumerator, std::int64_t fromStartDenominator,
                                                 std::int64_t fromDuration, std::int64_t fromDurationNumerator,
                                                 std::int64_t fromDurationDenominator, std::int64_t toStart,
                                                 std::int64_t toStartNumerator, std::int64_t toStartDenominator,
                                                 std::int64_t toDuration, std::int64_t toDurationNumerator,
                                                 std::int64_t toDurationDenominator, const char* filePath,
                                                 const char* lastModifyDate, const char* partMapping, bool maskMarkers,
                                                 bool flattenNested) {
    // The to-part first: a span reversed on both sides ends as it began.
    std::string mapping(TextOrEmpty(partMapping));
    docops::NormaliseReversedSpan(toStart, toDuration, mapping);
    docops::NormaliseReversedSpan(fromStart, fromDuration, mapping);
    Ingredient ingredient;
    ingredient.SetIngredientField(Ingredient::kIngredientFieldFromPart,
                                  PartString(fromStart, fromStartNumerator, fromStartDenominator, fromDuration,
                                             fromDurationNumerator, fromDurationDenominator)
                                      .c_str());
    ingredient.SetIngredientField(Ingredient::kIngredientFieldToPart,
                                  PartString(toStart, toStartNumerator, toStartDenominator, toDuration,
                                             toDurationNumerator, toDurationDenominator)
                                      .c_str());
    ingredient.SetIngredientField(Ingredient::kIngredientFieldPartMapping, mapping.c_str());
    ingredient.SetIngredientField(Ingredient::kIngredientFieldFilePath, filePath);
    ingredient.SetIngredientField(Ingredient::kIngredientFieldLastModifyDate, lastModifyDate);
    AddIngredient(ingredientXMP, std::move(ingredient), maskMarkers, flattenNested);
}

void XMPDocOpsTemporal::AddIngredientXMPTemporal(const SXMPMeta& ingredientXMP, std::int64_t fromStart,
                                                 std::int64_t fromStartNumerator, std::int64_t fromStartDenominator,
                                                 std::int64_t fromDuration, std::int64_t fromDurationNumerator,
                                                 std::int64_t fromDurationDenominator, std::int64_t toStart,
                                                 std::int64_t toStartNumerator, std::int64_t toStartDenominator,
                                                 std::int64_t toDuration, std::int64_t toDurationNumerator,
                                                 std::int64_t toDurationDenominator, const char* filePath,
                                                 const char* lastModifyDate, const char* partMapping,
                                                 bool maskMarkers) {
    AddIngredientXMPTemporal(ingredientXMP, fromStart, fromStartNumerator, fromStartDenominator, fromDuration,
                             fromDurationNumerator, fromDurationDenominator, toStart, toStartNumerator,
                             toStartDenominator, toDuration, toDurationNumerator, toDurationDenominator, filePath,
                             lastModifyDate, partMapping, maskMarkers, false);
}

void XMPDocOpsTemporal::AddIngredientXMPTemporal(const SXMPMeta& ingredientXMP, std::int64_t fromStart,
                                                 std::int64_t fromDuration, std::int64_t toStart,
                                                 std::int64_t toDuration, const char* filePath,
                                                 const char* lastModifyDate, const char* partMapping) {
    AddIngredientXMPTemporal(ingredientXMP, fromStart, 1, 1, fromDuration, 1, 1, toStart, 1, 1, toDuration, 1, 1,
                             filePath, lastModifyDate, partMapping, false, false);
}

void XMPDocOpsTemporal::AddIngredientXMP(const SXMPMeta& ingredientXMP, const char* fromPart, const char* toPart,
                                         const char* linkForm, const char* linkCategory, const char* filePath,
                                         const char* alternatePaths, const char* lastModifyDate,
                                         const char* placedXResolution, const char* placedYResolution,
                                         const char* placedResolutionUnit) {
    Ingredient ingredient;
    ingredient.SetIngredientField(Ingredient::kIngredientFieldFromPart, fromPart);
    ingredient.SetIngredientField(Ingredient::kIngredientFieldToPart, toPart);
    ingredient.SetIngredientField(Ingredient::kIngredientFieldLinkForm, linkForm);
    ingredient.SetIngredientField(Ingredient::kIngredientFieldLinkCategory, linkCategory);
    ingredient.SetIngredientField(Ingredient::kIngredientFieldFilePath, filePath);
    ingredient.SetIngredientField(Ingredient::kIngredientFieldAlternatePaths, alternatePaths);
    ingredient.SetIngredientField(Ingredient::kIngredientFieldLastModifyDate, lastModifyDate);
    ingredient.SetIngredientField(Ingredient::kIngredientFieldPlacedXResolution, placedXResolution);
    ingredient.SetIngredientField(Ingredient::kIngredientFieldPlacedYResolution, placedYResolution);
    ingredient.SetIngredientField(Ingredient::kIngredientFieldPlacedResolutionUnit, placedResolutionUnit);
    AddIngredient(ingredientXMP, std::move(ingredient), false, false);
}

void XMPDocOpsTemporal::AddIngredient(const SXMPMeta& ingredientXMP, XMP_internalIngredient ingredient,
                                      bool maskMarkers, bool flattenNested) {
    // Both parts are read before anything changes: a part that cannot be read is refused.
    const docops::PartSpan from =
        docops::ParsePartSpan(*ingredient.GetIngredientFieldPtr(Ingredient::kIngredientFieldFromPart));
    docops::ParsePartSpan(*ingredient.GetIngredientFieldPtr(Ingredient::kIngredientFieldToPart));
    CacheIngredientsAndPantry();

    // A second handle: the instance ID given here reaches the caller's object.
    SXMPMeta document(ingredientXMP);
    TakeInstanceID(document, ingredient);
    FillFromDocument(document, ingredient);
    ingredient.SetIngredientField(Ingredient::kIngredientFieldMaskMarkers, maskMarkers ? "All" : "None");
    const std::string key =
        docops::IngredientKey(*ingredient.GetIngredientFieldPtr(Ingredient::kIngredientFieldInstanceID), from);
    ingredient.SetIngredientField(Ingredient::kIngredientFieldKey, key.c_str());
    m_ingredients.emplace(key, ingredient);
    m_hasIngredientDataChanged = true;
    if (flattenNested) {
        AddNestedIngredients(document, ingredient);
    }
    AddToPantry(document);
}

}  // namespace keltemporalxmp
