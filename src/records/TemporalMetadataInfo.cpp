#include <keltemporalxmp/records.hpp>

#include <utility>

#include "timestrings/Arguments.hpp"
#include "timestrings/TickArithmetic.hpp"

namespace keltemporalxmp {
namespace {

constexpr const char* kConstructorName = "XMPTemporalMetadataInfo";

std::string Text(const char* text, const char* argument) {
    return RequiredText(text, kConstructorName, argument);
}

}  // namespace

XMPTemporalMetadataInfo::XMPTemporalMetadataInfo(const char* name, const char* comment, std::int64_t startTime,
                                                 std::int64_t duration, const char* markerType, const char* location,
                                                 const char* target, const char* cuePointType,
                                                 const std::vector<XMPCuePointParam>& cuePointParamList,
                                                 const char* speaker, const char* probability, const char* markerID,
                                                 std::shared_ptr<void> extension)
    : XMPTemporalMetadataInfo(name, comment, startTime, 0, 0, duration, 0, 0, markerType, location, target,
                              cuePointType, cuePointParamList, speaker, probability, markerID, std::move(extension)) {}

XMPTemporalMetadataInfo::XMPTemporalMetadataInfo(_infoFormEnum infoForm, const char* name, std::int64_t startTime,
                                                 std::int64_t startTimeFrameRateNumerator,
                                                 std::int64_t startTimeFrameRateDenominator, std::int64_t duration,
                                                 std::int64_t durationFrameRateNumerator,
                                                 std::int64_t durationFrameRateDenominator,
                                                 std::shared_ptr<void> extension)
    : m_infoForm(infoForm),
      m_name(Text(name, "name")),
      m_startTime(startTime),
      m_startTimeFrameRateNumerator(startTimeFrameRateNumerator),
      m_startTimeFrameRateDenominator(startTimeFrameRateDenominator),
      m_duration(duration),
      m_durationFrameRateNumerator(durationFrameRateNumerator),
      m_durationFrameRateDenominator(durationFrameRateDenominator),
      m_extension(std::move(extension)) {}

XMPTemporalMetadataInfo::XMPTemporalMetadataInfo(
    const char* name, const char* comment, std::int64_t startTime, std::int64_t startTimeFrameRateNumerator,
    std::int64_t startTimeFrameRateDenominator, std::int64_t duration, std::int64_t durationFrameRateNumerator,
    std::int64_t durationFrameRateDenominator, const char* markerType, const char* location, const char* target,
    const char* cuePointType, const std::vector<XMPCuePointParam>& cuePointParamList, const char* speaker,
    const char* probability, const char* markerID, std::shared_ptr<void> extension)
    : XMPTemporalMetadataInfo(kInfoForm_Marker, name, startTime, startTimeFrameRateNumerator,
                              startTimeFrameRateDenominator, duration, durationFrameRateNumerator,
                              durationFrameRateDenominator, std::move(extension)) {
    m_comment = Text(comment, "comment");
    m_markerType = Text(markerType, "marker type");
    m_location = Text(location, "location");
    m_target = Text(target, "target");
    m_cuePointType = Text(cuePointType, "cue point type");
    m_cuePointParamList = cuePointParamList;
    m_speaker = Text(speaker, "speaker");
    m_probability = Text(probability, "probability");
    m_markerID = markerID != nullptr ? markerID : "";
    // A marker given backwards is kept forwards; the note is the only trace of it.
    if (duration < 0) {
        m_startTime = timestrings::WrappingAdd(startTime, duration);
        m_duration = timestrings::WrappingNegate(duration);
        m_reportedPartMapping = "(debug:reversed)";
    }
}

XMPTemporalMetadataInfo::XMPTemporalMetadataInfo(
    const char* name, const char* reportedContainingInstanceID, std::int64_t startTime,
    std::int64_t startTimeFrameRateNumerator, std::int64_t startTimeFrameRateDenominator, std::int64_t duration,
    std::int64_t durationFrameRateNumerator, std::int64_t durationFrameRateDenominator,
    std::int64_t reportedClippedStartTime, std::int64_t reportedClippedDuration, const char* reportedPartMapping,
    const char* componentMetadataInstanceId, std::shared_ptr<void> extension)
    : XMPTemporalMetadataInfo(kInfoForm_ComponentMetadataReportback, name, startTime, startTimeFrameRateNumerator,
                              startTimeFrameRateDenominator, duration, durationFrameRateNumerator,
                              durationFrameRateDenominator, std::move(extension)) {
    m_reportedContainingInstanceID = Text(reportedContainingInstanceID, "reported containing instance ID");
    m_reportedClippedStartTime = reportedClippedStartTime;
    m_reportedClippedDuration = reportedClippedDuration;
    m_reportedPartMapping = Text(reportedPartMapping, "reported part mapping");
    m_componentMetadataInstanceId = Text(componentMetadataInstanceId, "component metadata instance ID");
}

const std::string* XMPTemporalMetadataInfo::GetMarkerFieldPtr(_infoFieldEnum field) const {
    switch (field) {
        case kInfoField_Name:
            return &m_name;
        case kInfoField_Comment:
            return &m_comment;
        case kInfoField_ReportedPartMapping:
            return &m_reportedPartMapping;
        case kInfoField_ReportedContainingInstanceID:
            return &m_reportedContainingInstanceID;
        case kInfoField_ReportedTrackName:
            return &m_reportedTrackName;
        case kInfoField_ReportedTrackType:
            return &m_reportedTrackType;
        case kInfoField_MarkerType:
            return &m_markerType;
        case kInfoField_Location:
            return &m_location;
        case kInfoField_Target:
            return &m_target;
        case kInfoField_CuePointType:
            return &m_cuePointType;
        case kInfoField_Speaker:
            return &m_speaker;
        case kInfoField_Probability:
            return &m_probability;
        case kInfoField_ComponentMetadataInstanceId:
            return &m_componentMetadataInstanceId;
        case kInfoField_MarkerID:
            return &m_markerID;
    }
    return nullptr;
}

void XMPTemporalMetadataInfo::GetMarkerField(std::string* value, _infoFieldEnum field) const {
    std::string& output = Required(value, "XMPTemporalMetadataInfo::GetMarkerField", "output string");
    const std::string* selected = GetMarkerFieldPtr(field);
    output = selected != nullptr ? *selected : std::string();
}

void XMPTemporalMetadataInfo::AddKeyword(const XMPKeywordData& keyword) {
    m_KeywordList.push_back(keyword);
}

void XMPTemporalMetadataInfo::ClearKeywords() {
    m_KeywordList.clear();
}

}  // namespace keltemporalxmp
