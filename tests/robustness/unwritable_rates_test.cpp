// A rate the reader would refuse is refused when writing, naming the rate,
// and the document stays as it was: whatever is written can be read back.

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include <keltemporalxmp/docops.hpp>
#include <keltemporalxmp/markers.hpp>

using namespace keltemporalxmp;

namespace {

std::string Packet(const SXMPMeta& meta) {
    std::string packet;
    meta.SerializeToBuffer(&packet, kXMP_OmitPacketWrapper);
    return packet;
}

void ExpectRefused(const std::function<void()>& write, const std::string& expected) {
    try {
        write();
        ADD_FAILURE() << "written";
    } catch (const XMP_Error& error) {
        EXPECT_EQ(error.GetID(), kXMPErr_BadValue);
        EXPECT_NE(std::string(error.GetErrMsg()).find(expected), std::string::npos) << error.GetErrMsg();
    }
}

struct Rate {
    std::int64_t numerator;
    std::int64_t denominator;
};

// Markers at zero need no rate to convert, so only the rate check stops them.
TEST(UnwritableRates, TrackRatesWithAMemberBelowOneAreRefused) {
    for (const Rate rate : {Rate{0, 0}, Rate{0, 1}, Rate{1, 0}, Rate{-25, 1}, Rate{25, -1}}) {
        const std::string text = std::to_string(rate.numerator) + "/" + std::to_string(rate.denominator);
        SCOPED_TRACE(text);
        auto marker = std::make_shared<Marker>();
        marker->SetType(u"Chapter");
        SXMPMeta meta;
        const std::string before = Packet(meta);
        ExpectRefused([&] { WriteAllMarkers({marker}, meta, rate.numerator, rate.denominator); },
                      "xmpDM:Tracks[1]/xmpDM:frameRate: frame rate " + text);
        EXPECT_EQ(Packet(meta), before);
    }
}

TEST(UnwritableRates, AMarkerRateWithANegativeMemberIsRefused) {
    XMPTrack track("Cues", 25, 1);
    track.AddMarker(
        XMPTemporalMetadataInfo("negative", "", 0, -30, 1, 0, 0, 0, "Cue", "", "", "", {}, "", "", "", nullptr));
    SXMPMeta meta;
    XMPDocOpsTemporal doc;
    doc.OpenXMP(&meta, "");
    doc.AddTrack("Cues", track);
    ExpectRefused([&] { doc.PrepareForSave(""); }, "xmpDM:Tracks[1]/xmpDM:markers[1]: frame rate -30/1");
    EXPECT_FALSE(meta.DoesPropertyExist(kXMP_NS_DM, "Tracks"));
}

}  // namespace
