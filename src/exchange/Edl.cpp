// Edit decision lists in the CMX 3600 layout: one frame-long event per
// marker at its record timecode, followed by the marker line editing systems
// read (" |C:color |M:name |D:frames"). Import also reads "* LOC:" locators.

#include <cstdio>

#include "Formats.hpp"
#include "TextScan.hpp"
#include "TimeMath.hpp"

namespace keltemporalxmp::exchange {
namespace {

constexpr Format kFormat = Format::kEDL;
constexpr std::string_view kMarkerColor = "ResolveColorBlue";
constexpr std::string_view kLocator = "* LOC:";

std::int64_t TimecodeStartFrames(const ExportOptions& options, Rate rate) {
    const std::optional<std::int64_t> frames = TimecodeToFrames(options.timecodeStart, rate);
    if (!frames) {
        throw XMP_Error(
            kXMPErr_BadParam,
            ("edl: the timecode start \"" + options.timecodeStart + "\" is not timecode at the export rate").c_str());
    }
    return *frames;
}

std::string EventLine(std::size_t number, const std::string& in, const std::string& out) {
    char head[64];
    std::snprintf(head, sizeof head, "%03zu  001      V     C        ", number);
    return head + in + " " + out + " " + in + " " + out + "\n";
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

class EdlReader {
public:
    EdlReader(std::string_view text, const ImportOptions& options) : m_lines(text, kFormat), m_options(options) {}

    Markers Read() {
        while (m_lines.Next()) {
            const std::string_view line = m_lines.Line();
            if (line.starts_with("FCM:")) {
                ReadFrameCodeMode(line);
            } else if (!line.empty() && IsDigit(line[0])) {
                ReadEvent(line);
            } else if (line.find("|M:") != std::string_view::npos) {
                ReadMarkerLine(line);
            } else if (line.starts_with(kLocator)) {
                ReadLocator(line);
            }
        }
        return std::move(m_markers);
    }

private:
    // Without a rate of its own, a drop-frame list is at 29.97.
    void ReadFrameCodeMode(std::string_view line) {
        if (!m_options.rate.IsKnown() && line.find("NON-DROP") == std::string_view::npos &&
            line.find("DROP") != std::string_view::npos) {
            m_rate = {30000, 1001};
        }
    }

    std::int64_t ReadTimecode(TextScan& scan) {
        scan.SkipBlanks();
        const std::size_t offset = scan.Position();
        const std::optional<std::int64_t> frames = TimecodeToFrames(scan.Word(), m_rate);
        if (!frames) {
            m_lines.Fail(offset, "timecode HH:MM:SS:FF at " + std::to_string(m_rate.numerator) + "/" +
                                     std::to_string(m_rate.denominator) + " frames per second");
        }
        return *frames;
    }

    // "NNN  REEL  CHANNELS  TRANSITION [LENGTH]  SRC-IN SRC-OUT REC-IN REC-OUT"
    void ReadEvent(std::string_view line) {
        m_pendingEvent.reset();
        TextScan scan(line);
        std::size_t words = 0;
        while (!scan.AtEnd()) {
            scan.SkipBlanks();
            words += scan.Word().empty() ? 0 : 1;
        }
        if (words < 8) {
            m_lines.Fail(line.size(), "an event: number, reel, channels, transition and four timecodes");
        }
        // The timecodes are the last four words.
        TextScan fields(line);
        for (std::size_t word = 0; word < words - 4; ++word) {
            fields.SkipBlanks();
            fields.Word();
        }
        ReadTimecode(fields);
        ReadTimecode(fields);
        m_pendingEvent = ReadTimecode(fields);
        ReadTimecode(fields);
    }

    // " |C:color |M:name |D:frames" after an event.
    void ReadMarkerLine(std::string_view line) {
        if (!m_pendingEvent) {
            m_lines.Fail(0, "a marker line only after an event");
        }
        const std::size_t nameStart = line.find("|M:") + 3;
        const std::size_t durationMark = line.find(" |D:", nameStart);
        ExchangeMarker marker = NewMarker(*m_pendingEvent, 0);
        marker.name = std::string(line.substr(
            nameStart, durationMark == std::string_view::npos ? std::string_view::npos : durationMark - nameStart));
        if (durationMark != std::string_view::npos) {
            TextScan scan(line.substr(durationMark + 4));
            const std::optional<std::int64_t> frames = scan.Number(1, 18);
            if (!frames) {
                m_lines.Fail(durationMark + 4, "a frame count after |D:");
            }
            marker.duration = Ticks(*frames, durationMark + 4);
        }
        m_pendingEvent.reset();
        m_markers.push_back(std::move(marker));
    }

    // "* LOC: 01:00:05:00 RED    name"
    void ReadLocator(std::string_view line) {
        TextScan scan(line);
        scan.Take(kLocator);
        const std::int64_t frames = ReadTimecode(scan);
        scan.SkipBlanks();
        scan.Word();  // the color
        scan.SkipBlanks();
        ExchangeMarker marker = NewMarker(frames, 0);
        marker.name = std::string(scan.Rest());
        m_markers.push_back(std::move(marker));
    }

    std::int64_t Ticks(std::int64_t frames, std::size_t offset) const {
        const std::optional<std::int64_t> ticks = TicksOfFrames(frames, m_rate);
        if (!ticks) {
            m_lines.Fail(offset, "a time that fits 64-bit ticks");
        }
        return *ticks;
    }

    ExchangeMarker NewMarker(std::int64_t frames, std::size_t offset) const {
        ExchangeMarker marker;
        marker.type = ImportType(kFormat, m_options);
        marker.start = Ticks(frames, offset);
        marker.rate = m_rate;
        return marker;
    }

    LineReader m_lines;
    const ImportOptions& m_options;
    Rate m_rate = ImportRate(m_options);
    std::optional<std::int64_t> m_pendingEvent;
    Markers m_markers;
};

}  // namespace

std::string ExportEdl(const Markers& markers, const ExportOptions& options) {
    const Rate rate = ExportRate(markers, options);
    const std::int64_t zero = TimecodeStartFrames(options, rate);
    std::string text = "TITLE: " + OneLine(options.title) + "\n";
    text += IsDropFrame(rate) ? "FCM: DROP FRAME\n\n" : "FCM: NON-DROP FRAME\n\n";
    std::size_t number = 0;
    for (const std::size_t index : TimelineOrder(markers, kFormat)) {
        const ExchangeMarker& marker = markers[index];
        const Wide in = Wide{zero} + FramesOfTicks(marker.start, rate);
        const std::int64_t frames = marker.duration == kTimeUnspecified ? 0 : FramesOfTicks(marker.duration, rate);
        if (in >= INT64_MAX) {
            throw ExportError(kFormat, index + 1, marker.name, "its record timecode is past the largest");
        }
        const auto inFrame = static_cast<std::int64_t>(in);
        text += EventLine(++number, FramesToTimecode(inFrame, rate), FramesToTimecode(inFrame + 1, rate));
        text += " |C:" + std::string(kMarkerColor) + " |M:" + OneLine(marker.name) + " |D:" + std::to_string(frames) +
                "\n\n";
    }
    return text;
}

// Record timecode is read as time from zero.
Markers ImportEdl(std::string_view text, const ImportOptions& options) {
    return EdlReader(text, options).Read();
}

}  // namespace keltemporalxmp::exchange
