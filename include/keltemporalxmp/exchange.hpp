#pragma once
// Markers to and from the text formats other tools speak: chapter lists,
// subtitles, edit decision lists, spreadsheets, label tracks, interchange
// timelines and the tool's own JSON. Text in, text out: no file access.

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <keltemporalxmp/export.hpp>
#include <keltemporalxmp/markers.hpp>
#include <xmptoolkit/XMP.hpp>

namespace keltemporalxmp::exchange {

inline constexpr std::int64_t kTicksPerSecond = kelmediatypes::TickTime::kTicksPerSecond;
// A start or duration that is not given.
inline constexpr std::int64_t kTimeUnspecified = INT64_MAX;

// Frames per second = numerator / denominator; {0, 0} when not known.
struct Rate {
    std::int64_t numerator = 0;
    std::int64_t denominator = 0;
    bool IsKnown() const { return numerator > 0 && denominator > 0; }
    friend bool operator==(const Rate&, const Rate&) = default;
};

struct CuePoint {
    std::string key;
    std::string value;
    friend bool operator==(const CuePoint&, const CuePoint&) = default;
};

// One marker as every format sees it; text is UTF-8, times are ticks.
struct ExchangeMarker {
    std::string id;
    std::string type;
    std::string name;
    std::string comment;
    std::int64_t start = 0;
    std::int64_t duration = 0;
    Rate rate;  // the rate of the marker's track
    std::vector<CuePoint> cuePoints;
    friend bool operator==(const ExchangeMarker&, const ExchangeMarker&) = default;
};

enum class Format { kYouTube, kFFMetadata, kWebVTT, kSRT, kEDL, kCSV, kTSV, kAudacity, kOTIO, kJSON };

// "youtube", "ffmetadata", "webvtt", "srt", "edl", "csv", "tsv", "audacity", "otio", "json".
KELTXMP_API const char* FormatName(Format format);
KELTXMP_API std::optional<Format> FormatFromName(std::string_view name);
// ".vtt", ".srt", ".edl", ".csv", ".tsv", ".otio", ".json" (any case), from a whole path.
KELTXMP_API std::optional<Format> FormatFromPath(std::string_view path);
// What markers of a format without types are given when the caller names none.
KELTXMP_API const char* DefaultMarkerType(Format format);

struct ExportOptions {
    // The rate of frame-based formats; when unknown, the first marker's, else
    // 25. A rate of more frames than ticks a second is kXMPErr_BadParam.
    Rate rate;
    // The record timecode of time zero in an edl, at the rate; text that is
    // no timecode is kXMPErr_BadParam.
    std::string timecodeStart = "00:00:00:00";
    // The edl's and the otio timeline's name.
    std::string title = "Markers";
    // Writes youtube chapters that break the platform's rules.
    bool force = false;
};

struct ImportOptions {
    // The rate of timecode and frames in the text; when unknown, 25, except
    // that drop-frame timecode in an edl or a csv/tsv is read at 29.97.
    Rate rate;
    // The type of markers read from a format without types; empty: DefaultMarkerType.
    std::string type;
};

// A marker the format cannot hold, or (youtube) a rule it breaks: the message
// names the format, the marker's number (from 1) and name, and the reason.
// kXMPErr_BadValue.
class KELTXMP_API ExportError : public XMP_Error {
public:
    ExportError(Format format, std::size_t marker, const std::string& name, const std::string& reason);
};

// Malformed input, kXMPErr_BadValue: the message is "FORMAT line L column C:
// expected WHAT"; line and column count from 1 (0 when the place is a JSON
// member rather than a spot in the text, which the message then names).
class KELTXMP_API ImportError : public XMP_Error {
public:
    ImportError(Format format, std::size_t line, std::size_t column, const std::string& expected);
    std::size_t Line() const { return m_line; }
    std::size_t Column() const { return m_column; }

private:
    std::size_t m_line;
    std::size_t m_column;
};

// The text of the markers in the format: those laid out on a timeline in
// start order, otio and json in list order. ExportError for a marker the
// format cannot hold.
KELTXMP_API std::string ExportMarkers(const std::vector<ExchangeMarker>& markers, Format format,
                                      const ExportOptions& options = {});

// The markers the text holds, in its order. ImportError for malformed text.

KELTXMP_API std::vector<ExchangeMarker> ImportMarkers(std::string_view text, Format format,
                                                      const ImportOptions& options = {});

// Every marker of meta's tracks in the order ReadAllMarkers gives them, each
// with its track's rate (unknown for a track counted in ticks).
KELTXMP_API std::vector<ExchangeMarker> ReadExchangeMarkers(TXMPMeta<std::string>& meta);
// The same of tracks already read, in their order.
KELTXMP_API std::vector<ExchangeMarker> ExchangeMarkersOfTracks(std::span<const XMPTrack> tracks);
// Between records and Marker objects; text is converted between UTF-8 and
// UTF-16. A record without an ID becomes a marker with a fresh one.
KELTXMP_API ExchangeMarker ToExchangeMarker(const Marker& marker, Rate rate);
KELTXMP_API std::shared_ptr<Marker> ToMarker(const ExchangeMarker& marker);

// SMPTE timecode of a frame count at a rate: HH:MM:SS:FF, drop-frame
// HH:MM:SS;FF at 30000/1001 and 60000/1001; a negative count gets a "-".
KELTXMP_API std::string FramesToTimecode(std::int64_t frames, Rate rate);
// The frame count of a timecode at a rate (";", ":", "." or "," before the frames);
// nothing for text that is not one, or a label drop-frame skips.
KELTXMP_API std::optional<std::int64_t> TimecodeToFrames(std::string_view timecode, Rate rate);

}  // namespace keltemporalxmp::exchange
