#include "MarkerJson.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include <kelcore/UTF.hpp>

#include "Errors.hpp"
#include "InputFiles.hpp"
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

// nlohmann keeps a number past INT64_MAX as unsigned; reading it as signed would wrap.
bool FitsInt64(const JSONValue& number) {
    return number.is_number_integer() &&
           !(number.is_number_unsigned() && number.get<std::uint64_t>() > std::uint64_t{INT64_MAX});
}

std::int64_t Ticks(const JSONValue& number) {
    if (!FitsInt64(number)) {
        throw InputError(number.dump() + " ticks is beyond the 64 bits a time can hold");
    }
    return number.get<std::int64_t>();
}

// Where a byte offset lies, counted from 1 as editors do.
std::string LineAndColumn(std::string_view text, std::size_t offset) {
    const std::string_view before = text.substr(0, std::min(offset, text.size()));
    const std::size_t lineStart = before.rfind('\n');
    const std::size_t line = 1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
    const std::size_t column = before.size() - (lineStart == std::string_view::npos ? 0 : lineStart + 1) + 1;
    return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

// The parser's reason without its own position and without the text it last
// read, which may be any length.
std::string SyntaxReason(const std::string& message) {
    const std::size_t dash = message.find(" - ");
    std::string reason = dash == std::string::npos ? message : message.substr(dash + 3);
    const std::size_t lastRead = reason.find("; last read: ");
    if (lastRead != std::string::npos) {
        const std::size_t expected = reason.rfind("; expected");
        reason = reason.substr(0, lastRead) +
                 (expected != std::string::npos && expected > lastRead ? reason.substr(expected) : "");
    }
    return reason;
}

// A first pass that builds nothing: it bounds the nesting before any value is
// built and places a syntax error by line and column.
class JsonShapeCheck final : public nlohmann::json_sax<JSONValue> {
public:
    explicit JsonShapeCheck(std::string_view text) : m_text(text) {}

    bool null() override { return true; }
    bool boolean(bool) override { return true; }
    bool number_integer(number_integer_t) override { return true; }
    bool number_unsigned(number_unsigned_t) override { return true; }
    bool number_float(number_float_t, const string_t&) override { return true; }
    bool string(string_t&) override { return true; }
    bool binary(binary_t&) override { return true; }
    bool key(string_t&) override { return true; }
    bool start_object(std::size_t) override { return Enter(); }
    bool end_object() override { return Leave(); }
    bool start_array(std::size_t) override { return Enter(); }
    bool end_array() override { return Leave(); }

    bool parse_error(std::size_t position, const std::string&, const nlohmann::detail::exception& error) override {
        // The position counts the bytes read, the offending one included.
        m_problem = "not JSON at " + LineAndColumn(m_text, position == 0 ? 0 : position - 1) + ": " +
                    SyntaxReason(error.what()) + "; correct the text there";
        return false;
    }

    const std::string& Problem() const { return m_problem; }

private:
    bool Enter() {
        if (++m_depth <= kMaxJsonDepth) {
            return true;
        }
        m_problem = "arrays and objects nested deeper than " + std::to_string(kMaxJsonDepth) +
                    " levels; markers need no more than 6";
        return false;
    }
    bool Leave() {
        --m_depth;
        return true;
    }

    std::string_view m_text;
    std::size_t m_depth = 0;
    std::string m_problem;
};

void CheckJsonShape(std::string_view text) {
    if (text.size() > kMaxJsonBytes) {
        throw InputError("larger than the " + std::to_string(kMaxJsonBytes) + " bytes of JSON the tool reads");
    }
    JsonShapeCheck check(text);
    if (!JSONValue::sax_parse(text, &check)) {
        throw InputError(check.Problem());
    }
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
                return Ticks(time);
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
                return Ticks(time["ticks"]);
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

std::int64_t RateMember(const JSONValue& rate, const char* member, std::size_t number) {
    if (!rate.contains(member) || !FitsInt64(rate[member]) || rate[member].get<std::int64_t>() <= 0) {
        throw InputError("marker " + std::to_string(number) + " \"rate\": \"" + member +
                         "\" must be a whole number from 1 to 9223372036854775807");
    }
    return rate[member].get<std::int64_t>();
}

// The first marker's rate; every rate given must be one.
std::optional<FrameRate> ShownRate(const JSONValue& markers) {
    std::optional<FrameRate> shown;
    for (std::size_t i = 0; i < markers.size(); ++i) {
        const JSONValue& marker = markers[i];
        if (!marker.is_object() || !marker.contains("rate")) {
            continue;
        }
        if (!marker["rate"].is_object()) {
            throw InputError("marker " + std::to_string(i + 1) +
                             " \"rate\": must be {\"numerator\": N, \"denominator\": N}");
        }
        const FrameRate rate{RateMember(marker["rate"], "numerator", i + 1),
                             RateMember(marker["rate"], "denominator", i + 1)};
        shown = shown.value_or(rate);
    }
    return shown;
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
    CheckJsonShape(text);
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

MarkersFromJson ReadMarkersJsonFile(const std::string& path, std::optional<FrameRate> rate) {
    return ReadMarkersJson(ReadRegularFile(path, kMaxJsonBytes), rate);
}

}  // namespace keltemporalxmp::tool
