// Subtitle cues: WebVTT ("WEBVTT", HH:MM:SS.mmm, entities for & < >) and
// SubRip (numbered cues, HH:MM:SS,mmm, plain text). The name is the cue's
// first line, the comment its second; times are the nearest millisecond.

#include "Formats.hpp"
#include "TextScan.hpp"
#include "TimeMath.hpp"

namespace keltemporalxmp::exchange {
namespace {

constexpr std::string_view kArrow = "-->";

struct Entity {
    char c;
    std::string_view text;
};
const Entity kEntities[] = {{'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}};

std::string EscapeCueText(std::string_view text, Format format) {
    const std::string line = OneLine(text);
    if (format != Format::kWebVTT) {
        return line;
    }
    std::string escaped;
    for (const char c : line) {
        const Entity* entity = nullptr;
        for (const Entity& candidate : kEntities) {
            entity = candidate.c == c ? &candidate : entity;
        }
        escaped += entity ? std::string(entity->text) : std::string(1, c);
    }
    return escaped;
}

std::string UnescapeCueText(std::string_view text, Format format) {
    if (format != Format::kWebVTT) {
        return std::string(text);
    }
    std::string plain;
    TextScan scan(text);
    while (!scan.AtEnd()) {
        bool replaced = false;
        for (const Entity& entity : kEntities) {
            if (!replaced && scan.Take(entity.text)) {
                plain += entity.c;
                replaced = true;
            }
        }
        if (!replaced && scan.Take("&nbsp;")) {
            plain += "\xC2\xA0";
            replaced = true;
        }
        if (!replaced) {
            plain += scan.Peek();
            scan.Take(scan.Peek());
        }
    }
    return plain;
}

// "HH:MM:SS.mmm" (WebVTT also "MM:SS.mmm"; SubRip ',' before the milliseconds, '.' accepted), in
// milliseconds.
std::optional<Wide> ReadCueMilliseconds(TextScan& scan, Format format) {
    const std::optional<std::int64_t> first = scan.Number(2, 9);
    if (!first || !scan.Take(':')) {
        return std::nullopt;
    }
    const std::optional<std::int64_t> second = scan.Number(2, 2);
    std::optional<std::int64_t> third;
    if (scan.Take(':')) {
        third = scan.Number(2, 2);
        if (!third) {
            return std::nullopt;
        }
    } else if (format == Format::kSRT) {
        return std::nullopt;
    }
    const bool point = scan.Take('.') || (format == Format::kSRT && scan.Take(','));
    const std::optional<std::int64_t> milliseconds = scan.Number(3, 3);
    if (!second || *second > 59 || (third && *third > 59) || !point || !milliseconds) {
        return std::nullopt;
    }
    const std::int64_t seconds = third ? (*first * 60 + *second) * 60 + *third : *first * 60 + *second;
    return Wide{seconds} * 1000 + *milliseconds;
}

// The cue time at the scan, in ticks; a line that holds none fails.
std::int64_t ReadCueTime(const LineReader& lines, TextScan& scan, Format format) {
    const std::size_t offset = scan.Position();
    const std::optional<Wide> milliseconds = ReadCueMilliseconds(scan, format);
    if (!milliseconds) {
        lines.Fail(offset, format == Format::kWebVTT ? "a cue time such as 00:01:02.500"
                                                     : "a cue time such as 00:01:02,500");
    }
    const std::optional<std::int64_t> ticks = TicksOfUnits(*milliseconds, 1000);
    if (!ticks) {
        lines.Fail(offset, "a time that fits 64-bit ticks");
    }
    return *ticks;
}

ExchangeMarker ReadTiming(const LineReader& lines, Format format, const ImportOptions& options) {
    TextScan scan(lines.Line());
    const std::int64_t start = ReadCueTime(lines, scan, format);
    scan.SkipBlanks();
    if (!scan.Take(kArrow)) {
        lines.Fail(scan.Position(), "\"-->\"");
    }
    scan.SkipBlanks();
    const std::size_t endOffset = scan.Position();
    const std::int64_t end = ReadCueTime(lines, scan, format);
    if (end < start) {
        lines.Fail(endOffset, "an end not before the start");
    }
    // Cue settings may follow in WebVTT; SubRip may carry coordinates.
    if (!scan.AtEnd() && scan.SkipBlanks() == 0) {
        lines.Fail(scan.Position(), "the end of the timing line");
    }
    ExchangeMarker marker;
    marker.type = ImportType(format, options);
    marker.start = start;
    marker.duration = end - start;
    marker.rate = options.rate;
    return marker;
}

bool IsBlank(std::string_view line) {
    return line.find_first_not_of(" \t") == std::string_view::npos;
}

bool StartsBlock(std::string_view line, std::string_view keyword) {
    return line.starts_with(keyword) &&
           (line.size() == keyword.size() || line[keyword.size()] == ' ' || line[keyword.size()] == '\t');
}

// WebVTT blocks that are not cues.
bool IsOtherBlock(std::string_view line) {
    return StartsBlock(line, "NOTE") || StartsBlock(line, "STYLE") || StartsBlock(line, "REGION");
}

void SkipBlock(LineReader& lines) {
    while (lines.Next() && !IsBlank(lines.Line())) {
    }
}

}  // namespace

// A marker without a duration lasts one frame: a cue must end after it starts.
std::string ExportSubtitles(const Markers& markers, Format format, const ExportOptions& options) {
    const Rate rate = ExportRate(markers, options);
    const char separator = format == Format::kWebVTT ? '.' : ',';
    std::string text = format == Format::kWebVTT ? "WEBVTT\n\n" : "";
    std::size_t number = 0;
    for (const std::size_t index : TimelineOrder(markers, format)) {
        const ExchangeMarker& marker = markers[index];
        std::int64_t end = EndOrOneFrame(marker, rate, format, index);
        if (UnitsOfTicks(end, 1000) <= UnitsOfTicks(marker.start, 1000)) {
            end = AsTicks(Wide{marker.start} + kTicksPerSecond / 1000).value_or(end);
        }
        if (format == Format::kSRT) {
            text += std::to_string(++number) + "\n";
        }
        text += ClockWithMilliseconds(marker.start, separator) + " --> " + ClockWithMilliseconds(end, separator) + "\n";
        // An empty first line would end the cue before its comment.
        for (const std::string* line : {&marker.name, &marker.comment}) {
            if (!line->empty() || (line == &marker.name && marker.comment.empty())) {
                text += EscapeCueText(*line, format) + "\n";
            }
        }
        text += "\n";
    }
    return text;
}

Markers ImportSubtitles(std::string_view text, Format format, const ImportOptions& options) {
    LineReader lines(text, format);
    if (format == Format::kWebVTT &&
        (!lines.Next() || !(lines.Line() == "WEBVTT" || StartsBlock(lines.Line(), "WEBVTT")))) {
        lines.Fail(0, "\"WEBVTT\" as the first line");
    }
    Markers markers;
    while (lines.Next()) {
        if (IsBlank(lines.Line())) {
            continue;
        }
        if (format == Format::kWebVTT && IsOtherBlock(lines.Line())) {
            SkipBlock(lines);
            continue;
        }
        // An identifier (a cue number in SubRip) may come before the timing.
        if (lines.Line().find(kArrow) == std::string_view::npos && (!lines.Next() || IsBlank(lines.Line()))) {
            lines.Fail(0, "a cue timing line");
        }
        ExchangeMarker marker = ReadTiming(lines, format, options);
        for (std::size_t line = 0; lines.Next() && !IsBlank(lines.Line()); ++line) {
            std::string& field = line == 0 ? marker.name : marker.comment;
            field += (line > 1 ? "\n" : "") + UnescapeCueText(lines.Line(), format);
        }
        markers.push_back(std::move(marker));
    }
    return markers;
}

}  // namespace keltemporalxmp::exchange
