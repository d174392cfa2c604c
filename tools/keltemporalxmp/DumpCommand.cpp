// dump FILE...: the library's debug dump of each document, its lists read.

#include <cstdio>
#include <memory>

#include "CommandList.hpp"
#include "Documents.hpp"
#include "FileReport.hpp"
#include "Options.hpp"

namespace keltemporalxmp::tool {
namespace {

void DumpDocument(const std::string& file, bool withHeading) {
    SXMPMeta meta = ReadDocument(file);
    const std::unique_ptr<XMPDocOpsTemporal> document = OpenTemporalDocument(meta);
    // The dump shows only what was read. Removing at the end of the
    // ingredient list removes nothing but reads that list and the pantry.
    document->TrackListIteratorBegin();
    document->RemoveIngredient(document->IngredientListIteratorEnd());
    if (withHeading) {
        std::printf("%s:\n", file.c_str());
    }
    document->debug_Dump();
}

}  // namespace

CommandEntry AddDumpCommand(CLI::App& app) {
    auto files = std::make_shared<std::vector<std::string>>();
    CLI::App* command =
        app.add_subcommand("dump", "Print the debug dump of each document: its state, tracks, ingredients and pantry");
    AddFileArguments(*command, *files);
    return {command, [files] {
                return ForEachFile(*files, [&](const std::string& file) { DumpDocument(file, files->size() > 1); });
            }};
}

}  // namespace keltemporalxmp::tool
