#pragma once
// kx.Marker: a marker as plain UTF-8 values, which Python code can read and
// change freely, and its conversions from and to the library's Marker.

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <keltemporalxmp/markers.hpp>

#include "Arguments.hpp"

namespace keltemporalxmp::python {

struct MarkerRecord {
    std::string id;
    std::string type;
    std::string name;
    std::string comment;
    std::string location;
    std::string target;
    std::string speaker;
    std::string probability;
    std::string cuePointType;
    std::int64_t start = 0;
    std::int64_t duration = 0;
    std::optional<Rate> frameRate;  // of the marker's track
    std::vector<std::pair<std::string, std::string>> cuePoints;

    friend bool operator==(const MarkerRecord&, const MarkerRecord&) = default;
};

MarkerRecord RecordOf(const Marker& marker, std::optional<Rate> trackRate);
// `number` (from 1) names the marker in errors.
std::shared_ptr<Marker> MarkerOf(const MarkerRecord& record, std::size_t number);
// Any iterable of kx.Marker (not str or bytes), copied; TypeError otherwise.
std::vector<MarkerRecord> RecordsFrom(py::handle markers);

}  // namespace keltemporalxmp::python
