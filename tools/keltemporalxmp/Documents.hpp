#pragma once
// Reading and writing the XMP of a file: a sidecar (.xmp) is the packet
// itself, any other file goes through the toolkit's file handlers. Writing
// never loses data: the file is replaced only once the new one is complete
// and on disk, through a temporary file no one else can plant; links, mode,
// owner and extended attributes are kept; read-only files are refused; and
// concurrent writers of one file take turns (see README, "Writing files").

#include <functional>
#include <string>
#include <vector>

#include <xmptoolkit/XMP.hpp>

namespace keltemporalxmp::tool {

// A sidecar (.xmp, in any case) holds the packet itself.
bool IsSidecar(const std::string& path);

// Empty metadata when the file carries no XMP. Only a regular file (or a
// symlink to one) is read; InputError says what anything else is.
SXMPMeta ReadDocument(const std::string& path);

// Reads the XMP of `path`, lets `edit` change it and puts it back into the
// file, or into `output` when that names another file (a sidecar, or a copy
// of `path` with the new XMP). Writing in place holds the file's lock from the
// read to the write, so a concurrent writer's update is never lost. On any
// failure every existing file is left as it was.
void UpdateDocument(const std::string& path, const std::string& output, const std::function<void(SXMPMeta&)>& edit);

// Puts `meta` into the file at `path`, or into `output`, as UpdateDocument does.
void WriteDocument(const std::string& path, const SXMPMeta& meta, const std::string& output = "");

// Runs `action` on each file in turn. A failure becomes one line on standard
// error naming the file and the problem, and the next file still runs.
// Returns the exit status: bad input if any file failed.
int ForEachFile(const std::vector<std::string>& files, const std::function<void(const std::string&)>& action);

// The message of an error the tool reports, whatever its type.
std::string DescribeError(const std::exception_ptr& error);
void ReportError(const std::string& subject, const std::string& message);

}  // namespace keltemporalxmp::tool
