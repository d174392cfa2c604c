#pragma once
// A file that replaces another takes over what describes it: owner and group
// (where permitted), extended attributes (ACLs among them) and mode.

#include <string_view>

namespace xmptoolkit_detail {

// Copies from the open file `from` to the open file `to`; `path` names the
// file in errors.
void KeepAttributes(int from, int to, std::string_view path);

}  // namespace xmptoolkit_detail
