// Audio editor label tracks: "start<TAB>end<TAB>label", seconds with six
// decimals. Lines starting with a backslash hold a label's frequency range.

#include <cstdio>

#include "Formats.hpp"
#include "TextScan.hpp"
#include "TimeMath.hpp"

namespace keltemporalxmp::exchange {
namespace {

constexpr Format kFormat = Format::kAudacity;
constexpr std::int64_t kMicroseconds = 1000000;
// Decimals past these add nothing a tick can hold.
constexpr std::size_t kMostDecimals = 12;

std::string Seconds(std::int64_t ticks) {
    const std::int64_t micro = UnitsOfTicks(ticks, kMicroseconds);
    char text[64];
    std::snprintf(text, sizeof text, "%lld.%06lld", static_cast<long long>(micro / kMicroseconds),
                  static_cast<long long>(micro % kMicroseconds));
    return text;
}

std::int64_t ReadSeconds(TextScan& scan, const LineReader& lines) {
    const std::size_t offset = scan.Position();
    const std::optional<std::int64_t> whole = scan.Number(1, 12);
    Wide units = whole.value_or(0);
    std::int64_t perSecond = 1;
    if (scan.Take('.')) {
        const std::size_t decimalsOffset = scan.Position();
        const std::string_view rest = scan.Rest();
        const std::optional<std::int64_t> decimals = scan.Number(1, kMostDecimals);
        if (!decimals) {
            lines.Fail(decimalsOffset, "at most 12 decimals");
        }
        const std::size_t count = rest.size() - scan.Rest().size();
        for (std::size_t i = 0; i < count; ++i) {
            perSecond *= 10;
        }
        units = units * perSecond + *decimals;
    } else if (!whole) {
        lines.Fail(offset, "seconds such as 12.500000");
    }
    const std::optional<std::int64_t> ticks = TicksOfUnits(units, perSecond);
    if (!ticks) {
        lines.Fail(offset, "a time that fits 64-bit ticks");
    }
    return *ticks;
}

}  // namespace

std::string ExportAudacity(const Markers& markers, const ExportOptions&) {
    std::string text;
    for (const std::size_t index : TimelineOrder(markers, kFormat)) {
        const ExchangeMarker& marker = markers[index];
        const std::int64_t end = HasDuration(marker) ? marker.start + marker.duration : marker.start;
        text += Seconds(marker.start) + "\t" + Seconds(end) + "\t" + OneLine(marker.name) + "\n";
    }
    return text;
}

Markers ImportAudacity(std::string_view text, const ImportOptions& options) {
    Markers markers;
    LineReader lines(text, kFormat);
    while (lines.Next()) {
        if (lines.Line().empty() || lines.Line().starts_with('\\')) {
            continue;
        }
        TextScan scan(lines.Line());
        const std::int64_t start = ReadSeconds(scan, lines);
        if (!scan.Take('\t')) {
            lines.Fail(scan.Position(), "a tab after the start");
        }
        const std::size_t endOffset = scan.Position();
        const std::int64_t end = ReadSeconds(scan, lines);
        if (end < start) {
            lines.Fail(endOffset, "an end not before the start");
        }
        if (!scan.AtEnd() && !scan.Take('\t')) {
            lines.Fail(scan.Position(), "a tab before the label");
        }
        ExchangeMarker marker;
        marker.type = ImportType(kFormat, options);
        marker.name = std::string(scan.Rest());
        marker.start = start;
        marker.duration = end - start;
        marker.rate = options.rate;
        markers.push_back(std::move(marker));
    }
    return markers;
}

}  // namespace keltemporalxmp::exchange
