#include "docops/TrackListAssembly.hpp"

#include <keltemporalxmp/docops.hpp>

#include <utility>

#include "docops/TrackLayout.hpp"
#include "timestrings/TimeText.hpp"

namespace keltemporalxmp::docops {
namespace {

constexpr std::string_view kOperation = "Reading the track list";

bool IsStruct(XMP_OptionBits options) {
    return (options & kXMP_PropValueIsStruct) != 0;
}
bool IsArray(XMP_OptionBits options) {
    return (options & kXMP_PropValueIsArray) != 0;
}
bool IsSimple(XMP_OptionBits options) {
    return (options & kXMP_PropCompositeMask) == 0;
}

// Only simple values are kept; nothing below a node is ever needed here.
bool TakeText(std::string* text, XMP_OptionBits options, std::string& value) {
    if (text != nullptr && IsSimple(options)) {
        std::swap(*text, value);
    }
    return false;
}

// Ticks of a time text, with the rate pair it was read at: the track's unless
// the text carries its own. An absent time is 0.
std::int64_t ReadTime(const std::string& text, std::int64_t& numerator, std::int64_t& denominator) {
    if (text.empty()) {
        return 0;
    }
    return timestrings::ReadTimeText(text, &numerator, &denominator, kTicksPerSecond,
                                     timestrings::Reduction::kAnyNumeratorButOne);
}

}  // namespace

std::string* TrackListAssembler::MarkerText::Field(std::string_view name) {
    if (name == field::kStartTime) return &m_startTime;
    if (name == field::kDuration) return &m_duration;
    if (name == field::kComment) return &m_comment;
    if (name == field::kName) return &m_name;
    if (name == field::kLocation) return &m_location;
    if (name == field::kTarget) return &m_target;
    if (name == field::kType) return &m_type;
    if (name == field::kCuePointType) return &m_cuePointType;
    if (name == field::kSpeaker) return &m_speaker;
    if (name == field::kProbability) return &m_probability;
    return nullptr;
}

// Empty again, keeping the strings' buffers for the next marker.
void TrackListAssembler::MarkerText::Clear() {
    for (std::string* text : {&m_startTime, &m_duration, &m_comment, &m_name, &m_location, &m_target, &m_type,
                              &m_cuePointType, &m_speaker, &m_probability}) {
        text->clear();
    }
    m_cuePoints.clear();
}

TrackListAssembler::TrackListAssembler(std::string tracksPath, std::vector<XMPTrack>& tracks, KeywordCuePoints keywords)
    : m_tracksPath(std::move(tracksPath)), m_tracks(tracks), m_keywordCuePoints(keywords) {}

bool TrackListAssembler::IsTrackArray(XMP_OptionBits options) {
    return IsArray(options);
}

// A marker becomes a record as soon as it is complete when its track's rate
// came before it (the usual order); markers before the rate wait for the end
// of their track.
bool TrackListAssembler::Take(const TrackNode& node, std::string& value) {
    if (node.depth <= kMarkerItem) {
        FinishMarker();
    }
    return TakeNode(node, value);
}

void TrackListAssembler::Finish() {
    FinishMarker();
    FinishTrack();
}

bool TrackListAssembler::TakeNode(const TrackNode& node, std::string& value) {
    switch (node.depth) {
        case kTrackItem:
            FinishTrack();
            m_inTrack = IsStruct(node.options);
            ++m_trackIndex;
            return m_inTrack;
        case kTrackField:
            return TakeTrackField(node, value);
        case kMarkerItem:
            m_inMarker = IsStruct(node.options);
            m_marker.m_index = ++m_markerItemCount;
            return m_inMarker;
        case kMarkerField:
            return TakeMarkerField(node, value);
        case kCuePointItem:
            m_inCuePoint = IsStruct(node.options);
            if (m_inCuePoint) {
                m_marker.m_cuePoints.emplace_back();
            }
            return m_inCuePoint;
        case kCuePointField:
            return TakeCuePointField(node, value);
        default:
            return false;
    }
}

bool TrackListAssembler::TakeTrackField(const TrackNode& node, std::string& value) {
    if (node.name == field::kMarkers) {
        return IsArray(node.options);
    }
    if (node.name == field::kFrameRate) {
        TakeText(&m_frameRate, node.options, value);
        StartTrack();
        return false;
    }
    std::string* text = node.name == field::kTrackName   ? &m_trackName
                        : node.name == field::kTrackType ? &m_trackType
                                                         : nullptr;
    return TakeText(text, node.options, value);
}

bool TrackListAssembler::TakeMarkerField(const TrackNode& node, std::string& value) {
    if (!m_inMarker) {
        return false;
    }
    if (node.name == field::kCuePointParams) {
        m_inCuePoint = false;
        return IsArray(node.options);
    }
    return TakeText(m_marker.Field(node.name), node.options, value);
}

bool TrackListAssembler::TakeCuePointField(const TrackNode& node, std::string& value) {
    if (!m_inCuePoint) {
        return false;
    }
    CuePointText& cuePoint = m_marker.m_cuePoints.back();
    std::string* text = node.name == field::kKey     ? &cuePoint.m_key
                        : node.name == field::kValue ? &cuePoint.m_value
                                                     : nullptr;
    return TakeText(text, node.options, value);
}

// The track's rate is known from here on: 1/1 unless a rate was given.
void TrackListAssembler::StartTrack() {
    if (m_track.has_value()) {
        return;
    }
    std::int64_t numerator = 1;
    std::int64_t denominator = 1;
    if (!m_frameRate.empty()) {
        XMPDocOpsTemporal::ParseExternalFrameRateString(m_frameRate.c_str(), &numerator, &denominator);
    }
    m_track.emplace(numerator, denominator);
    for (const MarkerText& waiting : m_waitingMarkers) {
        AddMarker(waiting);
    }
    m_waitingMarkers.clear();
}

void TrackListAssembler::FinishMarker() {
    if (!m_inMarker) {
        return;
    }
    m_inMarker = false;
    if (m_track.has_value()) {
        AddMarker(m_marker);
    } else {
        m_waitingMarkers.push_back(m_marker);
    }
    m_marker.Clear();
}

void TrackListAssembler::FinishTrack() {
    if (m_inTrack) {
        StartTrack();
        m_track->SetTrackName(m_trackName.c_str());
        m_track->SetTrackType(m_trackType.c_str());
        m_tracks.push_back(std::move(*m_track));
    }
    m_inTrack = false;
    m_track.reset();
    m_trackName.clear();
    m_trackType.clear();
    m_frameRate.clear();
    m_markerItemCount = 0;
}

void TrackListAssembler::AddMarker(const MarkerText& text) {
    XMPTrack& track = *m_track;
    // Markers mostly come in time order: the end is then the right place.
    track.AddMarker(track.GetMarkers().end(), MakeMarker(text, track));
}

XMPTemporalMetadataInfo TrackListAssembler::MakeMarker(const MarkerText& text, const XMPTrack& track) {
    std::int64_t startNumerator = track.GetFrameRateNumerator();
    std::int64_t startDenominator = track.GetFrameRateDenominator();
    std::int64_t durationNumerator = startNumerator;
    std::int64_t durationDenominator = startDenominator;
    std::int64_t startTime = 0;
    std::int64_t duration = 0;
    try {
        startTime = ReadTime(text.m_startTime, startNumerator, startDenominator);
        duration = ReadTime(text.m_duration, durationNumerator, durationDenominator);
    } catch (const XMP_Error& error) {
        RethrowAt(error, kOperation, MarkerPath(text.m_index));
    }
    m_params.clear();
    m_keywords.clear();
    const std::string* markerID = nullptr;
    for (const CuePointText& cuePoint : text.m_cuePoints) {
        if (cuePoint.m_key == kMarkerIdKey) {
            markerID = markerID != nullptr ? markerID : &cuePoint.m_value;
        } else if (m_keywordCuePoints == KeywordCuePoints::kToKeywords &&
                   cuePoint.m_key.starts_with(kKeywordExtKELPrefixV1)) {
            m_keywords.push_back(CuePointToKeyword(XMPCuePointParam(cuePoint.m_key.c_str(), cuePoint.m_value.c_str())));
        } else {
            m_params.emplace_back(cuePoint.m_key.c_str(), cuePoint.m_value.c_str());
        }
    }
    XMPTemporalMetadataInfo marker(
        text.m_name.c_str(), text.m_comment.c_str(), startTime, startNumerator, startDenominator, duration,
        durationNumerator, durationDenominator, text.m_type.c_str(), text.m_location.c_str(), text.m_target.c_str(),
        text.m_cuePointType.c_str(), m_params, text.m_speaker.c_str(), text.m_probability.c_str(),
        markerID != nullptr ? markerID->c_str() : nullptr, nullptr);
    for (const XMPKeywordData& keyword : m_keywords) {
        marker.AddKeyword(keyword);
    }
    return marker;
}

std::string TrackListAssembler::MarkerPath(std::size_t markerIndex) const {
    std::string path = m_tracksPath;
    AppendItemIndex(path, m_trackIndex);
    path.append(1, '/').append(field::kMarkers);
    AppendItemIndex(path, markerIndex);
    return path;
}

}  // namespace keltemporalxmp::docops
