#pragma once
// Files are replaced through a temporary file in the same folder. A program
// that ends on a signal calls this from its handler, so that no half-written
// temporary file is left behind.

#include <keltemporalxmp/export.hpp>

namespace xmptoolkit {

// Removes the temporary file of every replacement still in progress.
// Async-signal-safe: it only reads a fixed table and calls unlinkat.
KELTXMP_API void RemoveTemporaryFilesInProgress() noexcept;

}  // namespace xmptoolkit
