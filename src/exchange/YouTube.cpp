// Video description chapters: "M:SS Title", "H:MM:SS Title" past an hour,
// whole seconds rounded down.

#include <cstdio>

#include "Formats.hpp"
#include "TextScan.hpp"
#include "TimeMath.hpp"

namespace keltemporalxmp::exchange {
namespace {

constexpr Format kFormat = Format::kYouTube;
constexpr std::int64_t kShortestChapterSeconds = 10;
constexpr std::size_t kFewestChapters = 3;

std::string Clock(std::int64_t seconds) {
    char text[64];
    if (seconds >= 3600) {
        std::snprintf(text, sizeof text, "%lld:%02lld:%02lld", static_cast<long long>(seconds / 3600),
                      static_cast<long long>(seconds / 60 % 60), static_cast<long long>(seconds % 60));
    } else {
        std::snprintf(text, sizeof text, "%lld:%02lld", static_cast<long long>(seconds / 60),
                      static_cast<long long>(seconds % 60));
    }
    return text;
}

void CheckRule(bool kept, const Markers& markers, std::size_t index, const std::string& rule) {
    if (!kept) {
        throw ExportError(kFormat, index + 1, markers[index].name, "breaks the rule that " + rule);
    }
}

// The platform shows chapters only when these hold.
void CheckRules(const Markers& markers, const std::vector<std::size_t>& order) {
    if (order.size() < kFewestChapters) {
        throw ExportError(
            kFormat, 0, "",
            "breaks the rule that there are at least three chapters (there are " + std::to_string(order.size()) + ")");
    }
    CheckRule(markers[order[0]].start / kTicksPerSecond == 0, markers, order[0], "the first chapter starts at 0:00");
    for (std::size_t i = 0; i + 1 < order.size(); ++i) {
        const std::int64_t seconds = markers[order[i]].start / kTicksPerSecond;
        const std::int64_t next = markers[order[i + 1]].start / kTicksPerSecond;
        CheckRule(next > seconds, markers, order[i + 1], "chapters start at ascending times");
        CheckRule(next - seconds >= kShortestChapterSeconds, markers, order[i], "each chapter is at least 10 s long");
    }
    const ExchangeMarker& last = markers[order.back()];
    CheckRule(!HasDuration(last) || last.duration / kTicksPerSecond >= kShortestChapterSeconds, markers, order.back(),
              "each chapter is at least 10 s long");
}

// "M:SS", "MM:SS" or "H:MM:SS"; nothing read when the line does not start with one.
std::optional<std::int64_t> ReadClock(TextScan& scan) {
    const std::optional<std::int64_t> first = scan.Number(1, 4);
    if (!first || !scan.Take(':')) {
        return std::nullopt;
    }
    const std::optional<std::int64_t> second = scan.Number(2, 2);
    if (!second || *second > 59) {
        return std::nullopt;
    }
    if (!scan.Take(':')) {
        return *first * 60 + *second;
    }
    const std::optional<std::int64_t> third = scan.Number(2, 2);
    if (!third || *third > 59) {
        return std::nullopt;
    }
    return (*first * 60 + *second) * 60 + *third;
}

bool StartsWithClock(std::string_view line) {
    TextScan scan(line);
    scan.SkipBlanks();
    return scan.Number(1, 18).has_value() && scan.Take(':');
}

}  // namespace

std::string ExportYouTube(const Markers& markers, const ExportOptions& options) {
    const std::vector<std::size_t> order = TimelineOrder(markers, kFormat);
    if (!options.force) {
        CheckRules(markers, order);
    }
    std::string text;
    for (const std::size_t index : order) {
        text += Clock(markers[index].start / kTicksPerSecond) + " " + OneLine(markers[index].name) + "\n";
    }
    return text;
}

// Lines that do not start with a time are the rest of the description.
Markers ImportYouTube(std::string_view text, const ImportOptions& options) {
    Markers markers;
    LineReader lines(text, kFormat);
    while (lines.Next()) {
        if (!StartsWithClock(lines.Line())) {
            continue;
        }
        TextScan scan(lines.Line());
        const std::size_t timeOffset = scan.SkipBlanks();
        const std::optional<std::int64_t> seconds = ReadClock(scan);
        if (!seconds) {
            lines.Fail(timeOffset, "a time M:SS or H:MM:SS");
        }
        if (scan.SkipBlanks() == 0) {
            lines.Fail(scan.Position(), "a space after the time");
        }
        if (scan.Take("- ")) {
            scan.SkipBlanks();
        }
        if (scan.AtEnd()) {
            lines.Fail(scan.Position(), "a chapter title");
        }
        ExchangeMarker marker;
        marker.type = ImportType(kFormat, options);
        marker.name = std::string(scan.Rest());
        marker.start = *seconds * kTicksPerSecond;
        marker.rate = options.rate;
        markers.push_back(std::move(marker));
    }
    // A chapter lasts until the next one starts.
    for (std::size_t i = 0; i + 1 < markers.size(); ++i) {
        if (markers[i + 1].start > markers[i].start) {
            markers[i].duration = markers[i + 1].start - markers[i].start;
        }
    }
    return markers;
}

}  // namespace keltemporalxmp::exchange
