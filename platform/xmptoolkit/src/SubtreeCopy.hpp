#pragma once
// Subtree duplication, node by node with the toolkit's own calls: the walk
// visits each node before its qualifiers and children, so every node can be
// created where its parent already stands.

#include <string>

#include "MetaTree.hpp"

namespace xmptoolkit_detail {

// sourceNS and sourceRoot "*" copy every top-level property, as fields of
// destRoot when one is given, otherwise to the same place in dest. Empty
// destNS / destRoot mean the source's. A destination that exists is replaced.
void DuplicateSubtree(const MetaTree& source, MetaTree& dest, const std::string& sourceNS,
                      const std::string& sourceRoot, const std::string& destNS, const std::string& destRoot);

}  // namespace xmptoolkit_detail
