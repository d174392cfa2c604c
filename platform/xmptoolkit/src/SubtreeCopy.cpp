#include "SubtreeCopy.hpp"

#include <string_view>

#include "ToolkitCall.hpp"
#include "TreeWalk.hpp"

namespace xmptoolkit_detail {
namespace {

constexpr std::string_view kOperation = "DuplicateSubtree";
constexpr XMP_OptionBits kNodeForm = kXMP_PropCompositeMask | kXMP_PropValueIsURI;

bool IsCompositeNode(const TreeNode& node) {
    return (node.m_options & kXMP_PropCompositeMask) != 0;
}

bool IsArrayItem(const TreeNode& node) {
    return (node.m_options & kXMP_PropIsQualifier) == 0 && node.m_path.ends_with(']');
}

bool IsTopLevel(const TreeNode& node) {
    return node.m_path.find_first_of("/[") == std::string::npos;
}

// Items are appended in walk order, so item n of the source becomes item n of
// the new destination array.
void CreateNode(MetaTree& dest, const std::string& destNS, const std::string& destPath, const TreeNode& node,
                bool appendAsItem) {
    const XMP_OptionBits form = node.m_options & kNodeForm;
    XMP_StringPtr value = IsCompositeNode(node) ? "" : node.m_value.c_str();
    if (appendAsItem) {
        const std::string arrayPath = destPath.substr(0, destPath.rfind('['));
        dest.AppendArrayItem(destNS.c_str(), arrayPath.c_str(), 0, value, form);
    } else {
        dest.SetProperty(kOperation, destNS.c_str(), destPath.c_str(), value, form);
    }
}

void CopyEveryProperty(const MetaTree& source, MetaTree& dest, const std::string& destNS, const std::string& destRoot) {
    if (!destRoot.empty()) {
        XMP_OptionBits rootOptions = 0;
        if (!dest.GetProperty(kOperation, destNS.c_str(), destRoot.c_str(), nullptr, &rootOptions)) {
            dest.SetProperty(kOperation, destNS.c_str(), destRoot.c_str(), "", kXMP_PropValueIsStruct);
        } else if ((rootOptions & kXMP_PropValueIsStruct) == 0) {
            RaiseError(kXMPErr_BadXPath, kOperation, destRoot, "destination root is not a struct");
        }
    }
    TreeWalk walk(source, "", "", 0);
    TreeNode node;
    while (walk.Next(&node)) {
        if ((node.m_options & kXMP_SchemaNode) != 0) {
            continue;
        }
        const std::string& schemaNS = destRoot.empty() ? node.m_schemaNS : destNS;
        const std::string destPath = destRoot.empty() ? node.m_path : destRoot + '/' + node.m_path;
        if (IsTopLevel(node)) {
            dest.DeleteProperty(kOperation, schemaNS.c_str(), destPath.c_str());
        }
        CreateNode(dest, schemaNS, destPath, node, IsArrayItem(node));
    }
}

void CopyOneSubtree(const MetaTree& source, MetaTree& dest, const std::string& sourceNS, const std::string& sourceRoot,
                    const std::string& destNS, const std::string& destRoot) {
    if (!source.HasProperty(kOperation, sourceNS.c_str(), sourceRoot.c_str())) {
        RaiseError(kXMPErr_BadXPath, kOperation, sourceRoot, "source subtree not found");
    }
    // An array item is replaced in place; deleting it would renumber its siblings.
    if (!destRoot.ends_with(']')) {
        dest.DeleteProperty(kOperation, destNS.c_str(), destRoot.c_str());
    }
    TreeWalk walk(source, sourceNS.c_str(), sourceRoot.c_str(), 0);
    TreeNode node;
    if (!walk.Next(&node)) {
        return;
    }
    // The walk spells the root its own way (an index for "last()").
    const std::size_t rootLength = node.m_path.size();
    CreateNode(dest, destNS, destRoot, node, false);
    while (walk.Next(&node)) {
        CreateNode(dest, destNS, destRoot + node.m_path.substr(rootLength), node, IsArrayItem(node));
    }
}

}  // namespace

void DuplicateSubtree(const MetaTree& source, MetaTree& dest, const std::string& sourceNS,
                      const std::string& sourceRoot, const std::string& destNS, const std::string& destRoot) {
    // Copying a tree into itself would walk the nodes it is creating.
    std::shared_ptr<MetaTree> snapshot;
    if (source.Handle() == dest.Handle()) {
        snapshot = source.Clone();
    }
    const MetaTree& from = snapshot ? *snapshot : source;
    const std::string& toNS = destNS.empty() ? sourceNS : destNS;
    if (sourceNS == "*" || sourceRoot == "*") {
        CopyEveryProperty(from, dest, toNS, destRoot);
    } else {
        CopyOneSubtree(from, dest, sourceNS, sourceRoot, toNS, destRoot.empty() ? sourceRoot : destRoot);
    }
}

}  // namespace xmptoolkit_detail
