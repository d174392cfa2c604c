// keltemporalxmp: the temporal XMP of sidecars and media files from the command line.

#include <cstdio>
#include <vector>

#include <CLI/CLI.hpp>

#include "CommandList.hpp"
#include "Documents.hpp"

using namespace keltemporalxmp::tool;

int main(int argc, char** argv) {
    CLI::App app(
        "Read, edit and write the time-based XMP metadata of files: tracks of markers, ingredients, "
        "the pantry.",
        "keltemporalxmp");
    app.require_subcommand(1);
    const std::vector<CommandEntry> commands = {
        AddMarkersCommand(app), AddTracksCommand(app),   AddIngredientsCommand(app),  AddPantryCommand(app),
        AddCollectCommand(app), AddSegmentsCommand(app), AddWriteMarkersCommand(app), AddAddIngredientCommand(app),
        AddExportCommand(app),  AddImportCommand(app),   AddDumpCommand(app),         AddTimeCommand(app)};
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        const int status = app.exit(error);
        return status == 0 ? kExitOk : kExitUsage;
    }
    for (const CommandEntry& command : commands) {
        if (!command.subcommand->parsed()) {
            continue;
        }
        try {
            return command.run();
        } catch (const UsageError& error) {
            ReportError(command.subcommand->get_name(), error.what());
            return kExitUsage;
        } catch (...) {
            ReportError(command.subcommand->get_name(), DescribeError(std::current_exception()));
            return kExitBadInput;
        }
    }
    return kExitUsage;
}
