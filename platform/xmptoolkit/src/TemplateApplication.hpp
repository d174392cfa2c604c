#pragma once
// Template application: merges a template tree into a working tree as the
// kXMPTemplate_... action bits ask, one top-level property at a time.

#include "MetaTree.hpp"

namespace xmptoolkit_detail {

void ApplyTemplate(MetaTree& working, const MetaTree& templ, XMP_OptionBits actions);

}  // namespace xmptoolkit_detail
