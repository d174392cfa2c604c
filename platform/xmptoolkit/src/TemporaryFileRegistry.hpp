#pragma once
// The table of temporary files in progress that a signal handler may remove.

#include <string>

namespace xmptoolkit_detail {

// Returns the entry to pass to Forget, or -1 when the table is full (the file
// is then only removed by its owner).
int RememberTemporaryFile(int directory, const std::string& name);
void ForgetTemporaryFile(int entry);

}  // namespace xmptoolkit_detail
