#include "MarkerJson.hpp"

#include <cmath>

#include <kelcore/UTF.hpp>

#include "Errors.hpp"
#include "TimeInput.hpp"

namespace keltemporalxmp::tool {
namespace {

using kelcore::JSONValue;

struct TextField {
    const char* member;
    UTF16String (Marker::*get)() const;
    void (Marker::*set)(const UTF16String&);
};

// In the order they are printed.
const TextField kTextFields[] = {
    {"type", &Marker::GetType, &Marker::SetType},
    {"name", &Marker::GetName, &Marker::SetName},
    {"comment", &Marker::GetComment, &Marker::SetComment},
    {"location", &Marker::GetLocation, &Marker::SetLocation},
    {"target", &Marker::GetTarget, &Marker::SetTarget},
    {"cuePointType", &Marker::GetCuePointType, &Marker::SetCuePointType},
    {"speaker", &Marker::GetSpeaker, &Marker::SetSpeaker},
    {"probability", &Marker::GetProbability, &Marker::SetProbability},
};

std::string Narrow(const UTF16String& text) {
    return kelcore::UTF16to8(text);
}

// Where in the JSON a marker's problem is, for the message.
class MarkerReader {
public:
    // `textRate` receives the first rate a time text counts in ("90f25").
    MarkerReader(const JSONValue& marker, std::size_t number, std::optional<FrameRate> rate,
                 std::optional<FrameRate>& textRate)
        : m_marker(marker), m_number(number), m_rate(rate), m_textRate(textRate) {}

    std::shared_ptr<Marker> Read() const {
        if (!m_marker.is_object()) {
            Fail("", "must be an object");
        }
        auto marker = std::make_shared<Marker>(Text("id"));
        for (const TextField& field : kTextFields) {
            (marker.get()->*field.set)(kelcore::UTF8to16(Text(field.member)));
        }
        marker->SetStartTime(kelmediatypes::TickTime(Time("start")));
        marker->SetDuration(kelmediatypes::TickTime(Time("duration")));
        marker->SetCuePointList(CuePoints());
        return marker;
    }

private:
    [[noreturn]] void Fail(const std::string& member, const std::string& problem) const {
        throw InputError("marker " + std::to_string(m_number) + (member.empty() ? "" : " \"" + member + "\"") + ": " +
                         problem);
    }

    std::string Text(const char* member) const {
        if (!m_marker.contains(member)) {
            return "";
        }
        if (!m_marker[member].is_string()) {
            Fail(member, "must be text");
        }
        return m_marker[member].get<std::string>();
    }

    std::int64_t Time(const char* member) const {
        if (!m_marker.contains(member)) {
            return 0;
        }
        const JSONValue& time = m_marker[member];
        try {
            if (time.is_number_integer()) {
                return time.get<std::int64_t>();
            }
            if (time.is_string()) {
                const UserTime parsed = ParseUserTime(time.get<std::string>(), m_rate);
                if (!m_textRate && parsed.rate && IsUsableRate(*parsed.rate)) {
                    m_textRate = parsed.rate;
                }
                return parsed.ticks;
            }
            if (time.is_object() && time.value("unspecified", false)) {
                return kTimeUnspecified;
            }
            if (time.is_object() && time.contains("ticks") && time["ticks"].is_number_integer()) {
                return time["ticks"].get<std::int64_t>();
            }
            if (time.is_object() && time.contains("seconds") && time["seconds"].is_number()) {
                return TicksOfSeconds(time["seconds"].get<double>());
            }
        } catch (const InputError& error) {
            Fail(member, error.what());
        }
        Fail(member, "must be ticks, a time object with \"ticks\" or \"seconds\", or text such as 90f25");
    }

    CustomMarkerParamList CuePoints() const {
        CustomMarkerParamList list;
        if (!m_marker.contains("cuePoints")) {
            return list;
        }
        const JSONValue& cuePoints = m_marker["cuePoints"];
        if (!cuePoints.is_array()) {
            Fail("cuePoints", "must be an array");
        }
        for (const JSONValue& cuePoint : cuePoints) {
            if (!cuePoint.is_object() || !cuePoint.contains("key") || !cuePoint["key"].is_string() ||
                (cuePoint.contains("value") && !cuePoint["value"].is_string())) {
                Fail("cuePoints", "each must be {\"key\": text, \"value\": text}");
            }
            list.push_back({kelcore::UTF8to16(cuePoint["key"].get<std::string>()),
                            kelcore::UTF8to16(cuePoint.value("value", ""))});
        }
        return list;
    }

    const JSONValue& m_marker;
    std::size_t m_number;
    std::optional<FrameRate> m_rate;
    std::optional<FrameRate>& m_textRate;
};

const JSONValue& MarkerArray(const JSONValue& document) {
    if (document.is_array()) {
        return document;
    }
    if (document.is_object() && document.contains("files")) {
        const JSONValue& files = document["files"];
        if (!files.is_array() || files.size() != 1) {
            throw InputError("\"files\" must hold the markers of exactly one file");
        }
        return MarkerArray(files[0]);
    }
    if (document.is_object() && document.contains("markers") && document["markers"].is_array()) {
        return document["markers"];
    }
    throw InputError("expected {\"files\": [...]}, {\"markers\": [...]} or an array of markers");
}

std::optional<FrameRate> ShownRate(const JSONValue& markers) {
    for (const JSONValue& marker : markers) {
        if (marker.is_object() && marker.contains("rate") && marker["rate"].is_object()) {
            const FrameRate rate{marker["rate"].value("numerator", std::int64_t{0}),
                                 marker["rate"].value("denominator", std::int64_t{0})};
            if (IsUsableRate(rate)) {
                return rate;
            }
        }
    }
    return std::nullopt;
}

}  // namespace

JSONValue MarkerJson(const Marker& marker, std::optional<FrameRate> rate) {
    JSONValue json = {{"id", marker.GetMarkerID()}};
    for (const TextField& field : kTextFields) {
        json[field.member] = Narrow((marker.*field.get)());
    }
    json["start"] = TimeJson(marker.GetStartTime().GetTicks(), rate);
    json["duration"] = TimeJson(marker.GetDuration().GetTicks(), rate);
    if (rate) {
        json["rate"] = FrameRateJson(*rate);
    }
    JSONValue& cuePoints = json["cuePoints"] = JSONValue::array();
    for (const CustomMarkerParam& cuePoint : marker.GetCuePointList()) {
        cuePoints.push_back({{"key", Narrow(cuePoint.key)}, {"value", Narrow(cuePoint.value)}});
    }
    return json;
}

Table MarkerTable() {
    return Table({{"type"},
                  {"name"},
                  {"start", true},
                  {"start_frames", true},
                  {"start_timecode"},
                  {"duration", true},
                  {"duration_frames", true},
                  {"rate"},
                  {"cue_points", true},
                  {"comment"}});
}

void AddMarkerRow(Table& table, const Marker& marker, std::optional<FrameRate> rate) {
    const std::int64_t start = marker.GetStartTime().GetTicks();
    const std::int64_t duration = marker.GetDuration().GetTicks();
    table.AddRow({Narrow(marker.GetType()), Narrow(marker.GetName()), SecondsCell(start), FramesCell(start, rate),
                  TimecodeCell(start, rate), SecondsCell(duration), FramesCell(duration, rate),
                  rate ? FrameRateText(*rate) : "-", std::to_string(marker.GetCuePointList().size()),
                  Narrow(marker.GetComment())});
}

MarkersFromJson ReadMarkersJson(std::string_view text, std::optional<FrameRate> rate) {
    const kelcore::JSONValuePtr document = kelcore::JSONParse(text);
    if (document == nullptr) {
        throw InputError("not JSON");
    }
    const JSONValue& array = MarkerArray(*document);
    MarkersFromJson result{{}, ShownRate(array)};
    std::optional<FrameRate> textRate;
    for (std::size_t i = 0; i < array.size(); ++i) {
        result.markers.push_back(MarkerReader(array[i], i + 1, rate ? rate : result.rate, textRate).Read());
    }
    if (!result.rate) {
        result.rate = textRate;
    }
    return result;
}

}  // namespace keltemporalxmp::tool
