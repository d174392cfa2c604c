#pragma once
// Reading and writing the XMP of a file: a sidecar (.xmp) is the packet
// itself, any other file goes through the toolkit's file handlers. Writing
// never loses data: the file is replaced only once the new one is complete.

#include <functional>
#include <string>
#include <vector>

#include <xmptoolkit/XMP.hpp>

namespace keltemporalxmp::tool {

// A sidecar (.xmp, in any case) holds the packet itself.
bool IsSidecar(const std::string& path);

// Empty metadata when the file carries no XMP.
SXMPMeta ReadDocument(const std::string& path);

// Puts `meta` into the file at `path`, or into `output` when that is given
// (a new sidecar, or a copy of `path` with the new XMP); on any failure every
// existing file is left as it was.
void WriteDocument(const std::string& path, const SXMPMeta& meta, const std::string& output = "");

// Runs `action` on each file in turn. A failure becomes one line on standard
// error naming the file and the problem, and the next file still runs.
// Returns the exit status: bad input if any file failed.
int ForEachFile(const std::vector<std::string>& files, const std::function<void(const std::string&)>& action);

// The message of an error the tool reports, whatever its type.
std::string DescribeError(const std::exception_ptr& error);
void ReportError(const std::string& subject, const std::string& message);

}  // namespace keltemporalxmp::tool
