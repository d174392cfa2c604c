// The media muxer's metadata text: ";FFMETADATA1", then a [CHAPTER] section
// per marker with an integer START and END in the section's TIMEBASE.

#include <limits>
#include <numeric>

#include "Formats.hpp"
#include "TextScan.hpp"
#include "TimeMath.hpp"

namespace keltemporalxmp::exchange {
namespace {

constexpr Format kFormat = Format::kFFMetadata;
constexpr std::string_view kHeader = ";FFMETADATA1";
// The reader keeps a timebase in two 32-bit integers.
constexpr std::int64_t kLargestTimebaseMember = std::numeric_limits<std::int32_t>::max();

struct Chapter {
    std::size_t index;
    std::int64_t start;
    std::int64_t end;
};

// A timebase is seconds per unit: numerator / denominator.
struct Timebase {
    std::int64_t numerator;
    std::int64_t denominator;
};

// Without a TIMEBASE line, times count nanoseconds.
constexpr Timebase kDefaultTimebase{1, 1000000000};

std::int64_t InTimebase(std::int64_t ticks, Timebase base) {
    return static_cast<std::int64_t>(
        DivideNearest(Wide{ticks} * base.denominator, Wide{base.numerator} * kTicksPerSecond));
}

// Frames when every time is on one; else the coarsest unit that makes every
// time whole; else (when that unit would not fit) nanoseconds, rounded.
Timebase ChooseTimebase(const std::vector<Chapter>& chapters, Rate rate) {
    bool onFrames = rate.numerator <= kLargestTimebaseMember && rate.denominator <= kLargestTimebaseMember;
    std::int64_t common = kTicksPerSecond;
    for (const Chapter& chapter : chapters) {
        onFrames = onFrames && IsOnFrame(chapter.start, rate) && IsOnFrame(chapter.end, rate);
        common = std::gcd(common, std::gcd(chapter.start, chapter.end));
    }
    if (onFrames) {
        return {rate.denominator, rate.numerator};
    }
    const std::int64_t unitsPerSecond = kTicksPerSecond / common;
    if (unitsPerSecond <= kLargestTimebaseMember) {
        return {1, unitsPerSecond};
    }
    return kDefaultTimebase;
}

std::string Escape(std::string_view text) {
    std::string escaped;
    escaped.reserve(text.size());
    for (const char c : text) {
        if (c == '=' || c == ';' || c == '#' || c == '\\' || c == '\n') {
            escaped += '\\';
        }
        escaped += c;
    }
    return escaped;
}

std::string Unescape(std::string_view text) {
    std::string plain;
    plain.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 1 < text.size()) {
            ++i;
        }
        plain += text[i];
    }
    return plain;
}

// The first '=' no backslash escapes.
std::size_t KeyEnd(std::string_view line) {
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '\\') {
            ++i;
        } else if (line[i] == '=') {
            return i;
        }
    }
    return std::string_view::npos;
}

class ChapterReader {
public:
    ChapterReader(const LineReader& lines, const ImportOptions& options) : m_lines(lines), m_options(options) {}

    void Begin() {
        m_open = true;
        m_line = m_lines.Number();
        m_base = kDefaultTimebase;
        m_start.reset();
        m_end.reset();
        m_title.clear();
    }

    void Read(std::string_view key, std::string_view value, std::size_t valueOffset) {
        if (!m_open) {
            return;
        }
        if (key == "TIMEBASE") {
            TextScan scan(value);
            const std::optional<std::int64_t> numerator = scan.Number(1, 18);
            const bool slash = scan.Take('/');
            const std::optional<std::int64_t> denominator = scan.Number(1, 18);
            if (!numerator || !slash || !denominator || !scan.AtEnd() || *numerator == 0 || *denominator == 0) {
                m_lines.Fail(valueOffset, "a timebase such as 1/1000");
            }
            m_base = {*numerator, *denominator};
        } else if (key == "START" || key == "END") {
            TextScan scan(value);
            const bool negative = scan.Take('-');
            const std::optional<std::int64_t> units = scan.Number(1, 18);
            if (!units || !scan.AtEnd()) {
                m_lines.Fail(valueOffset, "a whole number of timebase units");
            }
            const std::optional<std::int64_t> ticks =
                TicksOfFrames(negative ? -*units : *units, {m_base.denominator, m_base.numerator});
            if (!ticks) {
                m_lines.Fail(valueOffset, "a time that fits 64-bit ticks");
            }
            (key == "START" ? m_start : m_end) = *ticks;
            if (m_start && m_end && *m_end < *m_start) {
                m_lines.Fail(valueOffset, "an END not before START");
            }
        } else if (key == "title") {
            m_title = Unescape(value);
        }
    }

    void End(Markers& markers) {
        if (!m_open) {
            return;
        }
        m_open = false;
        if (!m_start || !m_end) {
            throw ImportError(kFormat, m_line, 1, "START and END in every [CHAPTER]");
        }
        ExchangeMarker marker;
        marker.type = ImportType(kFormat, m_options);
        marker.name = m_title;
        marker.start = *m_start;
        marker.duration = *m_end - *m_start;
        marker.rate = m_options.rate;
        markers.push_back(std::move(marker));
    }

private:
    const LineReader& m_lines;
    const ImportOptions& m_options;
    bool m_open = false;
    std::size_t m_line = 0;
    Timebase m_base = kDefaultTimebase;
    std::optional<std::int64_t> m_start;
    std::optional<std::int64_t> m_end;
    std::string m_title;
};

}  // namespace

// A marker without a duration ends where the next one starts, the last one
// frame after its start.
std::string ExportFFMetadata(const Markers& markers, const ExportOptions& options) {
    const Rate rate = ExportRate(markers, options);
    const std::vector<std::size_t> order = TimelineOrder(markers, kFormat);
    std::vector<Chapter> chapters;
    chapters.reserve(order.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        const ExchangeMarker& marker = markers[order[i]];
        std::int64_t end = EndOrOneFrame(marker, rate, kFormat, order[i]);
        if (!HasDuration(marker)) {
            for (std::size_t next = i + 1; next < order.size(); ++next) {
                if (markers[order[next]].start > marker.start) {
                    end = markers[order[next]].start;
                    break;
                }
            }
        }
        chapters.push_back({order[i], marker.start, end});
    }
    const Timebase base = ChooseTimebase(chapters, rate);
    const std::string timebaseLine =
        "TIMEBASE=" + std::to_string(base.numerator) + "/" + std::to_string(base.denominator) + "\n";
    std::string text(kHeader);
    text += "\n";
    for (const Chapter& chapter : chapters) {
        text += "[CHAPTER]\n" + timebaseLine;
        text += "START=" + std::to_string(InTimebase(chapter.start, base)) + "\n";
        text += "END=" + std::to_string(InTimebase(chapter.end, base)) + "\n";
        text += "title=" + Escape(markers[chapter.index].name) + "\n";
    }
    return text;
}

Markers ImportFFMetadata(std::string_view text, const ImportOptions& options) {
    LineReader lines(text, kFormat);
    if (!lines.Next() || lines.Line() != kHeader) {
        lines.Fail(0, "\";FFMETADATA1\" as the first line");
    }
    Markers markers;
    ChapterReader chapter(lines, options);
    while (lines.Next()) {
        lines.JoinEscapedLineBreaks();
        const std::string_view line = lines.Line();
        if (line.empty() || line.starts_with(';') || line.starts_with('#')) {
            continue;
        }
        if (line.starts_with('[')) {
            chapter.End(markers);
            if (line == "[CHAPTER]") {
                chapter.Begin();
            } else if (!line.ends_with(']')) {
                lines.Fail(line.size(), "\"]\" closing the section name");
            }
            continue;
        }
        const std::size_t equals = KeyEnd(line);
        if (equals == std::string_view::npos) {
            lines.Fail(line.size(), "key=value");
        }
        chapter.Read(Unescape(line.substr(0, equals)), line.substr(equals + 1), equals + 1);
    }
    chapter.End(markers);
    return markers;
}

}  // namespace keltemporalxmp::exchange
