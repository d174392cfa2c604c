// ingredients FILE... [--reader R]: the documents each file was composed from, and where
// their spans lie on its timeline.

#include <memory>

#include "CommandList.hpp"
#include "FileReport.hpp"
#include "PacketReading.hpp"

namespace keltemporalxmp::tool {
namespace {

using Field = XMP_internalIngredient::_ingredientFieldEnum;

struct ShownField {
    const char* name;
    Field field;
};

constexpr ShownField kShownFields[] = {
    {"instanceID", XMP_internalIngredient::kIngredientFieldInstanceID},
    {"fromPart", XMP_internalIngredient::kIngredientFieldFromPart},
    {"toPart", XMP_internalIngredient::kIngredientFieldToPart},
    {"partMapping", XMP_internalIngredient::kIngredientFieldPartMapping},
    {"maskMarkers", XMP_internalIngredient::kIngredientFieldMaskMarkers},
    {"filePath", XMP_internalIngredient::kIngredientFieldFilePath},
};

FileReport ReportIngredients(const std::string& file, ReaderChoice reader) {
    const XMPDocOpsTemporal::IngredientList ingredients = ReadIngredients(file, reader);
    std::vector<Column> columns;
    for (const ShownField& shown : kShownFields) {
        columns.push_back({shown.name});
    }
    FileReport report{Table(std::move(columns)), {}};
    kelcore::JSONValue& list = report.result["ingredients"] = kelcore::JSONValue::array();
    for (const auto& [key, ingredient] : ingredients) {
        std::vector<std::string> cells;
        kelcore::JSONValue json = kelcore::JSONValue::object();
        for (const ShownField& shown : kShownFields) {
            const std::string& value = *ingredient.GetIngredientFieldPtr(shown.field);
            cells.push_back(value);
            json[shown.name] = value;
        }
        report.table.AddRow(std::move(cells));
        list.push_back(std::move(json));
    }
    return report;
}

}  // namespace

CommandEntry AddIngredientsCommand(CLI::App& app) {
    auto options = std::make_shared<FileOptions>();
    CLI::App* command = app.add_subcommand(
        "ingredients", "List the ingredients of each file: source instance ID, parts, mapping, masking, path");
    AddFileOptions(*command, *options);
    AddReaderOption(*command, options->reader);
    return {command, [options] {
                return ReportOnFiles(*options, "ingredients",
                                     [&](const std::string& file) { return ReportIngredients(file, options->reader); });
            }};
}

}  // namespace keltemporalxmp::tool
