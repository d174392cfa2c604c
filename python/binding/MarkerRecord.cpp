#include "MarkerRecord.hpp"

#include <kelcore/UTF.hpp>

#include "Errors.hpp"

namespace keltemporalxmp::python {
namespace {

struct TextField {
    const char* name;
    std::string MarkerRecord::*member;
    UTF16String (Marker::*get)() const;
    void (Marker::*set)(const UTF16String&);
};

const TextField kTextFields[] = {
    {"type", &MarkerRecord::type, &Marker::GetType, &Marker::SetType},
    {"name", &MarkerRecord::name, &Marker::GetName, &Marker::SetName},
    {"comment", &MarkerRecord::comment, &Marker::GetComment, &Marker::SetComment},
    {"location", &MarkerRecord::location, &Marker::GetLocation, &Marker::SetLocation},
    {"target", &MarkerRecord::target, &Marker::GetTarget, &Marker::SetTarget},
    {"speaker", &MarkerRecord::speaker, &Marker::GetSpeaker, &Marker::SetSpeaker},
    {"probability", &MarkerRecord::probability, &Marker::GetProbability, &Marker::SetProbability},
    {"cue_point_type", &MarkerRecord::cuePointType, &Marker::GetCuePointType, &Marker::SetCuePointType},
};

// XML cannot carry these characters, so the packet would not read back.
void RequireStorable(const std::string& text, std::size_t number, const char* field) {
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r') {
            throw ArgumentError("marker " + std::to_string(number) + " " + field + ": control character " +
                                std::to_string(byte) + " cannot be stored in XMP");
        }
    }
}

UTF16String Wide(const std::string& text, std::size_t number, const char* field) {
    RequireStorable(text, number, field);
    return kelcore::UTF8to16(text);
}

}  // namespace

MarkerRecord RecordOf(const Marker& marker, std::optional<Rate> trackRate) {
    MarkerRecord record;
    record.id = marker.GetMarkerID();
    for (const TextField& field : kTextFields) {
        record.*field.member = kelcore::UTF16to8((marker.*field.get)());
    }
    record.start = marker.GetStartTime().GetTicks();
    record.duration = marker.GetDuration().GetTicks();
    record.frameRate = trackRate;
    for (const CustomMarkerParam& cuePoint : marker.GetCuePointList()) {
        record.cuePoints.emplace_back(kelcore::UTF16to8(cuePoint.key), kelcore::UTF16to8(cuePoint.value));
    }
    return record;
}

std::shared_ptr<Marker> MarkerOf(const MarkerRecord& record, std::size_t number) {
    RequireStorable(record.id, number, "id");
    auto marker = std::make_shared<Marker>(record.id);
    for (const TextField& field : kTextFields) {
        (marker.get()->*field.set)(Wide(record.*field.member, number, field.name));
    }
    marker->SetStartTime(kelmediatypes::TickTime(record.start));
    marker->SetDuration(kelmediatypes::TickTime(record.duration));
    CustomMarkerParamList cuePoints;
    for (const auto& [key, value] : record.cuePoints) {
        cuePoints.push_back({Wide(key, number, "cue point key"), Wide(value, number, "cue point value")});
    }
    marker->SetCuePointList(cuePoints);
    return marker;
}

std::vector<MarkerRecord> RecordsFrom(py::handle markers) {
    if (PyUnicode_Check(markers.ptr()) || PyBytes_Check(markers.ptr()) || !py::isinstance<py::iterable>(markers)) {
        throw ArgumentTypeError("markers must be an iterable of keltemporalxmp.Marker");
    }
    std::vector<MarkerRecord> records;
    for (py::handle item : markers) {
        if (!py::isinstance<MarkerRecord>(item)) {
            throw ArgumentTypeError("markers[" + std::to_string(records.size()) +
                                    "] must be a keltemporalxmp.Marker, not " + Py_TYPE(item.ptr())->tp_name);
        }
        records.push_back(item.cast<const MarkerRecord&>());
    }
    return records;
}

}  // namespace keltemporalxmp::python
