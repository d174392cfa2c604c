// add-ingredient DOC SOURCE --from-part PART --to-part PART [--mapping M]
// [--mask-markers] [--output OUT]: places a span of SOURCE on DOC's timeline;
// SOURCE, with what it was composed of, joins DOC's pantry.

#include <cstdio>
#include <memory>
#include <string>

#include "CommandList.hpp"
#include "Documents.hpp"
#include "FileReport.hpp"
#include "Options.hpp"
#include "TimeInput.hpp"

namespace keltemporalxmp::tool {
namespace {

struct AddIngredientOptions {
    std::string document;
    std::string source;
    std::string fromPart;
    std::string toPart;
    std::string mapping = "linear";
    bool maskMarkers = false;
    std::string output;
};

struct Part {
    std::int64_t start;
    FrameRate startRate{1, 1};
    std::int64_t duration;
    FrameRate durationRate{1, 1};
};

// Only the time of a part is used: a part that names no time is refused
// rather than read as the whole document.
Part ParsePartOption(const std::string& option, const std::string& text) {
    ParseUserPart(text, std::nullopt);
    Part part{};
    std::string path;
    XMPDocOpsTemporal::ParsePart(text.c_str(), &part.start, &part.startRate.numerator, &part.startRate.denominator,
                                 &part.duration, &part.durationRate.numerator, &part.durationRate.denominator,
                                 kTimeUnspecified, &path);
    if (text.find("time:") == std::string::npos || !path.empty()) {
        throw UsageError(option + ": not a part (time:START, time:STARTdDURATION or time:STARTrEND): " + text);
    }
    return part;
}

int RunAddIngredient(const AddIngredientOptions& options) {
    const Part from = ParsePartOption("--from-part", options.fromPart);
    const Part to = ParsePartOption("--to-part", options.toPart);
    SXMPMeta source;
    if (const int status = ForEachFile({options.source}, [&](const std::string& file) { source = ReadDocument(file); });
        status != kExitOk) {
        return status;
    }
    return ForEachFile({options.document}, [&](const std::string& file) {
        UpdateDocument(file, options.output, [&](SXMPMeta& meta) {
            const std::unique_ptr<XMPDocOpsTemporal> document = OpenTemporalDocument(meta);
            document->AddIngredientXMPTemporal(
                source, from.start, from.startRate.numerator, from.startRate.denominator, from.duration,
                from.durationRate.numerator, from.durationRate.denominator, to.start, to.startRate.numerator,
                to.startRate.denominator, to.duration, to.durationRate.numerator, to.durationRate.denominator,
                options.source.c_str(), "", options.mapping.c_str(), options.maskMarkers);
            document->PrepareForSave("");
        });
        std::printf("%s: %s added (%s onto %s, %s%s)\n", options.output.empty() ? file.c_str() : options.output.c_str(),
                    options.source.c_str(), options.fromPart.c_str(), options.toPart.c_str(), options.mapping.c_str(),
                    options.maskMarkers ? ", markers masked" : "");
    });
}

}  // namespace

CommandEntry AddAddIngredientCommand(CLI::App& app) {
    auto options = std::make_shared<AddIngredientOptions>();
    CLI::App* command = app.add_subcommand("add-ingredient",
                                           "Place a span of SOURCE on the timeline of DOC, which then carries SOURCE");
    command->add_option("DOC", options->document, "The composed document (sidecar or media file)")->required();
    command->add_option("SOURCE", options->source, "The document a span is taken from")->required();
    command->add_option("--from-part", options->fromPart, "The span of SOURCE, e.g. time:0d10f25")->required();
    command->add_option("--to-part", options->toPart, "Where it lies in DOC, e.g. time:50f25d10f25")->required();
    command->add_option("--mapping", options->mapping, "How the span runs: linear (default) or linear-reversed")
        ->check(CLI::IsMember({"linear", "linear-reversed"}));
    command->add_flag("--mask-markers", options->maskMarkers, "Hide SOURCE's markers from collections");
    AddOutputOption(*command, options->output, "Write here and leave DOC as it is");
    return {command, [options] { return RunAddIngredient(*options); }};
}

}  // namespace keltemporalxmp::tool
