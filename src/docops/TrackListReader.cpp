#include "docops/TrackListReader.hpp"

#include <keltemporalxmp/docops.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "docops/TrackLayout.hpp"
#include "timestrings/TimeText.hpp"

namespace keltemporalxmp::docops {
namespace {

constexpr std::string_view kOperation = "Reading the track list";

// Where a node sits below the tracks array, by the number of steps of its path.
enum Depth : int {
    kTrackItem = 1,      // [i]
    kTrackField = 2,     // [i]/field
    kMarkerItem = 3,     // [i]/xmpDM:markers[j]
    kMarkerField = 4,    // .../markers[j]/field
    kCuePointItem = 5,   // .../xmpDM:cuePointParams[k]
    kCuePointField = 6,  // .../cuePointParams[k]/field
};

struct Step {
    int depth = 0;
    std::string_view name;  // the last step's name; empty for an item
};

Step LastStep(std::string_view relativePath) {
    Step step;
    std::size_t nameStart = std::string_view::npos;
    for (std::size_t i = 0; i < relativePath.size(); ++i) {
        if (relativePath[i] == '/') {
            ++step.depth;
            nameStart = i + 1;
        } else if (relativePath[i] == '[') {
            ++step.depth;
            nameStart = std::string_view::npos;
        }
    }
    if (nameStart != std::string_view::npos) {
        step.name = relativePath.substr(nameStart);
    }
    return step;
}

bool IsStruct(XMP_OptionBits options) {
    return (options & kXMP_PropValueIsStruct) != 0;
}
bool IsArray(XMP_OptionBits options) {
    return (options & kXMP_PropValueIsArray) != 0;
}
bool IsSimple(XMP_OptionBits options) {
    return (options & kXMP_PropCompositeMask) == 0;
}

struct CuePointText {
    std::string m_key;
    std::string m_value;
};

// A marker's texts as found.
struct MarkerText {
    std::size_t m_index = 0;  // in its markers array, for messages
    std::string m_startTime;
    std::string m_duration;
    std::string m_comment;
    std::string m_name;
    std::string m_location;
    std::string m_target;
    std::string m_type;
    std::string m_cuePointType;
    std::string m_speaker;
    std::string m_probability;
    std::vector<CuePointText> m_cuePoints;

    std::string* Field(std::string_view name) {
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
    void Clear() {
        for (std::string* text : {&m_startTime, &m_duration, &m_comment, &m_name, &m_location, &m_target, &m_type,
                                  &m_cuePointType, &m_speaker, &m_probability}) {
            text->clear();
        }
        m_cuePoints.clear();
    }
};

// Ticks of a time text, with the rate pair it was read at: the track's unless
// the text carries its own. An absent time is 0.
std::int64_t ReadTime(const std::string& text, std::int64_t& numerator, std::int64_t& denominator) {
    if (text.empty()) {
        return 0;
    }
    return timestrings::ReadTimeText(text, &numerator, &denominator, kTicksPerSecond,
                                     timestrings::Reduction::kAnyNumeratorButOne);
}

// Walks the array once, node by node, in document order. A marker becomes a
// record as soon as it is complete when its track's rate came before it (the
// usual order); markers before the rate wait for the end of their track.
class Reader {
public:
    Reader(const char* tracksPath, std::vector<XMPTrack>& tracks, KeywordCuePoints keywords)
        : m_tracksPath(tracksPath), m_tracks(tracks), m_keywordCuePoints(keywords) {}

    void Read(SXMPIterator& walk) {
        if (!walk.Next(nullptr, &m_path, &m_value, &m_options) || !IsArray(m_options)) {
            return;
        }
        while (walk.Next(nullptr, &m_path, &m_value, &m_options)) {
            const std::string_view path(m_path);
            if (!path.starts_with(m_tracksPath)) {
                walk.Skip(kXMP_IterSkipSubtree);
                continue;
            }
            const Step step = LastStep(path.substr(m_tracksPath.size()));
            if (step.depth <= kMarkerItem) {
                FinishMarker();
            }
            // Skipping is a toolkit call of its own: only worth it below a composite.
            if (!Take(step) && !IsSimple(m_options)) {
                walk.Skip(kXMP_IterSkipSubtree);
            }
        }
        FinishMarker();
        FinishTrack();
    }

private:
    // Keeps what the node holds; false when its subtree is of no interest.
    bool Take(const Step& step) {
        switch (step.depth) {
            case kTrackItem:
                FinishTrack();
                m_inTrack = IsStruct(m_options);
                ++m_trackIndex;
                return m_inTrack;
            case kTrackField:
                return TakeTrackField(step.name);
            case kMarkerItem:
                m_inMarker = IsStruct(m_options);
                m_marker.m_index = ++m_markerItemCount;
                return m_inMarker;
            case kMarkerField:
                return TakeMarkerField(step.name);
            case kCuePointItem:
                m_inCuePoint = IsStruct(m_options);
                if (m_inCuePoint) {
                    m_marker.m_cuePoints.emplace_back();
                }
                return m_inCuePoint;
            case kCuePointField:
                return TakeCuePointField(step.name);
            default:
                return false;
        }
    }

    bool TakeTrackField(std::string_view name) {
        if (name == field::kMarkers) {
            return IsArray(m_options);
        }
        if (name == field::kFrameRate) {
            TakeText(&m_frameRate);
            StartTrack();
            return false;
        }
        return TakeText(name == field::kTrackName ? &m_trackName : name == field::kTrackType ? &m_trackType : nullptr);
    }

    bool TakeMarkerField(std::string_view name) {
        if (!m_inMarker) {
            return false;
        }
        if (name == field::kCuePointParams) {
            m_inCuePoint = false;
            return IsArray(m_options);
        }
        return TakeText(m_marker.Field(name));
    }

    bool TakeCuePointField(std::string_view name) {
        if (!m_inCuePoint) {
            return false;
        }
        CuePointText& cuePoint = m_marker.m_cuePoints.back();
        return TakeText(name == field::kKey ? &cuePoint.m_key : name == field::kValue ? &cuePoint.m_value : nullptr);
    }

    // Only simple values are kept; nothing below a node is ever needed here.
    bool TakeText(std::string* text) {
        if (text != nullptr && IsSimple(m_options)) {
            std::swap(*text, m_value);
        }
        return false;
    }

    // The track's rate is known from here on: 1/1 unless a rate was given.
    void StartTrack() {
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

    void FinishMarker() {
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

    void FinishTrack() {
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

    void AddMarker(const MarkerText& text) {
        XMPTrack& track = *m_track;
        // Markers mostly come in time order: the end is then the right place.
        track.AddMarker(track.GetMarkers().end(), MakeMarker(text, track));
    }

    XMPTemporalMetadataInfo MakeMarker(const MarkerText& text, const XMPTrack& track) {
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
                // The first non-empty one: an empty ID is no ID.
                if (markerID == nullptr && !cuePoint.m_value.empty()) markerID = &cuePoint.m_value;
            } else if (m_keywordCuePoints == KeywordCuePoints::kToKeywords &&
                       cuePoint.m_key.starts_with(kKeywordExtKELPrefixV1)) {
                m_keywords.push_back(
                    CuePointToKeyword(XMPCuePointParam(cuePoint.m_key.c_str(), cuePoint.m_value.c_str())));
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

    std::string MarkerPath(std::size_t markerIndex) const {
        std::string path = m_tracksPath;
        AppendItemIndex(path, m_trackIndex);
        path.append(1, '/').append(field::kMarkers);
        AppendItemIndex(path, markerIndex);
        return path;
    }

    std::string m_tracksPath;
    std::vector<XMPTrack>& m_tracks;
    KeywordCuePoints m_keywordCuePoints;

    // The node at hand.
    std::string m_path;
    std::string m_value;
    XMP_OptionBits m_options = 0;

    // The track at hand; m_track exists once its rate is known.
    bool m_inTrack = false;
    std::size_t m_trackIndex = 0;
    std::string m_trackName;
    std::string m_trackType;
    std::string m_frameRate;
    std::optional<XMPTrack> m_track;
    std::vector<MarkerText> m_waitingMarkers;

    // The marker at hand.
    bool m_inMarker = false;
    bool m_inCuePoint = false;
    std::size_t m_markerItemCount = 0;
    MarkerText m_marker;

    // Reused for every marker.
    std::vector<XMPCuePointParam> m_params;
    std::vector<XMPKeywordData> m_keywords;
};

}  // namespace

void ReadTrackList(const SXMPMeta& meta, const char* schemaNS, const char* tracksPath, std::vector<XMPTrack>& tracks,
                   KeywordCuePoints keywords) {
    SXMPIterator walk(meta, schemaNS, tracksPath, kXMP_IterOmitQualifiers);
    Reader(tracksPath, tracks, keywords).Read(walk);
}

}  // namespace keltemporalxmp::docops
