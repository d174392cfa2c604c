// kx.export and kx.import_markers: markers to and from the text formats of
// the exchange component.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <pybind11/stl.h>

#include <keltemporalxmp/exchange.hpp>

#include "Arguments.hpp"
#include "Bindings.hpp"
#include "Errors.hpp"
#include "MarkerRecord.hpp"

namespace keltemporalxmp::python {
namespace {

exchange::Format FormatFrom(py::handle name) {
    const std::string text = TextFrom(name, "format");
    if (const std::optional<exchange::Format> format = exchange::FormatFromName(text)) {
        return *format;
    }
    throw ArgumentError("unknown format \"" + text +
                        "\"; one of youtube, ffmetadata, webvtt, srt, edl, csv, tsv, audacity, otio, json");
}

exchange::Rate ExchangeRate(const std::optional<Rate>& rate) {
    return rate ? exchange::Rate{rate->numerator, rate->denominator} : exchange::Rate{};
}

// A track counted in ticks has no frame rate to lay frames out at.
exchange::Rate TrackRate(const std::optional<Rate>& rate) {
    return rate == kTickRate ? exchange::Rate{} : ExchangeRate(rate);
}

// Copied field by field: the formats hold any text, also the control
// characters an XMP packet cannot, so text that was imported exports again.
exchange::ExchangeMarker ExchangeMarkerOf(const MarkerRecord& record) {
    exchange::ExchangeMarker marker{
        record.id, record.type, record.name, record.comment, record.start, record.duration, TrackRate(record.frameRate),
        {}};
    for (const auto& [key, value] : record.cuePoints) {
        marker.cuePoints.push_back({key, value});
    }
    return marker;
}

std::optional<Rate> RecordRate(exchange::Rate rate) {
    return rate.IsKnown() ? std::optional(Rate{rate.numerator, rate.denominator}) : std::nullopt;
}

// The library's checks of an option (a rate too fine for ticks, a timecode
// that is none) are bad arguments to a Python caller.
template <typename Work>
auto WithArgumentErrors(Work work) {
    try {
        return work();
    } catch (const exchange::ExportError&) {
        throw;
    } catch (const exchange::ImportError&) {
        throw;
    } catch (const XMP_Error& error) {
        if (error.GetID() == kXMPErr_BadParam) {
            throw ArgumentError(error.GetErrMsg());
        }
        throw;
    }
}

std::string Export(py::handle markers, py::handle format, py::handle rate, py::handle timecodeStart, py::handle title,
                   bool force) {
    const exchange::Format chosen = FormatFrom(format);
    exchange::ExportOptions options;
    options.rate = ExchangeRate(RateFrom(rate, "rate"));
    options.timecodeStart = TextFrom(timecodeStart, "timecode_start");
    options.title = TextFrom(title, "title");
    options.force = force;
    const std::vector<MarkerRecord> records = RecordsFrom(markers);
    const py::gil_scoped_release unlocked;
    std::vector<exchange::ExchangeMarker> list;
    list.reserve(records.size());
    for (const MarkerRecord& record : records) {
        list.push_back(ExchangeMarkerOf(record));
    }
    return WithArgumentErrors([&] { return exchange::ExportMarkers(list, chosen, options); });
}

std::vector<MarkerRecord> Import(py::handle text, py::handle format, py::handle frameRate, py::handle type) {
    const exchange::Format chosen = FormatFrom(format);
    exchange::ImportOptions options;
    options.rate = ExchangeRate(RateFrom(frameRate, "frame_rate"));
    options.type = type.is_none() ? std::string() : TextFrom(type, "type");
    const std::string input = TextFrom(text, "text");
    const py::gil_scoped_release unlocked;
    const std::vector<exchange::ExchangeMarker> markers =
        WithArgumentErrors([&] { return exchange::ImportMarkers(input, chosen, options); });
    std::vector<MarkerRecord> records;
    records.reserve(markers.size());
    for (const exchange::ExchangeMarker& marker : markers) {
        records.push_back(RecordOf(*exchange::ToMarker(marker), RecordRate(marker.rate)));
    }
    return records;
}

}  // namespace

void BindExchange(py::module_& module) {
    module.def("export", &Export, py::arg("markers"), py::arg("format"), py::kw_only(), py::arg("rate") = py::none(),
               py::arg("timecode_start") = "00:00:00:00", py::arg("title") = "Markers", py::arg("force") = false,
               "The markers as text in a format other tools read.\n\n"
               "format: \"youtube\", \"ffmetadata\", \"webvtt\", \"srt\", \"edl\", \"csv\", \"tsv\", \"audacity\", "
               "\"otio\" or \"json\".\nrate: (numerator, denominator) of frame-based formats; None: the first "
               "marker's frame_rate, else 25.\ntimecode_start: the edl's record timecode of time zero.\ntitle: the "
               "edl's and the otio timeline's name.\nforce: write youtube chapters that break the platform's rules.\n"
               "Timeline formats list the markers in start order, otio and json in list order.\n\n"
               "Raises XMPError for a marker the format cannot hold (the message names it), ValueError for a bad "
               "format or option, TypeError for arguments of the wrong type.");
    module.def("import_markers", &Import, py::arg("text"), py::arg("format"), py::kw_only(),
               py::arg("frame_rate") = py::none(), py::arg("type") = py::none(),
               "The markers a text in one of export's formats holds, in its order, as a list of Marker.\n\n"
               "frame_rate: (numerator, denominator) of timecode and frames in the text; None: 25, or 29.97 for "
               "drop-frame timecode in an edl, csv or tsv.\ntype: the type of markers of a format without types; "
               "None: the format's usual one.\n\n"
               "Raises XMPError for malformed text (the message gives line and column), ValueError for a bad "
               "format or option, TypeError for arguments of the wrong type.");
}

}  // namespace keltemporalxmp::python
