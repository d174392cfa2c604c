// The tool's own JSON: {"markers": [...]} with each marker as `markers
// --json` prints it; times are objects whose "ticks" are exact.

#include "Formats.hpp"
#include "JsonText.hpp"
#include "TimeMath.hpp"

namespace keltemporalxmp::exchange {
namespace {

constexpr Format kFormat = Format::kJSON;

Json TimeJson(std::int64_t ticks, Rate rate) {
    Json time = {{"ticks", ticks}};
    if (ticks == kTimeUnspecified) {
        time["unspecified"] = true;
        return time;
    }
    time["seconds"] = static_cast<double>(ticks) / static_cast<double>(kTicksPerSecond);
    if (rate.IsKnown()) {
        const std::int64_t frames = FramesOfTicks(ticks, rate);
        time["frames"] = frames;
        time["timecode"] = FramesToTimecode(frames, rate);
    }
    return time;
}

Json MarkerJson(const ExchangeMarker& marker) {
    Json json = {{"id", marker.id}, {"type", marker.type}, {"name", marker.name}, {"comment", marker.comment}};
    json["start"] = TimeJson(marker.start, marker.rate);
    json["duration"] = TimeJson(marker.duration, marker.rate);
    // Kept even when unusable, so that it reads back as it was.
    if (marker.rate != Rate{}) {
        json["rate"] = RateJson(marker.rate);
    }
    json["cuePoints"] = CuePointsJson(marker.cuePoints);
    return json;
}

// The markers of one file as `markers --json` prints them, {"markers": [...]} or a bare array.
const Json& MarkerArray(const Json& document) {
    if (document.is_array()) {
        return document;
    }
    const Json* file = &document;
    if (const Json* files = Member(document, "files")) {
        if (!files->is_array() || files->size() != 1) {
            FailAt(kFormat, "files", "the markers of exactly one file");
        }
        file = &(*files)[0];
    }
    const Json* markers = Member(*file, "markers");
    if (markers == nullptr || !markers->is_array()) {
        FailAt(kFormat, "the top", "{\"files\": [...]}, {\"markers\": [...]} or an array of markers");
    }
    return *markers;
}

std::int64_t ReadTime(const Json& marker, const char* name, const std::string& path) {
    const Json* time = Member(marker, name);
    if (time == nullptr) {
        return 0;
    }
    if (time->is_number_integer()) {
        return time->get<std::int64_t>();
    }
    if (const Json* unspecified = Member(*time, "unspecified");
        unspecified && unspecified->is_boolean() && unspecified->get<bool>()) {
        return kTimeUnspecified;
    }
    if (const Json* ticks = Member(*time, "ticks"); ticks && ticks->is_number_integer()) {
        return ticks->get<std::int64_t>();
    }
    if (const Json* seconds = Member(*time, "seconds"); seconds && seconds->is_number()) {
        const std::optional<std::int64_t> ticks = TicksOfUnits(
            static_cast<Wide>(std::llround(std::clamp(seconds->get<double>(), -9e12, 9e12) * 1e6)), 1000000);
        if (ticks) {
            return *ticks;
        }
    }
    FailAt(kFormat, path + "." + name, "ticks, or a time object with \"ticks\" or \"seconds\"");
}

}  // namespace

std::string ExportJson(const Markers& markers, const ExportOptions&) {
    Json list = Json::array();
    for (const ExchangeMarker& marker : markers) {
        list.push_back(MarkerJson(marker));
    }
    return JsonText(Json{{"markers", std::move(list)}});
}

Markers ImportJson(std::string_view text, const ImportOptions& options) {
    const Json document = ParseJsonText(text, kFormat);
    const Json& list = MarkerArray(document);
    Markers markers;
    for (std::size_t i = 0; i < list.size(); ++i) {
        const Json& item = list[i];
        const std::string path = "markers[" + std::to_string(i) + "]";
        if (!item.is_object()) {
            FailAt(kFormat, path, "an object");
        }
        ExchangeMarker marker;
        marker.id = TextMember(item, "id", path, kFormat);
        marker.type = TextMember(item, "type", path, kFormat);
        marker.name = TextMember(item, "name", path, kFormat);
        marker.comment = TextMember(item, "comment", path, kFormat);
        marker.start = ReadTime(item, "start", path);
        marker.duration = ReadTime(item, "duration", path);
        marker.rate = RateMember(item, path, kFormat).value_or(options.rate);
        marker.cuePoints = CuePointsMember(item, "cuePoints", path, kFormat);
        markers.push_back(std::move(marker));
    }
    return markers;
}

}  // namespace keltemporalxmp::exchange
