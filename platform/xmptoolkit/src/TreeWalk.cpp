#include "TreeWalk.hpp"

#include "ToolkitCall.hpp"

namespace xmptoolkit_detail {

TreeWalk::TreeWalk(const MetaTree& tree, XMP_StringPtr schemaNS, XMP_StringPtr path, XMP_OptionBits options)
    : m_object(tree.Object()) {
    const auto iterOptions = static_cast<XmpIterOptions>(options);
    RequireSuccess(CallToolkit([&] {
                       m_iterator = xmp_iterator_new(m_object->Get(), schemaNS == nullptr ? "" : schemaNS,
                                                     path == nullptr ? "" : path, iterOptions);
                       return m_iterator != nullptr;
                   }),
                   "Creating XMP iterator", path == nullptr ? "" : path, kXMPErr_BadXPath);
}

TreeWalk::~TreeWalk() {
    CallToolkit([&] { return xmp_iterator_free(m_iterator); });
}

bool TreeWalk::Next(TreeNode* node) {
    uint32_t options = 0;
    // The end of the walk is a plain false.
    const bool found =
        CallToolkit([&] {
            return xmp_iterator_next(m_iterator, m_schemaNS.Get(), m_path.Get(), m_value.Get(), &options);
        }).m_succeeded;
    if (found) {
        m_schemaNS.CopyTo(&node->m_schemaNS);
        m_path.CopyTo(&node->m_path);
        m_value.CopyTo(&node->m_value);
        node->m_options = options;
    }
    return found;
}

void TreeWalk::Skip(XMP_OptionBits options) {
    const auto skipOptions = static_cast<XmpIterSkipOptions>(options);
    RequireSuccess(CallToolkit([&] { return xmp_iterator_skip(m_iterator, skipOptions); }), "Skip", "",
                   kXMPErr_BadIterPosition);
}

std::vector<TreeNode> TopLevelProperties(const MetaTree& tree) {
    std::vector<TreeNode> properties;
    for (const TreeNode& schema : ChildNodes(tree, "", "")) {
        std::vector<TreeNode> inSchema = ChildNodes(tree, schema.m_schemaNS.c_str(), "");
        properties.insert(properties.end(), inSchema.begin(), inSchema.end());
    }
    return properties;
}

std::vector<TreeNode> ChildNodes(const MetaTree& tree, XMP_StringPtr schemaNS, XMP_StringPtr path) {
    TreeWalk walk(tree, schemaNS, path, kXMP_IterJustChildren | kXMP_IterOmitQualifiers);
    std::vector<TreeNode> children;
    TreeNode node;
    while (walk.Next(&node)) {
        children.push_back(node);
    }
    return children;
}

bool HasChildNodes(const MetaTree& tree, XMP_StringPtr schemaNS, XMP_StringPtr path) {
    TreeWalk walk(tree, schemaNS, path, kXMP_IterJustChildren | kXMP_IterOmitQualifiers);
    TreeNode node;
    return walk.Next(&node);
}

}  // namespace xmptoolkit_detail
