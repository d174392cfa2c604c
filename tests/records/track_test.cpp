#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <keltemporalxmp/records.hpp>

namespace {

using keltemporalxmp::XMPTemporalMetadataInfo;
using keltemporalxmp::XMPTrack;

XMPTemporalMetadataInfo Marker(const char* name, std::int64_t start) {
    return XMPTemporalMetadataInfo(name, "", start, 1, "", "", "", "", {}, "", "", nullptr, nullptr);
}

std::vector<std::string> NamesInOrder(const XMPTrack& track) {
    std::vector<std::string> names;
    for (const auto& [start, marker] : track.GetMarkers()) {
        names.push_back(*marker.GetMarkerFieldPtr(XMPTemporalMetadataInfo::kInfoField_Name));
    }
    return names;
}

TEST(Track, MarkersSortByStartAndKeepTheirAddingOrderOnTies) {
    XMPTrack track;
    track.AddMarker(Marker("unspecified", std::numeric_limits<std::int64_t>::max()));
    track.AddMarker(Marker("first 50", 50));
    track.AddMarker(Marker("10", 10));
    track.AddMarker(Marker("second 50", 50));
    EXPECT_EQ(NamesInOrder(track), (std::vector<std::string>{"10", "first 50", "second 50", "unspecified"}));

    // A hint decides the place among equal starts.
    track.AddMarker(track.GetMarkers().find(50), Marker("hinted 50", 50));
    EXPECT_EQ(NamesInOrder(track),
              (std::vector<std::string>{"10", "hinted 50", "first 50", "second 50", "unspecified"}));
    track.RemoveMarker(track.MarkerListIteratorBegin());
    EXPECT_EQ(NamesInOrder(track).front(), "hinted 50");
}

}  // namespace
