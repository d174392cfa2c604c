#pragma once
// How ingredients and the pantry sit in XMP: xmpMM:Ingredients, an unordered
// array of structs whose fields are in the ResourceRef (stRef) schema, and
// xmpMM:Pantry, an unordered array of structs that each carry one document's
// top-level properties. Readers accept what other writers produce: Seq or
// Alt arrays, extra fields, items that are not structs (passed over).

#include <array>
#include <string>
#include <vector>

#include <keltemporalxmp/docops.hpp>
#include <xmptoolkit/XMP.hpp>

namespace keltemporalxmp {
namespace docops {

inline constexpr const char* kIngredientsPath = "xmpMM:Ingredients";
inline constexpr const char* kPantryPath = "xmpMM:Pantry";
inline constexpr const char* kInstanceIDName = "InstanceID";
inline constexpr XMP_OptionBits kListForm = kXMP_PropValueIsArray;
inline constexpr XMP_OptionBits kItemForm = kXMP_PropValueIsStruct;

// One stRef field of an ingredient item.
struct IngredientFieldLayout {
    XMP_internalIngredient::_ingredientFieldEnum m_field;
    const char* m_writtenName;  // stRef field written
    const char* m_readName;     // field, or top-level xmpMM property, read back
    bool m_readAtTopLevel;
    const char* m_documentProperty;  // xmpMM property of the source that fills it when empty; may be null
};

// Fields 2..22 in field order.
extern const std::array<IngredientFieldLayout, 21> kIngredientFields;

struct ListItem {
    XMP_Index m_index;  // from 1
    std::string m_path;
};

// The struct items of an array property, in order; none when it is absent or
// not an array.
std::vector<ListItem> StructItems(const SXMPMeta& meta, const char* arrayPath);

// A simple property's or field's text; empty when absent or not simple.
std::string ReadText(const SXMPMeta& meta, const char* schemaNS, const std::string& path);

std::string DocumentInstanceID(const SXMPMeta& meta);
std::string PantryItemInstanceID(const SXMPMeta& meta, const std::string& itemPath);

// The struct item at itemPath of an ingredients array, as it reads back.
XMP_internalIngredient ReadIngredientItem(const SXMPMeta& meta, const std::string& itemPath);

// Whether two handles share one tree.
bool SharesTree(const SXMPMeta& one, const SXMPMeta& other);

[[noreturn]] void ThrowNullMeta();

}  // namespace docops
}  // namespace keltemporalxmp
