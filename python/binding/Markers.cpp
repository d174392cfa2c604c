// kx.Marker, kx.read_markers and kx.write_markers.

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <pybind11/stl.h>

#include <keltemporalxmp/docops.hpp>
#include <keltemporalxmp/markers.hpp>
#include <keltemporalxmp/streamread.hpp>

#include "Arguments.hpp"
#include "Bindings.hpp"
#include "Errors.hpp"
#include "MarkerRecord.hpp"
#include "Source.hpp"

namespace keltemporalxmp::python {
namespace {

// The markers come track by track, each track's in its own order, so the
// n-th marker lies on the track that holds the n-th record.
std::vector<Rate> MarkerRates(std::span<const XMPTrack> tracks) {
    std::vector<Rate> rates;
    for (const XMPTrack& track : tracks) {
        rates.insert(rates.end(), track.GetMarkers().size(),
                     Rate{track.GetFrameRateNumerator(), track.GetFrameRateDenominator()});
    }
    return rates;
}

// Packet text goes through the streaming reader, which hands back whatever it
// cannot read with certainty; that, and media files, the toolkit reads.
std::vector<XMPTrack> ReadTracks(const Source& source) {
    std::vector<XMPTrack> tracks;
    const std::optional<std::string> text = PacketTextOf(source);
    if (text && StreamReadTracks(*text, tracks)) {
        return tracks;
    }
    tracks.clear();
    SXMPMeta meta = LoadSource(source);
    XMPDocOpsTemporal document;
    document.OpenXMP(&meta, "");
    tracks.assign(document.TrackListIteratorBegin(), document.TrackListIteratorEnd());
    return tracks;
}

std::vector<MarkerRecord> ReadRecords(const Source& source) {
    const std::vector<XMPTrack> tracks = ReadTracks(source);
    MarkerList markers;
    AppendMarkersOfTracks(tracks, markers);
    const std::vector<Rate> rates = MarkerRates(tracks);
    std::vector<MarkerRecord> records;
    records.reserve(markers.size());
    for (std::size_t i = 0; i < markers.size(); ++i) {
        records.push_back(RecordOf(*markers[i], i < rates.size() ? std::optional(rates[i]) : std::nullopt));
    }
    return records;
}

std::vector<MarkerRecord> ReadMarkers(py::handle source) {
    const Source from = SourceFrom(source);
    const py::gil_scoped_release unlocked;
    return ReadRecords(from);
}

// Tracks store whole frames: a time is kept only when it reads back the same.
bool StoresExactly(std::int64_t ticks, Rate rate) {
    std::string text;
    XMPDocOpsTemporal::ConvertTicksToExternalTimeString(&text, ticks, rate.numerator, rate.denominator,
                                                        kTickRate.numerator, true);
    return XMPDocOpsTemporal::ConvertExternalTimeStringToTicks(text.c_str(), rate.numerator, rate.denominator,
                                                               kTickRate.numerator) == ticks;
}

// The number (from 1) of the first marker with a time that is not a whole frame at rate, or 0.
std::size_t FirstInexactMarker(const std::vector<MarkerRecord>& records, Rate rate) {
    for (std::size_t i = 0; i < records.size(); ++i) {
        if (!StoresExactly(records[i].start, rate) || !StoresExactly(records[i].duration, rate)) {
            return i + 1;
        }
    }
    return 0;
}

// The given rate, which must hold every time; else the first marker's track
// rate when it holds them all; else ticks.
Rate WritingRate(const std::vector<MarkerRecord>& records, std::optional<Rate> given) {
    if (given) {
        if (const std::size_t inexact = FirstInexactMarker(records, *given)) {
            throw ArgumentError("marker " + std::to_string(inexact) + " is not on a whole frame at (" +
                                std::to_string(given->numerator) + ", " + std::to_string(given->denominator) +
                                "); give another frame_rate or None");
        }
        return *given;
    }
    for (const MarkerRecord& record : records) {
        if (record.frameRate && record.frameRate->numerator > 0 && record.frameRate->denominator > 0) {
            return FirstInexactMarker(records, *record.frameRate) == 0 ? *record.frameRate : kTickRate;
        }
    }
    return kTickRate;
}

py::object WriteMarkers(py::handle path, py::handle markers, py::handle frameRate, py::handle output) {
    const std::string file = PathFrom(path, "path");
    const std::string target = output.is_none() ? std::string() : PathFrom(output, "output");
    const std::optional<Rate> given = RateFrom(frameRate, "frame_rate");
    const std::vector<MarkerRecord> records = RecordsFrom(markers);
    Rate rate;
    {
        const py::gil_scoped_release unlocked;
        MarkerList list;
        for (std::size_t i = 0; i < records.size(); ++i) {
            list.push_back(MarkerOf(records[i], i + 1));
        }
        rate = WritingRate(records, given);
        UpdateDocument(file, target,
                       [&](SXMPMeta& meta) { WriteAllMarkers(list, meta, rate.numerator, rate.denominator); });
    }
    return RateObject(rate);
}

struct TextProperty {
    const char* name;
    std::string MarkerRecord::*member;
    const char* doc;
};

const TextProperty kTextProperties[] = {
    {"type", &MarkerRecord::type, "The marker's type (\"Chapter\", \"Cue\", ...); read: its own, else its track's."},
    {"name", &MarkerRecord::name, "The marker's name."},
    {"comment", &MarkerRecord::comment, "Free text about the marker."},
    {"location", &MarkerRecord::location, "A URL the marker points to."},
    {"target", &MarkerRecord::target, "A frame or window the location opens in."},
    {"speaker", &MarkerRecord::speaker, "Who speaks in a speech marker."},
    {"probability", &MarkerRecord::probability, "How sure a speech recogniser was, as text."},
    {"cue_point_type", &MarkerRecord::cuePointType, "The cue point's type (\"Event\", \"Navigation\", ...)."},
};

std::vector<std::pair<std::string, std::string>> CuePointsFrom(py::handle cuePoints) {
    if (PyUnicode_Check(cuePoints.ptr()) || !py::isinstance<py::iterable>(cuePoints)) {
        throw ArgumentTypeError("cue_points must be an iterable of (key, value) str pairs");
    }
    std::vector<std::pair<std::string, std::string>> result;
    for (py::handle item : cuePoints) {
        if (!PyTuple_Check(item.ptr()) && !PyList_Check(item.ptr())) {
            throw ArgumentTypeError("cue_points must be an iterable of (key, value) str pairs");
        }
        const py::sequence pair = py::reinterpret_borrow<py::sequence>(item);
        if (pair.size() != 2) {
            throw ArgumentError("each cue point must be a (key, value) pair");
        }
        result.emplace_back(TextFrom(pair[0], "cue point key"), TextFrom(pair[1], "cue point value"));
    }
    return result;
}

py::list CuePointsObject(const MarkerRecord& record) {
    py::list list;
    for (const auto& [key, value] : record.cuePoints) {
        list.append(py::make_tuple(key, value));
    }
    return list;
}

MarkerRecord MakeMarker(py::handle name, py::handle type, py::handle start, py::handle duration, py::handle comment,
                        py::handle location, py::handle target, py::handle speaker, py::handle probability,
                        py::handle cuePointType, py::handle cuePoints, py::handle frameRate, py::handle id) {
    MarkerRecord record;
    // A marker is known by its ID from the start, as one read from a file is.
    record.id = id.is_none() ? Marker().GetMarkerID() : TextFrom(id, "id");
    record.name = TextFrom(name, "name");
    record.type = TextFrom(type, "type");
    record.comment = TextFrom(comment, "comment");
    record.location = TextFrom(location, "location");
    record.target = TextFrom(target, "target");
    record.speaker = TextFrom(speaker, "speaker");
    record.probability = TextFrom(probability, "probability");
    record.cuePointType = TextFrom(cuePointType, "cue_point_type");
    record.start = TicksFrom(start, "start");
    record.duration = TicksFrom(duration, "duration");
    record.cuePoints = CuePointsFrom(cuePoints);
    record.frameRate = RateFrom(frameRate, "frame_rate");
    return record;
}

py::str Repr(const MarkerRecord& record) {
    return py::str("Marker(type={!r}, name={!r}, start={!r}, duration={!r}, comment={!r}, id={!r})")
        .format(record.type, record.name, TicksObject(record.start), TicksObject(record.duration), record.comment,
                record.id);
}

py::tuple State(const MarkerRecord& record) {
    py::list texts;
    for (const TextProperty& property : kTextProperties) {
        texts.append(record.*property.member);
    }
    return py::make_tuple(record.id, texts, record.start, record.duration, RateObject(record.frameRate),
                          CuePointsObject(record));
}

MarkerRecord FromState(const py::tuple& state) {
    if (state.size() != 6) {
        throw ArgumentError("not a pickled keltemporalxmp.Marker");
    }
    MarkerRecord record;
    record.id = TextFrom(state[0], "id");
    const py::list texts = state[1].cast<py::list>();
    std::size_t i = 0;
    for (const TextProperty& property : kTextProperties) {
        record.*property.member = TextFrom(texts[i++], property.name);
    }
    record.start = TicksFrom(state[2], "start");
    record.duration = TicksFrom(state[3], "duration");
    record.frameRate = RateFrom(state[4], "frame_rate");
    record.cuePoints = CuePointsFrom(state[5]);
    return record;
}

}  // namespace

void BindMarkers(py::module_& module) {
    py::class_<MarkerRecord> marker(module, "Marker",
                                    R"(One marker of a track: a named point or span on the media's timeline.

Times are int ticks (TICKS_PER_SECOND per second), None where unspecified.
Every keyword argument is optional; a new marker gets a fresh ID.)");
    marker.def(py::init(&MakeMarker), py::kw_only(), py::arg("name") = "", py::arg("type") = "", py::arg("start") = 0,
               py::arg("duration") = 0, py::arg("comment") = "", py::arg("location") = "", py::arg("target") = "",
               py::arg("speaker") = "", py::arg("probability") = "", py::arg("cue_point_type") = "",
               py::arg("cue_points") = py::tuple(), py::arg("frame_rate") = py::none(), py::arg("id") = py::none(),
               "A marker with the given fields; text fields are str, times int ticks or None.");
    for (const TextProperty& property : kTextProperties) {
        const auto member = property.member;
        const char* name = property.name;
        marker.def_property(
            name, [member](const MarkerRecord& record) { return record.*member; },
            [member, name](MarkerRecord& record, py::handle value) { record.*member = TextFrom(value, name); },
            property.doc);
    }
    marker.def_property(
        "id", [](const MarkerRecord& record) { return record.id; },
        [](MarkerRecord& record, py::handle value) { record.id = TextFrom(value, "id"); },
        "The marker's ID text (a GUID's text for markers this library makes).");
    marker.def_property(
        "start", [](const MarkerRecord& record) { return TicksObject(record.start); },
        [](MarkerRecord& record, py::handle value) { record.start = TicksFrom(value, "start"); },
        "Start in ticks; None where unspecified.");
    marker.def_property(
        "duration", [](const MarkerRecord& record) { return TicksObject(record.duration); },
        [](MarkerRecord& record, py::handle value) { record.duration = TicksFrom(value, "duration"); },
        "Duration in ticks; None where unspecified.");
    marker.def_property(
        "frame_rate", [](const MarkerRecord& record) { return RateObject(record.frameRate); },
        [](MarkerRecord& record, py::handle value) { record.frameRate = RateFrom(value, "frame_rate"); },
        "(numerator, denominator) of the marker's track; None for a marker not read from a track.");
    marker.def_property(
        "cue_points", &CuePointsObject,
        [](MarkerRecord& record, py::handle value) { record.cuePoints = CuePointsFrom(value); },
        "The cue point parameters, a list of (key, value) str tuples in order; keywords are among them. "
        "A copy: assign a new list to change them.");
    marker.def(
        "__eq__", [](const MarkerRecord& a, const MarkerRecord& b) { return a == b; }, py::is_operator());
    marker.def("__repr__", &Repr);
    marker.def(py::pickle(&State, &FromState));
    marker.attr("__hash__") = py::none();

    module.def("read_markers", &ReadMarkers, py::arg("source"),
               R"(Every marker of every track of a document, track by track, each track's by start time.

source: the path (str or os.PathLike) of a sidecar (.xmp) or a media file, or
an XMP packet as bytes. A file without XMP has no markers. The GIL is released
while the file is read and parsed.)");
    module.def("write_markers", &WriteMarkers, py::arg("path"), py::arg("markers"), py::arg("frame_rate") = py::none(),
               py::arg("output") = py::none(),
               R"(Replace every track of the file at path by one track per marker type.

The tracks run at frame_rate, which must hold every start and duration as a
whole frame (else ValueError); by default at the frame_rate of the first
marker that has one when it holds them all, else in ticks. With output the
result goes there (a sidecar, or a copy of the media file) and path stays as
it is. A file is replaced only once its new version is complete: on any
failure every existing file is left as it was. Returns the rate written.)");
}

}  // namespace keltemporalxmp::python
