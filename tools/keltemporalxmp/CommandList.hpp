#pragma once
// Each command adds itself to the command line and says how to run it.

#include <functional>

#include "Errors.hpp"

namespace CLI {
class App;
}

namespace keltemporalxmp::tool {

struct CommandEntry {
    CLI::App* subcommand;
    std::function<int()> run;  // gives the exit status
};

CommandEntry AddMarkersCommand(CLI::App& app);
CommandEntry AddTracksCommand(CLI::App& app);
CommandEntry AddSegmentsCommand(CLI::App& app);
CommandEntry AddWriteMarkersCommand(CLI::App& app);
CommandEntry AddDumpCommand(CLI::App& app);
CommandEntry AddTimeCommand(CLI::App& app);
CommandEntry AddIngredientsCommand(CLI::App& app);
CommandEntry AddPantryCommand(CLI::App& app);
CommandEntry AddCollectCommand(CLI::App& app);
CommandEntry AddAddIngredientCommand(CLI::App& app);
CommandEntry AddExportCommand(CLI::App& app);
CommandEntry AddImportCommand(CLI::App& app);

}  // namespace keltemporalxmp::tool
