#pragma once
// Which reader a read-only command uses: the streaming reader of the packet's
// text, falling back to the toolkit wherever it cannot answer with certainty,
// or the toolkit alone.

#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <keltemporalxmp/records.hpp>

namespace keltemporalxmp::tool {

enum class ReaderChoice { kFast, kToolkit };

// --reader fast|toolkit, fast by default.
void AddReaderOption(CLI::App& command, ReaderChoice& reader);

// The file's tracks as XMPDocOpsTemporal gives them for its XMP; every
// read-only command that lists tracks or markers (export too) reads them here.
std::vector<XMPTrack> ReadTracks(const std::string& path, ReaderChoice reader);

}  // namespace keltemporalxmp::tool
