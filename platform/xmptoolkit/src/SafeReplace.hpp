#pragma once
// Replaces a file by a complete new one, so readers see either the old file
// or the new one and a failure (or a crash) leaves the old one as it was.
//
// The new content goes into a temporary file created exclusively, with an
// unpredictable name and mode 0600, in the destination's folder and relative
// to a descriptor of that folder, so no link planted there is ever followed.
// On commit it takes the original's owner, extended attributes and mode,
// reaches the disk, is renamed over the original, and the folder is synced.
// A destination with several hard links is refused: renaming would split them.

#include <functional>
#include <string>

namespace xmptoolkit_detail {

class ReplacementFile {
public:
    // `path` is the file to replace (it need not exist); a symbolic link is
    // followed, so its target is replaced and the link stays a link.
    explicit ReplacementFile(const std::string& path);
    ~ReplacementFile();  // removes the temporary file unless committed
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    // The absolute path of the temporary file, with the destination's
    // extension, for code that can only open files by name. Such code may
    // replace the file by another of its own (the toolkit does for some
    // formats); Commit takes whatever regular file of ours the name holds.
    const std::string& TemporaryPath() const { return m_temporaryPath; }
    void Append(const char* data, std::size_t size);
    // Appends the whole content of the file at `path`.
    void AppendFileContent(const std::string& path);
    void Commit();

private:
    [[noreturn]] void Fail(const std::string& detail) const;
    void ReopenTemporaryFile();

    std::string m_shownPath;    // as the caller named it, for messages
    std::string m_destination;  // absolute, links resolved
    std::string m_name;         // the temporary file's name in the folder
    std::string m_temporaryPath;
    int m_folder = -1;
    int m_file = -1;
    int m_registryEntry = -1;
    bool m_committed = false;
};

// Runs `writeTemporary` on a new ReplacementFile for `path` and commits it.
void ReplaceFileSafely(const std::string& path, const std::function<void(ReplacementFile&)>& writeTemporary);

}  // namespace xmptoolkit_detail
