#pragma once
// Replaces a file by writing a sibling temporary file and renaming it over the
// original, so readers see either the old file or the complete new one.

#include <functional>
#include <string>

namespace xmptoolkit_detail {

// writeTemp receives the temporary path (same folder and extension as path).
// On any failure the temporary file is removed and path is left alone.
void ReplaceFileSafely(const std::string& path, const std::function<void(const std::string& tempPath)>& writeTemp);

}  // namespace xmptoolkit_detail
