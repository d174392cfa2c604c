// keltemporalxmp: the temporal XMP of sidecars and media files from the command line.

#include <signal.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <xmptoolkit/TemporaryFiles.hpp>

#include "CommandList.hpp"
#include "Documents.hpp"

using namespace keltemporalxmp::tool;

namespace {

// Interrupted, the tool leaves no temporary file and ends with the
// conventional status, 128 + the signal's number.
extern "C" void StopOnSignal(int signal) {
    xmptoolkit::RemoveTemporaryFilesInProgress();
    ::_exit(128 + signal);
}

void StopCleanlyOnSignals() {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction previous {};
        ::sigaction(signal, nullptr, &previous);
        if (previous.sa_handler == SIG_IGN) {
            continue;  // as under nohup: stays ignored
        }
        struct sigaction action {};
        action.sa_handler = StopOnSignal;
        sigemptyset(&action.sa_mask);
        ::sigaction(signal, &action, nullptr);
    }
}

// The parser would only say that a subcommand is required.
bool RefuseUnknownCommand(const std::vector<CommandEntry>& commands, int argc, char** argv) {
    if (argc < 2 || argv[1][0] == '-') {
        return false;
    }
    std::string names;
    for (const CommandEntry& command : commands) {
        if (command.subcommand->get_name() == argv[1]) {
            return false;
        }
        names += (names.empty() ? "" : ", ") + command.subcommand->get_name();
    }
    std::fprintf(stderr, "keltemporalxmp: unknown command '%s'; the commands are %s (see --help)\n", argv[1],
                 names.c_str());
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app(
        "Read, edit and write the time-based XMP metadata of files: tracks of markers, ingredients, "
        "the pantry.",
        "keltemporalxmp");
    app.require_subcommand(1);
    app.set_version_flag("--version", "keltemporalxmp " KELTXMP_VERSION);
    const std::vector<CommandEntry> commands = {
        AddMarkersCommand(app), AddTracksCommand(app),   AddIngredientsCommand(app),  AddPantryCommand(app),
        AddCollectCommand(app), AddSegmentsCommand(app), AddWriteMarkersCommand(app), AddAddIngredientCommand(app),
        AddExportCommand(app),  AddImportCommand(app),   AddDumpCommand(app),         AddTimeCommand(app)};
    if (RefuseUnknownCommand(commands, argc, argv)) {
        return kExitUsage;
    }
    StopCleanlyOnSignals();
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
