#pragma once
// What is checked about a file before it is changed.

#include <string>
#include <string_view>

namespace xmptoolkit_detail {

// The text of errno's current value ("No space left on device").
std::string SystemErrorText();

// The file a write to `path` changes: absolute, normalised, symbolic links
// followed (so writing through a link updates its target).
std::string ResolveWriteTarget(const std::string& path, std::string_view operation);

// Refuses an existing file that is not a regular file or that is read-only
// (no write permission for this user, or none for anyone). A missing file passes.
void RequireWritableFile(const std::string& path, std::string_view operation);

}  // namespace xmptoolkit_detail
