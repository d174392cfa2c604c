#include "docops/IngredientLayout.hpp"

#include "docops/TrackLayout.hpp"

namespace keltemporalxmp::docops {

using Field = XMP_internalIngredient;

const std::array<IngredientFieldLayout, 21> kIngredientFields{{
    {Field::kIngredientFieldInstanceID, "instanceID", "instanceID", false, nullptr},
    {Field::kIngredientFieldDocumentID, "documentID", "documentID", false, "DocumentID"},
    {Field::kIngredientFieldVersionID, "versionID", "versionID", false, "VersionID"},
    {Field::kIngredientFieldRenditionClass, "renditionClass", "renditionClass", false, "RenditionClass"},
    {Field::kIngredientFieldRenditionParams, "renditionParams", "renditionParams", false, "RenditionParams"},
    {Field::kIngredientFieldManager, "manager", "manager", false, "Manager"},
    {Field::kIngredientFieldManagerVariant, "managerVariant", "managerVariant", false, "ManagerVariant"},
    {Field::kIngredientFieldManageTo, "manageTo", "manageTo", false, "ManageTo"},
    {Field::kIngredientFieldManageUI, "manageUI", "manageUI", false, "ManageUI"},
    {Field::kIngredientFieldFromPart, "fromPart", "fromPart", false, nullptr},
    {Field::kIngredientFieldToPart, "toPart", "toPart", false, nullptr},
    {Field::kIngredientFieldPartMapping, "partMapping", "partMapping", false, "partMapping"},
    {Field::kIngredientFieldLinkForm, "linkForm", "linkForm", false, "linkForm"},
    {Field::kIngredientFieldLinkCategory, "linkCategory", "linkCategory", false, "linkCategory"},
    {Field::kIngredientFieldFilePath, "filePath", "filePath", false, "filePath"},
    {Field::kIngredientFieldAlternatePaths, "alternatePaths", "alternatePaths", false, "alternatePaths"},
    {Field::kIngredientFieldLastModifyDate, "lastModifyDate", "fileModTime", false, "fileModTime"},
    {Field::kIngredientFieldPlacedXResolution, "placedXResolution", "xmpMM:placedXResolution", true,
     "placedXResolution"},
    {Field::kIngredientFieldPlacedYResolution, "placedYResolution", "xmpMM:placedYResolution", true,
     "placedYResolution"},
    {Field::kIngredientFieldPlacedResolutionUnit, "placedResolutionUnit", "xmpMM:placedResolutionUnit", true,
     "placedResolutionUnit"},
    {Field::kIngredientFieldMaskMarkers, "maskMarkers", "maskMarkers", false, nullptr},
}};

std::vector<ListItem> StructItems(const SXMPMeta& meta, const char* arrayPath) {
    std::vector<ListItem> items;
    XMP_OptionBits options = 0;
    if (!meta.GetProperty(kXMP_NS_XMP_MM, arrayPath, nullptr, &options) || (options & kXMP_PropValueIsArray) == 0) {
        return items;
    }
    const XMP_Index count = meta.CountArrayItems(kXMP_NS_XMP_MM, arrayPath);
    for (XMP_Index index = 1; index <= count; ++index) {
        std::string path(arrayPath);
        AppendItemIndex(path, static_cast<std::size_t>(index));
        if (meta.GetProperty(kXMP_NS_XMP_MM, path.c_str(), nullptr, &options) &&
            (options & kXMP_PropValueIsStruct) != 0) {
            items.push_back({index, std::move(path)});
        }
    }
    return items;
}

std::string ReadText(const SXMPMeta& meta, const char* schemaNS, const std::string& path) {
    std::string text;
    XMP_OptionBits options = 0;
    if (!meta.GetProperty(schemaNS, path.c_str(), &text, &options) || (options & kXMP_PropCompositeMask) != 0) {
        text.clear();
    }
    return text;
}

std::string DocumentInstanceID(const SXMPMeta& meta) {
    return ReadText(meta, kXMP_NS_XMP_MM, "xmpMM:InstanceID");
}

std::string PantryItemInstanceID(const SXMPMeta& meta, const std::string& itemPath) {
    return ReadText(meta, kXMP_NS_XMP_MM, itemPath + "/xmpMM:InstanceID");
}

XMP_internalIngredient ReadIngredientItem(const SXMPMeta& meta, const std::string& itemPath) {
    XMP_internalIngredient ingredient;
    for (const IngredientFieldLayout& layout : kIngredientFields) {
        const std::string path =
            layout.m_readAtTopLevel ? std::string(layout.m_readName) : itemPath + "/stRef:" + layout.m_readName;
        ingredient.SetIngredientField(layout.m_field, ReadText(meta, kXMP_NS_XMP_MM, path).c_str());
    }
    return ingredient;
}

bool SharesTree(const SXMPMeta& one, const SXMPMeta& other) {
    return &one.Tree() == &other.Tree();
}

void ThrowNullMeta() {
    throw XMP_Error(kXMPErr_BadParam, "Null output SXMPMeta pointer");
}

}  // namespace keltemporalxmp::docops
