// pantry FILE...: the source documents each file carries, with what they hold.

#include <memory>
#include <string>

#include <keltemporalxmp/markers.hpp>

#include "CommandList.hpp"
#include "Documents.hpp"
#include "FileReport.hpp"

namespace keltemporalxmp::tool {
namespace {

std::string Property(const SXMPMeta& meta, const char* name) {
    std::string value;
    meta.GetProperty(kXMP_NS_XMP_MM, name, &value, nullptr);
    return value;
}

FileReport ReportPantry(const std::string& file) {
    const SXMPMeta meta = ReadDocument(file);
    FileReport report{Table({{"item", true}, {"instanceID"}, {"documentID"}, {"markers", true}, {"ingredients", true}}),
                      {}};
    kelcore::JSONValue& list = report.result["pantry"] = kelcore::JSONValue::array();
    const int items = meta.CountArrayItems(kXMP_NS_XMP_MM, "xmpMM:Pantry");
    for (int item = 1; item <= items; ++item) {
        SXMPMeta source;
        XMPDocOpsTemporal::ExtractXMPMetaFromPantry(&source, meta,
                                                    ("xmpMM:Pantry[" + std::to_string(item) + "]").c_str());
        MarkerList markers;
        ReadAllMarkers(source, markers);
        const std::string instanceID = Property(source, "xmpMM:InstanceID");
        const std::string documentID = Property(source, "xmpMM:DocumentID");
        const int ingredients = source.CountArrayItems(kXMP_NS_XMP_MM, "xmpMM:Ingredients");
        report.table.AddRow({std::to_string(item), instanceID, documentID, std::to_string(markers.size()),
                             std::to_string(ingredients)});
        list.push_back({{"item", item},
                        {"instanceID", instanceID},
                        {"documentID", documentID},
                        {"markers", markers.size()},
                        {"ingredients", ingredients}});
    }
    return report;
}

}  // namespace

CommandEntry AddPantryCommand(CLI::App& app) {
    auto options = std::make_shared<FileOptions>();
    CLI::App* command = app.add_subcommand(
        "pantry", "List the source documents each file carries: instance and document IDs, markers, ingredients");
    AddFileOptions(*command, *options);
    return {command, [options] { return ReportOnFiles(*options, "pantry", ReportPantry); }};
}

}  // namespace keltemporalxmp::tool
