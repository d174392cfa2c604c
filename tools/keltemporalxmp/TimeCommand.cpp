// time TEXT [--rate RATE]: one time in every notation; a part string
// ("time:0d25f25") gives its start and its duration.

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CommandList.hpp"
#include "Options.hpp"
#include "TimeInput.hpp"

namespace keltemporalxmp::tool {
namespace {

struct TimeOptions {
    std::string text;
    std::optional<FrameRate> rate;
    OutputFormat format = OutputFormat::kTable;
};

struct NamedTime {
    std::string name;
    UserTime time;
};

bool IsPartString(const std::string& text) {
    return text.find("time:") != std::string::npos;
}

// Times in a part string without a rate count whole seconds, unless --rate says otherwise.
std::vector<NamedTime> ReadTimes(const TimeOptions& options, std::string* path) {
    if (IsPartString(options.text)) {
        UserPart part = ParseUserPart(options.text, options.rate);
        *path = std::move(part.path);
        return {{"start", part.start}, {"duration", part.duration}};
    }
    const UserTime time = ParseUserTime(options.text, options.rate);
    return {{"time", time}};
}

std::string XmpCell(const UserTime& time) {
    return XmpTimeText(time.ticks, time.rate.value_or(kTickRate));
}

int RunTime(const TimeOptions& options) {
    std::string path;
    const std::vector<NamedTime> times = ReadTimes(options, &path);
    Table table({{"time"}, {"ticks", true}, {"seconds", true}, {"rate"}, {"frames", true}, {"timecode"}, {"xmp"}});
    kelcore::JSONValue result = {{"input", options.text}};
    if (IsPartString(options.text)) {
        result["path"] = path;
    }
    kelcore::JSONValue& rows = result["times"] = kelcore::JSONValue::array();
    for (const auto& [name, time] : times) {
        table.AddRow({name, std::to_string(time.ticks), SecondsCell(time.ticks),
                      time.rate ? FrameRateText(*time.rate) : "-", FramesCell(time.ticks, time.rate),
                      TimecodeCell(time.ticks, time.rate), XmpCell(time)});
        kelcore::JSONValue row = {{"time", name}};
        row.update(TimeJson(time.ticks, time.rate));
        if (time.rate) {
            row["rate"] = FrameRateJson(*time.rate);
        }
        row["xmp"] = XmpCell(time);
        rows.push_back(std::move(row));
    }
    Report report(options.format, "time", false);
    report.Add("", table, std::move(result));
    report.Finish();
    return kExitOk;
}

}  // namespace

CommandEntry AddTimeCommand(CLI::App& app) {
    auto options = std::make_shared<TimeOptions>();
    CLI::App* command =
        app.add_subcommand("time", "Convert a time between ticks, seconds, frames, timecode and the XMP notations");
    command
        ->add_option("TEXT", options->text,
                     "90f25, 1001f30000s1001, maximum, 3.6s, 00:00:03:15, a count (frames at --rate, else "
                     "ticks) or a part string such as time:0d25f25")
        ->required();
    AddRateOption(*command, "--rate", options->rate, "Frame rate of counts and timecode, and to show frames in");
    AddFormatOptions(*command, options->format);
    return {command, [options] { return RunTime(*options); }};
}

}  // namespace keltemporalxmp::tool
