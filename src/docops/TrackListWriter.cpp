#include "docops/TrackListWriter.hpp"

#include <string>
#include <string_view>
#include <utility>

#include "docops/TrackLayout.hpp"
#include "records/KeywordCuePoints.hpp"
#include "timestrings/TimeText.hpp"

namespace keltemporalxmp::docops {
namespace {

constexpr std::string_view kOperation = "Writing the track list";

// A time is written at the marker's own rate only when that rate is set and
// is not the track's.
bool HasOwnRate(std::int64_t numerator, std::int64_t denominator, const XMPTrack& track) {
    return numerator != 0 && denominator != 0 &&
           (numerator != track.GetFrameRateNumerator() || denominator != track.GetFrameRateDenominator());
}

// The text of a marker's time: at its own rate, else at the track's.
char* WriteMarkerTime(char* text, std::int64_t ticks, std::int64_t numerator, std::int64_t denominator,
                      const XMPTrack& track) {
    const bool ownRate = HasOwnRate(numerator, denominator, track);
    if (!ownRate) {
        numerator = track.GetFrameRateNumerator();
        denominator = track.GetFrameRateDenominator();
    }
    return timestrings::WriteTimeText(text, ticks, numerator, denominator, kTicksPerSecond, ownRate);
}

std::string TrackPath(std::size_t trackIndex) {
    std::string path(kTracksPath);
    AppendItemIndex(path, trackIndex);
    return path;
}

std::string MarkerPath(std::size_t trackIndex, std::size_t markerIndex) {
    std::string path = TrackPath(trackIndex);
    path.append(1, '/').append(field::kMarkers);
    AppendItemIndex(path, markerIndex);
    return path;
}

// The reader refuses a rate with a member below one, so it is never written.
bool IsWritableRate(std::int64_t numerator, std::int64_t denominator) {
    return numerator > 0 && denominator > 0;
}

[[noreturn]] void ThrowUnwritableRate(std::int64_t numerator, std::int64_t denominator, const std::string& path) {
    const std::string detail = "frame rate " + std::to_string(numerator) + "/" + std::to_string(denominator) +
                               ": numerator and denominator must be positive";
    RethrowAt(XMP_Error(kXMPErr_BadValue, detail.c_str()), kOperation, path);
}

void CheckMarker(const XMPTemporalMetadataInfo& marker, const XMPTrack& track, std::size_t trackIndex,
                 std::size_t markerIndex) {
    const std::pair<std::int64_t, std::int64_t> ownRates[] = {
        {marker.GetStartTimeFrameRateNumerator(), marker.GetStartTimeFrameRateDenominator()},
        {marker.GetDurationFrameRateNumerator(), marker.GetDurationFrameRateDenominator()}};
    for (const auto& [numerator, denominator] : ownRates) {
        if (HasOwnRate(numerator, denominator, track) && !IsWritableRate(numerator, denominator))
            ThrowUnwritableRate(numerator, denominator, MarkerPath(trackIndex, markerIndex));
    }
    char text[timestrings::kMaxTimeTextLength + 1];
    try {
        WriteMarkerTime(text, marker.GetStartTime(), marker.GetStartTimeFrameRateNumerator(),
                        marker.GetStartTimeFrameRateDenominator(), track);
        WriteMarkerTime(text, marker.GetDuration(), marker.GetDurationFrameRateNumerator(),
                        marker.GetDurationFrameRateDenominator(), track);
    } catch (const XMP_Error& error) {
        RethrowAt(error, kOperation, MarkerPath(trackIndex, markerIndex));
    }
}

// Every rate is checked and every time converted once before anything is
// written, so that a rate that cannot be written or convert a time leaves the
// caller's track list as it was.
void CheckTracks(const std::vector<XMPTrack>& tracks) {
    std::size_t trackIndex = 0;
    for (const XMPTrack& track : tracks) {
        ++trackIndex;
        if (!IsWritableRate(track.GetFrameRateNumerator(), track.GetFrameRateDenominator()))
            ThrowUnwritableRate(track.GetFrameRateNumerator(), track.GetFrameRateDenominator(),
                                TrackPath(trackIndex) + "/" + std::string(field::kFrameRate));
        std::size_t markerIndex = 0;
        for (const auto& entry : track.GetMarkers()) {
            CheckMarker(entry.second, track, trackIndex, ++markerIndex);
        }
    }
}

// All paths are built in one buffer: a step is appended for a field or an
// item and cut off again, so every marker's path is composed once.
class Writer {
public:
    explicit Writer(SXMPMeta& meta) : m_meta(meta) {}

    void WriteTrack(const XMPTrack& track, std::size_t index) {
        m_path.assign(kTracksPath);
        m_meta.AppendArrayItem(kXMP_NS_DM, m_path.c_str(), kTracksForm, nullptr, kXMP_PropValueIsStruct);
        AppendItemIndex(m_path, index);
        const std::size_t trackLength = m_path.size();

        track.GetTrackName(&m_text);
        SetFieldUnlessEmpty(trackLength, field::kTrackName, m_text);
        track.GetTrackType(&m_trackType);
        SetFieldUnlessEmpty(trackLength, field::kTrackType, m_trackType);
        char rate[timestrings::kMaxRateTextLength + 1];
        *timestrings::WriteRateText(rate, track.GetFrameRateNumerator(), track.GetFrameRateDenominator()) = '\0';
        SetField(trackLength, field::kFrameRate, rate);

        m_path.resize(trackLength);
        m_path.append(1, '/').append(field::kMarkers);
        const std::size_t markersLength = m_path.size();
        std::size_t markerIndex = 0;
        for (const auto& entry : track.GetMarkers()) {
            WriteMarker(entry.second, track, markersLength, ++markerIndex);
        }
    }

private:
    void WriteMarker(const XMPTemporalMetadataInfo& marker, const XMPTrack& track, std::size_t markersLength,
                     std::size_t index) {
        m_path.resize(markersLength);
        m_meta.AppendArrayItem(kXMP_NS_DM, m_path.c_str(), kMarkersForm, nullptr, kXMP_PropValueIsStruct);
        AppendItemIndex(m_path, index);
        const std::size_t markerLength = m_path.size();
        SetTime(markerLength, field::kStartTime, marker.GetStartTime(), marker.GetStartTimeFrameRateNumerator(),
                marker.GetStartTimeFrameRateDenominator(), track);
        if (marker.GetDuration() != 0) {
            SetTime(markerLength, field::kDuration, marker.GetDuration(), marker.GetDurationFrameRateNumerator(),
                    marker.GetDurationFrameRateDenominator(), track);
        }
        using Info = XMPTemporalMetadataInfo;
        SetFieldUnlessEmpty(markerLength, field::kComment, *marker.GetMarkerFieldPtr(Info::kInfoField_Comment));
        SetFieldUnlessEmpty(markerLength, field::kName, *marker.GetMarkerFieldPtr(Info::kInfoField_Name));
        SetFieldUnlessEmpty(markerLength, field::kLocation, *marker.GetMarkerFieldPtr(Info::kInfoField_Location));
        SetFieldUnlessEmpty(markerLength, field::kTarget, *marker.GetMarkerFieldPtr(Info::kInfoField_Target));
        const std::string& type = *marker.GetMarkerFieldPtr(Info::kInfoField_MarkerType);
        if (type != m_trackType) {
            SetFieldUnlessEmpty(markerLength, field::kType, type);
        }
        SetFieldUnlessEmpty(markerLength, field::kCuePointType,
                            *marker.GetMarkerFieldPtr(Info::kInfoField_CuePointType));
        SetFieldUnlessEmpty(markerLength, field::kSpeaker, *marker.GetMarkerFieldPtr(Info::kInfoField_Speaker));
        SetFieldUnlessEmpty(markerLength, field::kProbability, *marker.GetMarkerFieldPtr(Info::kInfoField_Probability));
        WriteCuePoints(marker, markerLength);
    }

    // The marker's own parameters, its keywords, then its ID.
    void WriteCuePoints(const XMPTemporalMetadataInfo& marker, std::size_t markerLength) {
        const std::string& markerID = *marker.GetMarkerFieldPtr(XMPTemporalMetadataInfo::kInfoField_MarkerID);
        m_path.resize(markerLength);
        m_path.append(1, '/').append(field::kCuePointParams);
        const std::size_t paramsLength = m_path.size();
        std::size_t index = 0;
        for (const XMPCuePointParam& param : marker.GetCuePointParamList()) {
            WriteCuePoint(paramsLength, ++index, param.GetKeyPtr()->c_str(), param.GetValuePtr()->c_str());
        }
        for (const XMPKeywordData& keyword : marker.GetKeywords()) {
            const XMPCuePointParam param = KeywordToCuePoint(keyword);
            WriteCuePoint(paramsLength, ++index, param.GetKeyPtr()->c_str(), param.GetValuePtr()->c_str());
        }
        if (!markerID.empty()) {
            WriteCuePoint(paramsLength, ++index, kMarkerIdKey.data(), markerID.c_str());
        }
    }

    void WriteCuePoint(std::size_t paramsLength, std::size_t index, const char* key, const char* value) {
        m_path.resize(paramsLength);
        m_meta.AppendArrayItem(kXMP_NS_DM, m_path.c_str(), kCuePointParamsForm, nullptr, kXMP_PropValueIsStruct);
        AppendItemIndex(m_path, index);
        const std::size_t itemLength = m_path.size();
        SetField(itemLength, field::kKey, key);
        SetField(itemLength, field::kValue, value);
    }

    void SetTime(std::size_t structLength, std::string_view name, std::int64_t ticks, std::int64_t numerator,
                 std::int64_t denominator, const XMPTrack& track) {
        char text[timestrings::kMaxTimeTextLength + 1];
        *WriteMarkerTime(text, ticks, numerator, denominator, track) = '\0';
        SetField(structLength, name, text);
    }

    void SetFieldUnlessEmpty(std::size_t structLength, std::string_view name, const std::string& value) {
        if (!value.empty()) {
            SetField(structLength, name, value.c_str());
        }
    }

    void SetField(std::size_t structLength, std::string_view name, const char* value) {
        m_path.resize(structLength);
        m_path.append(1, '/').append(name);
        m_meta.SetProperty(kXMP_NS_DM, m_path.c_str(), value);
    }

    SXMPMeta& m_meta;
    std::string m_path;
    std::string m_trackType;
    std::string m_text;
};

}  // namespace

void WriteTrackList(SXMPMeta& meta, const std::vector<XMPTrack>& tracks) {
    CheckTracks(tracks);
    meta.DeleteProperty(kXMP_NS_DM, kTracksPath);
    Writer writer(meta);
    std::size_t index = 0;
    for (const XMPTrack& track : tracks) {
        writer.WriteTrack(track, ++index);
    }
}

}  // namespace keltemporalxmp::docops
