#pragma once
// The value types that cross the library's interface: cue point parameters,
// keywords, markers (and the records reported back from nested ingredients)
// and tracks of markers. All are plain copyable values.

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <keltemporalxmp/export.hpp>

namespace keltemporalxmp {

namespace [[gnu::visibility("hidden")]] collector {
class Walk;
}

// Null text arguments of the constructors and setters below raise XMP_Error
// kXMPErr_BadParam (the marker ID alone may be null).

class KELTXMP_API XMPCuePointParam {
public:
    XMPCuePointParam(const char* key, const char* value);

    void GetKey(std::string* key) const;
    void GetValue(std::string* value) const;
    const std::string* GetKeyPtr() const { return &m_key; }
    const std::string* GetValuePtr() const { return &m_value; }

    void debug_Dump() const;

private:
    std::string m_key;
    std::string m_value;
};

// --- Keywords -------------------------------------------------------------------
// A keyword travels in XMP as a cue point parameter whose key is
// kKeywordExtKELPrefixV1 followed by the keyword's id, and whose value is JSON.

class KELTXMP_API XMPKELTagDescription {
public:
    std::string m_Payload;
    std::int32_t m_ARGBColor = 0;  // 0: no colour
    std::int32_t m_Index = 0;      // 0: no index

    void debug_Dump() const;
};

class KELTXMP_API XMPKeywordExtension {
public:
    XMPKELTagDescription m_TagDescription;

    void debug_Dump() const;
};

class KELTXMP_API XMPKeywordData {
public:
    // The id is the text of a fresh GUID.
    XMPKeywordData(const std::string& name, const XMPKeywordExtension& extension);
    // Name and extension copied; a fresh id when newIdentity, else the other's.
    XMPKeywordData(const XMPKeywordData& other, bool newIdentity);

    void debug_Dump() const;

    std::string m_Name;
    XMPKeywordExtension m_Extension;
    std::string id;

private:
    friend XMPKeywordData CuePointToKeyword(const XMPCuePointParam& cuePoint);
    KELTXMP_LOCAL XMPKeywordData(std::string name, XMPKeywordExtension extension, std::string keywordId);
};

extern KELTXMP_API const std::string kKeywordExtKELPrefixV1;  // "keywordExtKELv1_"

// Reads the keyword out of a keyword cue point: the key minus the prefix is the
// id, the value is JSON with optional "name", "payload", "color" and "index".
// Throws kelcore::parse_exception when the value is not JSON,
// kelcore::missing_key_exception when a member has the wrong type, and
// std::out_of_range when the key is shorter than the prefix.
KELTXMP_API XMPKeywordData CuePointToKeyword(const XMPCuePointParam& cuePoint);

// --- Markers ----------------------------------------------------------------------

class KELTXMP_API XMPTemporalMetadataInfo {
public:
    enum _infoFormEnum : std::int32_t {
        kInfoForm_Marker = 1,
        kInfoForm_MarkerReportback = 2,
        kInfoForm_ComponentMetadataReportback = 3,
    };

    // Selects a string field; the numbering is fixed and is not the field order.
    enum _infoFieldEnum : std::int32_t {
        kInfoField_Name = 1,
        kInfoField_Comment = 2,
        kInfoField_ReportedPartMapping = 3,
        kInfoField_ReportedContainingInstanceID = 4,
        kInfoField_ReportedTrackName = 5,
        kInfoField_ReportedTrackType = 6,
        kInfoField_MarkerType = 7,
        kInfoField_Location = 8,
        kInfoField_Target = 9,
        kInfoField_CuePointType = 10,
        kInfoField_Speaker = 11,
        kInfoField_Probability = 12,
        kInfoField_ComponentMetadataInstanceId = 13,
        kInfoField_MarkerID = 14,
    };

    // A marker; its frame rates are 0 (the track's rate applies). A negative
    // duration is stored forwards, with "(debug:reversed)" as part mapping.
    XMPTemporalMetadataInfo(const char* name, const char* comment, std::int64_t startTime, std::int64_t duration,
                            const char* markerType, const char* location, const char* target, const char* cuePointType,
                            const std::vector<XMPCuePointParam>& cuePointParamList, const char* speaker,
                            const char* probability, const char* markerID, std::shared_ptr<void> extension);
    // A marker with its own start and duration frame rates.
    XMPTemporalMetadataInfo(const char* name, const char* comment, std::int64_t startTime,
                            std::int64_t startTimeFrameRateNumerator, std::int64_t startTimeFrameRateDenominator,
                            std::int64_t duration, std::int64_t durationFrameRateNumerator,
                            std::int64_t durationFrameRateDenominator, const char* markerType, const char* location,
                            const char* target, const char* cuePointType,
                            const std::vector<XMPCuePointParam>& cuePointParamList, const char* speaker,
                            const char* probability, const char* markerID, std::shared_ptr<void> extension);
    // A component-metadata report-back (made by the collector); times are kept as given.
    XMPTemporalMetadataInfo(const char* name, const char* reportedContainingInstanceID, std::int64_t startTime,
                            std::int64_t startTimeFrameRateNumerator, std::int64_t startTimeFrameRateDenominator,
                            std::int64_t duration, std::int64_t durationFrameRateNumerator,
                            std::int64_t durationFrameRateDenominator, std::int64_t reportedClippedStartTime,
                            std::int64_t reportedClippedDuration, const char* reportedPartMapping,
                            const char* componentMetadataInstanceId, std::shared_ptr<void> extension);

    _infoFormEnum GetInfoForm() const { return m_infoForm; }
    std::int64_t GetStartTime() const { return m_startTime; }
    std::int64_t GetStartTimeFrameRateNumerator() const { return m_startTimeFrameRateNumerator; }
    std::int64_t GetStartTimeFrameRateDenominator() const { return m_startTimeFrameRateDenominator; }
    std::int64_t GetDuration() const { return m_duration; }
    std::int64_t GetDurationFrameRateNumerator() const { return m_durationFrameRateNumerator; }
    std::int64_t GetDurationFrameRateDenominator() const { return m_durationFrameRateDenominator; }
    std::int64_t GetReportedClippedStartTime() const { return m_reportedClippedStartTime; }
    std::int64_t GetReportedClippedDuration() const { return m_reportedClippedDuration; }

    const std::vector<XMPCuePointParam>& GetCuePointParamList() const { return m_cuePointParamList; }
    // The creator's extension object, shared and never looked into here.
    const std::shared_ptr<void>& GetExtension() const { return m_extension; }

    // A field outside 1..14 gives the empty string, or null.
    void GetMarkerField(std::string* value, _infoFieldEnum field) const;
    const std::string* GetMarkerFieldPtr(_infoFieldEnum field) const;

    const std::vector<XMPKeywordData>& GetKeywords() const { return m_KeywordList; }
    void AddKeyword(const XMPKeywordData& keyword);
    void ClearKeywords();
    std::vector<XMPKeywordData>::iterator KeywordListIteratorBegin() { return m_KeywordList.begin(); }
    std::vector<XMPKeywordData>::iterator KeywordListIteratorEnd() { return m_KeywordList.end(); }

    void debug_Dump() const;

private:
    // Turns markers it has read into marker report-backs.
    friend class collector::Walk;

    // What every form sets; the public constructors fill in the rest.
    KELTXMP_LOCAL XMPTemporalMetadataInfo(_infoFormEnum infoForm, const char* name, std::int64_t startTime,
                                          std::int64_t startTimeFrameRateNumerator,
                                          std::int64_t startTimeFrameRateDenominator, std::int64_t duration,
                                          std::int64_t durationFrameRateNumerator,
                                          std::int64_t durationFrameRateDenominator, std::shared_ptr<void> extension);

    _infoFormEnum m_infoForm;
    std::string m_name;
    std::string m_comment;
    std::string m_markerID;
    std::string m_reportedContainingInstanceID;
    std::string m_reportedTrackName;
    std::string m_reportedTrackType;
    std::int64_t m_startTime;
    std::int64_t m_startTimeFrameRateNumerator;
    std::int64_t m_startTimeFrameRateDenominator;
    std::int64_t m_duration;
    std::int64_t m_durationFrameRateNumerator;
    std::int64_t m_durationFrameRateDenominator;
    std::int64_t m_reportedClippedStartTime = 0;
    std::int64_t m_reportedClippedDuration = 0;
    std::string m_reportedPartMapping;
    std::string m_markerType;
    std::string m_location;
    std::string m_target;
    std::string m_cuePointType;
    std::vector<XMPCuePointParam> m_cuePointParamList;
    std::string m_speaker;
    std::string m_probability;
    std::shared_ptr<void> m_extension;
    std::string m_componentMetadataInstanceId;
    std::vector<XMPKeywordData> m_KeywordList;
};

// A record's form as the tool and the Python package name it: "marker",
// "report-back" or "component".
inline const char* CollectedFormName(XMPTemporalMetadataInfo::_infoFormEnum form) {
    switch (form) {
        case XMPTemporalMetadataInfo::kInfoForm_Marker:
            return "marker";
        case XMPTemporalMetadataInfo::kInfoForm_MarkerReportback:
            return "report-back";
        case XMPTemporalMetadataInfo::kInfoForm_ComponentMetadataReportback:
            return "component";
    }
    return "unknown";
}

// --- Tracks -------------------------------------------------------------------------

class KELTXMP_API XMPTrack {
public:
    // Markers by start time; equal starts keep the order they were added in.
    using MarkerMap = std::multimap<std::int64_t, XMPTemporalMetadataInfo>;

    explicit XMPTrack(std::int64_t frameRateNumerator = 1, std::int64_t frameRateDenominator = 1);
    XMPTrack(const char* trackName, std::int64_t frameRateNumerator, std::int64_t frameRateDenominator);
    XMPTrack(const char* trackName, const char* trackType, std::int64_t frameRateNumerator,
             std::int64_t frameRateDenominator);

    // Keyed by the marker's start time.
    void AddMarker(const XMPTemporalMetadataInfo& marker);
    // Placed as close before `hint` as the start time allows.
    void AddMarker(MarkerMap::const_iterator hint, const XMPTemporalMetadataInfo& marker);
    void AddMarker(MarkerMap::const_iterator hint, XMPTemporalMetadataInfo&& marker);
    void RemoveMarker(MarkerMap::const_iterator position);
    void ClearMarkers();
    const MarkerMap& GetMarkers() const { return m_markers; }
    MarkerMap::iterator MarkerListIteratorBegin() { return m_markers.begin(); }
    MarkerMap::iterator MarkerListIteratorEnd() { return m_markers.end(); }

    void GetTrackName(std::string* trackName) const;
    void GetTrackType(std::string* trackType) const;
    void SetTrackName(const char* trackName);
    void SetTrackType(const char* trackType);
    std::int64_t GetFrameRateNumerator() const { return m_FrameRateNumerator; }
    std::int64_t GetFrameRateDenominator() const { return m_FrameRateDenominator; }

    void debug_Dump() const;

private:
    std::string m_TrackName;
    std::string m_TrackType;
    std::int64_t m_FrameRateNumerator;
    std::int64_t m_FrameRateDenominator;
    MarkerMap m_markers;
};

}  // namespace keltemporalxmp
