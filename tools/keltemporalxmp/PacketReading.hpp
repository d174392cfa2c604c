#pragma once
// Which reader a read-only command uses: the streaming reader of the packet's
// text, falling back to the toolkit wherever it cannot answer with certainty,
// or the toolkit alone.

#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <keltemporalxmp/collector.hpp>
#include <keltemporalxmp/docops.hpp>
#include <keltemporalxmp/records.hpp>
#include <keltemporalxmp/streamread.hpp>

#include "CollectRange.hpp"

namespace keltemporalxmp::tool {

enum class ReaderChoice { kFast, kToolkit };

// --reader fast|toolkit, fast by default.
void AddReaderOption(CLI::App& command, ReaderChoice& reader);

// The file's tracks as XMPDocOpsTemporal gives them for its XMP; every
// read-only command that lists tracks or markers (export too) reads them here.
std::vector<XMPTrack> ReadTracks(const std::string& path, ReaderChoice reader);

// The collection XMPTemporalMetadataCollector gives for the file's XMP.
XMPTemporalMetadataCollector::Collection ReadCollection(const std::string& path, const CollectRange& range,
                                                        ReaderChoice reader);
// The same through the streaming reader alone; null when the toolkit must
// read the file.
std::optional<XMPTemporalMetadataCollector::Collection> StreamCollection(const std::string& path,
                                                                         const CollectRange& range);

// The ingredient list XMPDocOpsTemporal keeps for the file's XMP.
XMPDocOpsTemporal::IngredientList ReadIngredients(const std::string& path, ReaderChoice reader);

// Each item of the file's xmpMM:Pantry as ExtractXMPMetaFromPantry gives it.
std::vector<PantryItemDocument> ReadPantry(const std::string& path, ReaderChoice reader);

}  // namespace keltemporalxmp::tool
