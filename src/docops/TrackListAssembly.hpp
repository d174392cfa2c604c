#pragma once
// Turns the nodes of a track list, met in document order, into tracks. Both
// readers feed it: the walk over the toolkit's tree and the streaming read of
// packet text, so that they give the same records.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <keltemporalxmp/records.hpp>
#include <xmptoolkit/XMP.hpp>

#include "docops/TrackListReader.hpp"

namespace keltemporalxmp {
namespace [[gnu::visibility("hidden")]] docops {

// Where a node sits below the tracks array, by the number of steps of its path.
enum Depth : int {
    kTracksArray = 0,    // the array itself
    kTrackItem = 1,      // [i]
    kTrackField = 2,     // [i]/field
    kMarkerItem = 3,     // [i]/xmpDM:markers[j]
    kMarkerField = 4,    // .../markers[j]/field
    kCuePointItem = 5,   // .../xmpDM:cuePointParams[k]
    kCuePointField = 6,  // .../cuePointParams[k]/field
};

struct TrackNode {
    int depth = 0;
    std::string_view name;  // the last step of its path ("xmpDM:markers"); empty for an item
    XMP_OptionBits options = 0;
};

class TrackListAssembler {
public:
    TrackListAssembler(std::string tracksPath, std::vector<XMPTrack>& tracks, KeywordCuePoints keywords);

    // The tracks array's own node; false when it is not an array (nothing to read).
    static bool IsTrackArray(XMP_OptionBits options);

    // The next node below the array; a simple node's value may be taken from
    // `value`. False when nothing below the node is of interest.
    bool Take(const TrackNode& node, std::string& value);
    // After the last node.
    void Finish();

private:
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

        std::string* Field(std::string_view name);
        void Clear();
    };

    bool TakeNode(const TrackNode& node, std::string& value);
    bool TakeTrackField(const TrackNode& node, std::string& value);
    bool TakeMarkerField(const TrackNode& node, std::string& value);
    bool TakeCuePointField(const TrackNode& node, std::string& value);
    void StartTrack();
    void FinishMarker();
    void FinishTrack();
    void AddMarker(const MarkerText& text);
    XMPTemporalMetadataInfo MakeMarker(const MarkerText& text, const XMPTrack& track);
    std::string MarkerPath(std::size_t markerIndex) const;

    std::string m_tracksPath;
    std::vector<XMPTrack>& m_tracks;
    KeywordCuePoints m_keywordCuePoints;

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

}  // namespace docops
}  // namespace keltemporalxmp
