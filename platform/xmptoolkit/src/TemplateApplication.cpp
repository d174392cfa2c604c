#include "TemplateApplication.hpp"

#include <algorithm>
#include <array>
#include <set>
#include <string_view>

#include "SubtreeCopy.hpp"
#include "TreeWalk.hpp"

namespace xmptoolkit_detail {
namespace {

constexpr std::string_view kOperation = "ApplyTemplate";

struct PropertyName {
    std::string_view m_schemaNS;
    std::string_view m_localName;
};

// Properties the application keeps up to date itself; a template leaves them
// alone unless it is asked to include them.
constexpr std::array<PropertyName, 5> kInternalProperties{{
    {"http://ns.adobe.com/xap/1.0/", "MetadataDate"},
    {"http://ns.adobe.com/xap/1.0/", "ModifyDate"},
    {"http://ns.adobe.com/xap/1.0/", "CreatorTool"},
    {"http://ns.adobe.com/xap/1.0/", "BaseURL"},
    {"http://purl.org/dc/elements/1.1/", "format"},
}};

bool IsInternal(const TreeNode& property) {
    if (property.m_schemaNS == kXMP_NS_XMP_MM) {
        return true;  // document identity and history
    }
    const std::string_view localName = std::string_view(property.m_path).substr(property.m_path.find(':') + 1);
    return std::any_of(kInternalProperties.begin(), kInternalProperties.end(), [&](const PropertyName& internal) {
        return internal.m_schemaNS == property.m_schemaNS && internal.m_localName == localName;
    });
}

bool IsEmptyNode(const MetaTree& tree, const TreeNode& node) {
    if ((node.m_options & kXMP_PropCompositeMask) == 0) {
        return node.m_value.empty();
    }
    return !HasChildNodes(tree, node.m_schemaNS.c_str(), node.m_path.c_str());
}

void CopyNode(const MetaTree& templ, MetaTree& working, const TreeNode& node) {
    DuplicateSubtree(templ, working, node.m_schemaNS, node.m_path, node.m_schemaNS, node.m_path);
}

// An array item is told apart by its value and its language.
std::string ItemKey(const MetaTree& tree, const TreeNode& item) {
    std::string lang;
    tree.GetProperty(kOperation, item.m_schemaNS.c_str(), (item.m_path + "/?xml:lang").c_str(), &lang, nullptr);
    return item.m_value + '\n' + lang;
}

void AddMissingItems(MetaTree& working, const MetaTree& templ, const TreeNode& array) {
    std::set<std::string> present;
    for (const TreeNode& item : ChildNodes(working, array.m_schemaNS.c_str(), array.m_path.c_str())) {
        present.insert(ItemKey(working, item));
    }
    for (const TreeNode& item : ChildNodes(templ, array.m_schemaNS.c_str(), array.m_path.c_str())) {
        // Struct and array items have no value to compare by; they are never merged.
        if ((item.m_options & kXMP_PropCompositeMask) != 0 || !present.insert(ItemKey(templ, item)).second) {
            continue;
        }
        working.AppendArrayItem(array.m_schemaNS.c_str(), array.m_path.c_str(), 0, "", 0);
        const std::string lastItem = array.m_path + "[last()]";
        DuplicateSubtree(templ, working, item.m_schemaNS, item.m_path, item.m_schemaNS, lastItem);
    }
}

// Adds what the template has and the working tree lacks, down through structs.
void AddMissing(MetaTree& working, const MetaTree& templ, const TreeNode& node) {
    XMP_OptionBits existing = 0;
    if (!working.GetProperty(kOperation, node.m_schemaNS.c_str(), node.m_path.c_str(), nullptr, &existing)) {
        CopyNode(templ, working, node);
        return;
    }
    const XMP_OptionBits form = node.m_options & kXMP_PropCompositeMask;
    if (form == 0 || (existing & kXMP_PropCompositeMask) != form) {
        return;
    }
    if ((form & kXMP_PropValueIsStruct) != 0) {
        for (const TreeNode& field : ChildNodes(templ, node.m_schemaNS.c_str(), node.m_path.c_str())) {
            AddMissing(working, templ, field);
        }
    } else {
        AddMissingItems(working, templ, node);
    }
}

}  // namespace

void ApplyTemplate(MetaTree& working, const MetaTree& templ, XMP_OptionBits actions) {
    const bool includeInternal = (actions & kXMPTemplate_IncludeInternalProperties) != 0;
    const bool deleteEmpty = (actions & kXMPTemplate_ReplaceWithDeleteEmpty) != 0;
    const bool replace = deleteEmpty || (actions & kXMPTemplate_ReplaceExistingProperties) != 0;
    const bool add = (actions & kXMPTemplate_AddNewProperties) != 0;
    const auto takesPart = [&](const TreeNode& property) { return includeInternal || !IsInternal(property); };

    if ((actions & kXMPTemplate_ClearUnnamedProperties) != 0) {
        for (const TreeNode& property : TopLevelProperties(working)) {
            if (takesPart(property) &&
                !templ.HasProperty(kOperation, property.m_schemaNS.c_str(), property.m_path.c_str())) {
                working.DeleteProperty(kOperation, property.m_schemaNS.c_str(), property.m_path.c_str());
            }
        }
    }
    for (const TreeNode& property : TopLevelProperties(templ)) {
        if (!takesPart(property)) {
            continue;
        }
        const bool exists = working.HasProperty(kOperation, property.m_schemaNS.c_str(), property.m_path.c_str());
        const bool empty = IsEmptyNode(templ, property);
        if (deleteEmpty && empty) {
            working.DeleteProperty(kOperation, property.m_schemaNS.c_str(), property.m_path.c_str());
        } else if (exists && replace) {
            CopyNode(templ, working, property);
        } else if (add) {
            AddMissing(working, templ, property);
        }
    }
}

}  // namespace xmptoolkit_detail
