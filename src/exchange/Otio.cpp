// Interchange timelines: a Timeline.1 whose Stack.1 carries the markers as
// Marker.2 with a TimeRange.1 of RationalTime.1 values at the frame rate.
// What the schema has no place for (type, ID, cue points, the marker's rate,
// exact ticks) rides in metadata["keltemporalxmp"].

#include <cmath>

#include "Formats.hpp"
#include "JsonText.hpp"
#include "TimeMath.hpp"

namespace keltemporalxmp::exchange {
namespace {

constexpr Format kFormat = Format::kOTIO;
constexpr const char* kOwnMetadata = "keltemporalxmp";
constexpr const char* kMarkerColor = "GREEN";

double RateValue(Rate rate) {
    return static_cast<double>(rate.numerator) / static_cast<double>(rate.denominator);
}

// Whole frames exactly when the time is on one.
double FramesValue(std::int64_t ticks, Rate rate) {
    if (ticks == kTimeUnspecified) {
        return 0;
    }
    if (IsOnFrame(ticks, rate)) {
        return static_cast<double>(FramesOfTicks(ticks, rate));
    }
    return static_cast<double>(ticks) / static_cast<double>(kTicksPerSecond) * RateValue(rate);
}

Json RationalTime(std::int64_t ticks, Rate rate) {
    return {{"OTIO_SCHEMA", "RationalTime.1"}, {"rate", RateValue(rate)}, {"value", FramesValue(ticks, rate)}};
}

Json MarkerJson(const ExchangeMarker& marker, Rate rate) {
    Json own = {{"id", marker.id},
                {"type", marker.type},
                {"start_ticks", marker.start},
                {"duration_ticks", marker.duration},
                {"cue_points", CuePointsJson(marker.cuePoints)}};
    if (marker.rate != Rate{}) {
        own["rate"] = RateJson(marker.rate);
    }
    return {{"OTIO_SCHEMA", "Marker.2"},
            {"metadata", {{kOwnMetadata, std::move(own)}}},
            {"name", marker.name},
            {"color", kMarkerColor},
            {"marked_range",
             {{"OTIO_SCHEMA", "TimeRange.1"},
              {"duration", RationalTime(marker.duration, rate)},
              {"start_time", RationalTime(marker.start, rate)}}},
            {"comment", marker.comment}};
}

bool HasSchema(const Json& value, std::string_view name) {
    const Json* schema = Member(value, "OTIO_SCHEMA");
    return schema != nullptr && schema->is_string() && schema->get_ref<const std::string&>().starts_with(name);
}

// The rate a RationalTime counts in, as a ratio when it is a common one.
Rate RateOfValue(double rate) {
    for (const std::int64_t denominator : {std::int64_t{1}, std::int64_t{1001}}) {
        const double numerator = std::round(rate * static_cast<double>(denominator));
        if (numerator >= 1 && numerator < 1e9 &&
            std::fabs(numerator / static_cast<double>(denominator) - rate) < 1e-9) {
            return {static_cast<std::int64_t>(numerator), denominator};
        }
    }
    return {};
}

class OtioMarkerReader {
public:
    OtioMarkerReader(const Json& marker, std::string path, const ImportOptions& options)
        : m_marker(marker), m_path(std::move(path)), m_options(options) {}

    ExchangeMarker Read() const {
        if (!HasSchema(m_marker, "Marker.")) {
            FailAt(kFormat, m_path, "an object with \"OTIO_SCHEMA\": \"Marker.2\"");
        }
        const Json* metadata = Member(m_marker, "metadata");
        const Json* ownMember = metadata ? Member(*metadata, kOwnMetadata) : nullptr;
        const Json& own = ownMember && ownMember->is_object() ? *ownMember : kNoMetadata;
        const std::string ownPath = m_path + ".metadata." + kOwnMetadata;
        ExchangeMarker marker;
        marker.name = TextMember(m_marker, "name", m_path, kFormat);
        marker.comment = TextMember(m_marker, "comment", m_path, kFormat);
        marker.id = TextMember(own, "id", ownPath, kFormat);
        marker.type = TextMember(own, "type", ownPath, kFormat);
        if (marker.type.empty()) {
            marker.type = ImportType(kFormat, m_options);
        }
        const Json* range = Member(m_marker, "marked_range");
        if (range == nullptr || !HasSchema(*range, "TimeRange.")) {
            FailAt(kFormat, m_path + ".marked_range", "a TimeRange.1");
        }
        Rate valueRate;
        marker.start = Time(*range, "start_time", own, "start_ticks", valueRate);
        marker.duration = Time(*range, "duration", own, "duration_ticks", valueRate);
        const std::optional<Rate> ownRate = RateMember(own, ownPath, kFormat);
        marker.rate = ownRate ? *ownRate : m_options.rate.IsKnown() ? m_options.rate : valueRate;
        marker.cuePoints = CuePointsMember(own, "cue_points", ownPath, kFormat);
        return marker;
    }

private:
    // The exact ticks kept in the metadata, unless the RationalTime was moved
    // away from them by more than half a frame.
    std::int64_t Time(const Json& range, const char* name, const Json& own, const char* ticksName,
                      Rate& valueRate) const {
        const std::string path = m_path + ".marked_range." + name;
        const Json* time = Member(range, name);
        const Json* rate = time ? Member(*time, "rate") : nullptr;
        const Json* value = time ? Member(*time, "value") : nullptr;
        if (time == nullptr || !HasSchema(*time, "RationalTime.") || !rate || !rate->is_number() || !value ||
            !value->is_number() || !(rate->get<double>() > 0)) {
            FailAt(kFormat, path, "a RationalTime.1 with a positive \"rate\" and a \"value\"");
        }
        const double seconds = value->get<double>() / rate->get<double>();
        const double ticks = std::round(seconds * static_cast<double>(kTicksPerSecond));
        if (!std::isfinite(ticks) || std::fabs(ticks) >= 9.2e18) {
            FailAt(kFormat, path, "a time that fits 64-bit ticks");
        }
        valueRate = RateOfValue(rate->get<double>());
        const Json* exact = Member(own, ticksName);
        if (exact && exact->is_number_integer()) {
            const std::int64_t kept = exact->get<std::int64_t>();
            const double halfFrame = static_cast<double>(kTicksPerSecond) / rate->get<double>() / 2;
            const bool unchanged = kept == kTimeUnspecified ? value->get<double>() == 0
                                                            : std::fabs(static_cast<double>(kept) - ticks) <= halfFrame;
            if (unchanged) {
                return kept;
            }
        }
        return static_cast<std::int64_t>(ticks);
    }

    inline static const Json kNoMetadata = Json::object();
    const Json& m_marker;
    std::string m_path;
    const ImportOptions& m_options;
};

void ReadMarkers(const Json& item, const std::string& path, const ImportOptions& options, Markers& markers) {
    const Json* list = Member(item, "markers");
    if (list == nullptr || list->is_null()) {
        return;
    }
    if (!list->is_array()) {
        FailAt(kFormat, path + ".markers", "an array");
    }
    for (std::size_t i = 0; i < list->size(); ++i) {
        markers.push_back(OtioMarkerReader((*list)[i], path + ".markers[" + std::to_string(i) + "]", options).Read());
    }
}

}  // namespace

std::string ExportOtio(const Markers& markers, const ExportOptions& options) {
    const Rate rate = ExportRate(markers, options);
    Json list = Json::array();
    for (const ExchangeMarker& marker : markers) {
        list.push_back(MarkerJson(marker, rate));
    }
    const Json timeline = {{"OTIO_SCHEMA", "Timeline.1"},
                           {"metadata", Json::object()},
                           {"name", options.title},
                           {"global_start_time", nullptr},
                           {"tracks",
                            {{"OTIO_SCHEMA", "Stack.1"},
                             {"metadata", Json::object()},
                             {"name", "tracks"},
                             {"source_range", nullptr},
                             {"effects", Json::array()},
                             {"markers", std::move(list)},
                             {"enabled", true},
                             {"children", Json::array()}}}};
    return JsonText(timeline);
}

// The markers of the stack, then of each of its tracks (which start where the stack does).
Markers ImportOtio(std::string_view text, const ImportOptions& options) {
    const Json timeline = ParseJsonText(text, kFormat);
    if (!HasSchema(timeline, "Timeline.")) {
        FailAt(kFormat, "the top", "an object with \"OTIO_SCHEMA\": \"Timeline.1\"");
    }
    const Json* stack = Member(timeline, "tracks");
    if (stack == nullptr || !HasSchema(*stack, "Stack.")) {
        FailAt(kFormat, "tracks", "a Stack.1");
    }
    Markers markers;
    ReadMarkers(*stack, "tracks", options, markers);
    const Json* children = Member(*stack, "children");
    if (children != nullptr && children->is_array()) {
        for (std::size_t i = 0; i < children->size(); ++i) {
            if (HasSchema((*children)[i], "Track.")) {
                ReadMarkers((*children)[i], "tracks.children[" + std::to_string(i) + "]", options, markers);
            }
        }
    }
    return markers;
}

}  // namespace keltemporalxmp::exchange
