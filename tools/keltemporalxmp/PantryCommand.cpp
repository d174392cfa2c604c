// pantry FILE... [--reader R]: the source documents each file carries, with what they hold.

#include <memory>
#include <string>

#include <keltemporalxmp/markers.hpp>

#include "CommandList.hpp"
#include "FileReport.hpp"
#include "PacketReading.hpp"

namespace keltemporalxmp::tool {
namespace {

FileReport ReportPantry(const std::string& file, ReaderChoice reader) {
    const std::vector<PantryItemDocument> items = ReadPantry(file, reader);
    FileReport report{Table({{"item", true}, {"instanceID"}, {"documentID"}, {"markers", true}, {"ingredients", true}}),
                      {}};
    kelcore::JSONValue& list = report.result["pantry"] = kelcore::JSONValue::array();
    for (const PantryItemDocument& item : items) {
        // Counted as ReadAllMarkers gives them, so a marker it cannot make fails here too.
        MarkerList markers;
        AppendMarkersOfTracks(item.tracks, markers);
        report.table.AddRow({std::to_string(item.item), item.instanceID, item.documentID,
                             std::to_string(markers.size()), std::to_string(item.ingredients)});
        list.push_back({{"item", item.item},
                        {"instanceID", item.instanceID},
                        {"documentID", item.documentID},
                        {"markers", markers.size()},
                        {"ingredients", item.ingredients}});
    }
    return report;
}

}  // namespace

CommandEntry AddPantryCommand(CLI::App& app) {
    auto options = std::make_shared<FileOptions>();
    CLI::App* command = app.add_subcommand(
        "pantry", "List the source documents each file carries: instance and document IDs, markers, ingredients");
    AddFileOptions(*command, *options);
    AddReaderOption(*command, options->reader);
    return {command, [options] {
                return ReportOnFiles(*options, "pantry",
                                     [&](const std::string& file) { return ReportPantry(file, options->reader); });
            }};
}

}  // namespace keltemporalxmp::tool
