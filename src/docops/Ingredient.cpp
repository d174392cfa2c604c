// XMP_internalIngredient: 22 text fields, addressed by number.

#include <keltemporalxmp/docops.hpp>

#include <array>

#include "timestrings/Arguments.hpp"

namespace keltemporalxmp {

using Ingredient = XMP_internalIngredient;

XMP_internalIngredient::XMP_internalIngredient(const char* key, const char* instanceID, const char* documentID,
                                               const char* versionID, const char* renditionClass,
                                               const char* renditionParams, const char* manager,
                                               const char* managerVariant, const char* manageTo, const char* manageUI,
                                               const char* fromPart, const char* toPart, const char* partMapping,
                                               const char* linkForm, const char* linkCategory, const char* filePath,
                                               const char* alternatePaths, const char* lastModifyDate,
                                               const char* placedXResolution, const char* placedYResolution,
                                               const char* placedResolutionUnit, const char* maskMarkers) {
    const std::array<const char*, 22> values{key,
                                             instanceID,
                                             documentID,
                                             versionID,
                                             renditionClass,
                                             renditionParams,
                                             manager,
                                             managerVariant,
                                             manageTo,
                                             manageUI,
                                             fromPart,
                                             toPart,
                                             partMapping,
                                             linkForm,
                                             linkCategory,
                                             filePath,
                                             alternatePaths,
                                             lastModifyDate,
                                             placedXResolution,
                                             placedYResolution,
                                             placedResolutionUnit,
                                             maskMarkers};
    for (std::size_t i = 0; i < values.size(); ++i) {
        SetIngredientField(static_cast<_ingredientFieldEnum>(i + 1), values[i]);
    }
}

std::string XMP_internalIngredient::*XMP_internalIngredient::FieldMember(_ingredientFieldEnum field) {
    static constexpr std::array<std::string Ingredient::*, 22> kMembers{
        &Ingredient::m_IngredientKey,     &Ingredient::m_instanceID,         &Ingredient::m_documentID,
        &Ingredient::m_versionID,         &Ingredient::m_renditionClass,     &Ingredient::m_renditionParams,
        &Ingredient::m_manager,           &Ingredient::m_managerVariant,     &Ingredient::m_manageTo,
        &Ingredient::m_manageUI,          &Ingredient::m_fromPart,           &Ingredient::m_toPart,
        &Ingredient::m_partMapping,       &Ingredient::m_linkForm,           &Ingredient::m_linkCategory,
        &Ingredient::m_URI_filePath,      &Ingredient::m_URI_alternatePaths, &Ingredient::m_URI_lastModifyDate,
        &Ingredient::m_placedXResolution, &Ingredient::m_placedYResolution,  &Ingredient::m_placedResolutionUnit,
        &Ingredient::m_maskMarkers,
    };
    const auto number = static_cast<std::int32_t>(field);
    if (number < 1 || number > static_cast<std::int32_t>(kMembers.size())) {
        return nullptr;
    }
    return kMembers[static_cast<std::size_t>(number - 1)];
}

void XMP_internalIngredient::GetIngredientField(std::string* value, _ingredientFieldEnum field) const {
    std::string& output = Required(value, "XMP_internalIngredient::GetIngredientField", "output string");
    const std::string* text = GetIngredientFieldPtr(field);
    if (text != nullptr) {
        output = *text;
    } else {
        output.clear();
    }
}

const std::string* XMP_internalIngredient::GetIngredientFieldPtr(_ingredientFieldEnum field) const {
    std::string Ingredient::*member = FieldMember(field);
    return member != nullptr ? &(this->*member) : nullptr;
}

void XMP_internalIngredient::SetIngredientField(_ingredientFieldEnum field, const char* value) {
    std::string Ingredient::*member = FieldMember(field);
    if (member != nullptr) {
        (this->*member).assign(TextOrEmpty(value));
    }
}

}  // namespace keltemporalxmp
