#pragma once
// A walk over the nodes of a tree (or a subtree) with the toolkit's iterator.
// The walk keeps the toolkit object alive: the toolkit's iterator reads it.

#include <exempi/xmp.h>

#include <memory>
#include <string>
#include <vector>

#include "MetaTree.hpp"
#include "XmpText.hpp"

namespace xmptoolkit_detail {

struct TreeNode {
    std::string m_schemaNS;
    std::string m_path;
    std::string m_value;
    XMP_OptionBits m_options = 0;
};

class TreeWalk {
public:
    // Empty (or null) schemaNS walks every schema; empty path the whole schema.
    TreeWalk(const MetaTree& tree, XMP_StringPtr schemaNS, XMP_StringPtr path, XMP_OptionBits options);
    ~TreeWalk();
    TreeWalk(const TreeWalk&) = delete;
    TreeWalk& operator=(const TreeWalk&) = delete;

    bool Next(TreeNode* node);
    void Skip(XMP_OptionBits options);

private:
    std::shared_ptr<XmpObject> m_object;
    XmpIteratorPtr m_iterator = nullptr;
    XmpText m_schemaNS;
    XmpText m_path;
    XmpText m_value;
};

// The top-level properties of every schema, in order.
std::vector<TreeNode> TopLevelProperties(const MetaTree& tree);

// The fields or items directly below a node, without qualifiers.
std::vector<TreeNode> ChildNodes(const MetaTree& tree, XMP_StringPtr schemaNS, XMP_StringPtr path);

bool HasChildNodes(const MetaTree& tree, XMP_StringPtr schemaNS, XMP_StringPtr path);

}  // namespace xmptoolkit_detail
