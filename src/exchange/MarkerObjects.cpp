// Exchange records from and to the Marker objects the tracks are read into
// and written from.

#include <kelcore/UTF.hpp>
#include <keltemporalxmp/docops.hpp>
#include <keltemporalxmp/exchange.hpp>

namespace keltemporalxmp::exchange {

std::vector<ExchangeMarker> ReadExchangeMarkers(TXMPMeta<std::string>& meta) {
    MarkerList markers;
    ReadAllMarkers(meta, markers);
    std::vector<ExchangeMarker> records;
    records.reserve(markers.size());
    XMPDocOpsTemporal document;
    document.OpenXMP(&meta, "");
    std::size_t next = 0;
    for (auto track = document.TrackListIteratorBegin(); track != document.TrackListIteratorEnd(); ++track) {
        Rate rate{track->GetFrameRateNumerator(), track->GetFrameRateDenominator()};
        if (rate == Rate{kTicksPerSecond, 1}) {
            rate = {};
        }
        for (std::size_t i = 0; i < track->GetMarkers().size() && next < markers.size(); ++i) {
            records.push_back(ToExchangeMarker(*markers[next++], rate));
        }
    }
    return records;
}

std::vector<ExchangeMarker> ExchangeMarkersOfTracks(std::span<const XMPTrack> tracks) {
    std::vector<ExchangeMarker> records;
    for (const XMPTrack& track : tracks) {
        Rate rate{track.GetFrameRateNumerator(), track.GetFrameRateDenominator()};
        if (rate == Rate{kTicksPerSecond, 1}) {
            rate = {};
        }
        MarkerList markers;
        AppendMarkersOfTracks({&track, 1}, markers);
        for (const auto& marker : markers) {
            records.push_back(ToExchangeMarker(*marker, rate));
        }
    }
    return records;
}

ExchangeMarker ToExchangeMarker(const Marker& marker, Rate rate) {
    using kelcore::UTF16to8;
    ExchangeMarker record;
    record.id = marker.GetMarkerID();
    record.type = UTF16to8(marker.GetType());
    record.name = UTF16to8(marker.GetName());
    record.comment = UTF16to8(marker.GetComment());
    record.start = marker.GetStartTime().GetTicks();
    record.duration = marker.GetDuration().GetTicks();
    record.rate = rate.IsKnown() ? rate : Rate{};
    for (const CustomMarkerParam& cuePoint : marker.GetCuePointList()) {
        record.cuePoints.push_back({UTF16to8(cuePoint.key), UTF16to8(cuePoint.value)});
    }
    return record;
}

std::shared_ptr<Marker> ToMarker(const ExchangeMarker& record) {
    using kelcore::UTF8to16;
    auto marker = std::make_shared<Marker>(record.id);
    marker->SetType(UTF8to16(record.type));
    marker->SetName(UTF8to16(record.name));
    marker->SetComment(UTF8to16(record.comment));
    marker->SetStartTime(kelmediatypes::TickTime(record.start));
    marker->SetDuration(kelmediatypes::TickTime(record.duration));
    CustomMarkerParamList cuePoints;
    for (const CuePoint& cuePoint : record.cuePoints) {
        cuePoints.push_back({UTF8to16(cuePoint.key), UTF8to16(cuePoint.value)});
    }
    marker->SetCuePointList(cuePoints);
    return marker;
}

}  // namespace keltemporalxmp::exchange
