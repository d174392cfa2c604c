#include "Options.hpp"

namespace keltemporalxmp::tool {

void AddFormatOptions(CLI::App& command, OutputFormat& format) {
    CLI::Option* json = command.add_flag_callback(
        "--json", [&format] { format = OutputFormat::kJson; }, "Print JSON (see SCHEMA.md)");
    CLI::Option* csv = command.add_flag_callback(
        "--csv", [&format] { format = OutputFormat::kCsv; }, "Print comma-separated values");
    json->excludes(csv);
}

CLI::Option* AddRateOption(CLI::App& command, const std::string& name, std::optional<FrameRate>& rate,
                           const std::string& description) {
    const CLI::Validator isRate(
        [](std::string& text) -> std::string {
            return ParseFrameRate(text) ? "" : "not a frame rate (f25, 25, f30000s1001, 30000/1001): " + text;
        },
        "RATE");
    return command
        .add_option_function<std::string>(
            name, [&rate](const std::string& text) { rate = ParseFrameRate(text); }, description)
        ->check(isRate);
}

void AddTypeOptions(CLI::App& command, TypeOptions& options) {
    CLI::Option* only = command.add_option("--only", options.only, "Only markers of this type (repeatable)")
                            ->allow_extra_args(false)
                            ->take_all();
    CLI::Option* exclude =
        command.add_option("--exclude", options.exclude, "Leave out markers of this type (repeatable)")
            ->allow_extra_args(false)
            ->take_all();
    only->excludes(exclude);
}

kelcore::RefPtr<MarkerTypeFilter> TypeFilter(const TypeOptions& options) {
    auto filter = kelcore::MakeRefCounted<MarkerTypeFilter>();
    filter->SetExclusiveMode(options.only.empty());
    for (const std::string& type : options.only.empty() ? options.exclude : options.only) {
        filter->AddMarkerType(kelcore::UTF8String(type.begin(), type.end()));
    }
    return filter;
}

void AddOutputOption(CLI::App& command, std::string& output, const std::string& description) {
    const CLI::Validator notEmpty(
        [](std::string& text) -> std::string { return text.empty() ? "needs a file name, not an empty one" : ""; },
        "OUT");
    command.add_option("--output", output, description)->check(notEmpty);
}

void AddFileArguments(CLI::App& command, std::vector<std::string>& files) {
    command.add_option("FILE", files, "XMP sidecars (.xmp) or media files")->required();
}

}  // namespace keltemporalxmp::tool
