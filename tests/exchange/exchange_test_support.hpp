#pragma once
// Markers the exchange tests export and import.

#include <cstdint>
#include <string>
#include <vector>

#include <keltemporalxmp/exchange.hpp>

namespace keltemporalxmp::exchange::testing {

inline constexpr std::int64_t kFrame25 = kTicksPerSecond / 25;
inline constexpr Rate kRate25{25, 1};

inline std::int64_t Seconds(double seconds) {
    return static_cast<std::int64_t>(seconds * static_cast<double>(kTicksPerSecond));
}

inline ExchangeMarker MakeMarker(std::string name, std::int64_t start, std::int64_t duration, std::string comment = "",
                                 std::string type = "Chapter") {
    ExchangeMarker marker;
    marker.type = std::move(type);
    marker.name = std::move(name);
    marker.comment = std::move(comment);
    marker.start = start;
    marker.duration = duration;
    marker.rate = kRate25;
    return marker;
}

// Three chapters at 25 frames per second: text that needs escaping in most
// formats, a comment, a marker without a duration.
inline std::vector<ExchangeMarker> SampleMarkers() {
    return {MakeMarker("Intro", 0, 10 * kTicksPerSecond),
            MakeMarker("Q&A <live>, \"quoted\"", 12 * kTicksPerSecond, 20 * kTicksPerSecond, "with a comment"),
            MakeMarker("Caf\xC3\xA9 = ; # \\ end", 3723 * kTicksPerSecond + 5 * kFrame25, 0)};
}

}  // namespace keltemporalxmp::exchange::testing
