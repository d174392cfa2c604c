// Dumps of the value records: cue point parameters, keywords, markers, tracks.

#include <keltemporalxmp/records.hpp>

#include <cstdio>
#include <string_view>

#include "diagnostics/DumpFormat.hpp"

namespace keltemporalxmp {
namespace {

using diagnostics::DumpFrame;
using diagnostics::FieldLines;
using diagnostics::kFieldOffset;

constexpr int kCuePointColumn = 27;
constexpr int kMarkerColumn = 45;
constexpr int kTrackTextColumn = 45;
constexpr int kTrackRateColumn = 32;
constexpr int kKeywordColumn = 40;
constexpr int kTagDescriptionColumn = 43;

// Items of a marker's lists sit two further in than the list's heading.
constexpr int kMarkerListItemIndent = diagnostics::kMarkerIndent + 2 * kFieldOffset;

std::string_view InfoFormName(XMPTemporalMetadataInfo::_infoFormEnum form) {
    switch (form) {
        case XMPTemporalMetadataInfo::kInfoForm_Marker:
            return "kInfoForm_Marker";
        case XMPTemporalMetadataInfo::kInfoForm_MarkerReportback:
            return "kInfoForm_MarkerReportback";
        case XMPTemporalMetadataInfo::kInfoForm_ComponentMetadataReportback:
            return "kInfoForm_ComponentMetadataReportback";
    }
    return "? UNKNOWN ?";
}

// A marker's list, each item numbered under its label.
template <class Items>
void DumpMarkerListItems(const char* label, const Items& items) {
    for (std::size_t i = 0; i < items.size(); ++i) {
        diagnostics::PrintListItem(kMarkerListItemIndent, label, i + 1);
        items[i].debug_Dump();
    }
}

}  // namespace

void XMPCuePointParam::debug_Dump() const {
    const DumpFrame frame(diagnostics::kCuePointIndent, "XMPCuePointParam", "debug_Dump", DumpFrame::Style::kBareName);
    const FieldLines fields(diagnostics::kCuePointIndent + kFieldOffset, kCuePointColumn);
    fields.Text("m_key", m_key);
    fields.Text("m_value", m_value);
}

void XMPKELTagDescription::debug_Dump() const {
    const DumpFrame frame(diagnostics::kRecordIndent, "XMPKELTagDescription");
    const FieldLines fields(diagnostics::kRecordIndent + kFieldOffset, kTagDescriptionColumn);
    fields.Text("m_Payload", m_Payload);
    fields.Int32("m_ARGBColor", m_ARGBColor);
    fields.Int32("m_Index", m_Index);
}

void XMPKeywordExtension::debug_Dump() const {
    const DumpFrame frame(diagnostics::kRecordIndent, "XMPKeywordExtension");
    m_TagDescription.debug_Dump();
}

void XMPKeywordData::debug_Dump() const {
    const DumpFrame frame(diagnostics::kRecordIndent, "XMPKeywordData");
    const FieldLines fields(diagnostics::kRecordIndent + kFieldOffset, kKeywordColumn);
    fields.Text("m_Name", m_Name);
    fields.Heading("m_Extension");
    m_Extension.debug_Dump();
}

void XMPTemporalMetadataInfo::debug_Dump() const {
    const DumpFrame frame(diagnostics::kMarkerIndent, "XMPTemporalMetadataInfo");
    const FieldLines fields(diagnostics::kMarkerIndent + kFieldOffset, kMarkerColumn);
    fields.Enumerated("m_infoForm", m_infoForm, InfoFormName(m_infoForm));
    fields.Text("m_name", m_name);
    fields.Text("m_comment", m_comment);
    fields.Text("m_markerID", m_markerID);
    fields.Text("m_reportedContainingInstanceID", m_reportedContainingInstanceID);
    fields.Text("m_reportedTrackName", m_reportedTrackName);
    fields.Text("m_reportedTrackType", m_reportedTrackType);
    fields.Time("m_startTime", m_startTime);
    fields.Rate("m_startTimeFrameRateNumerator", m_startTimeFrameRateNumerator);
    fields.Rate("m_startTimeFrameRateDenominator", m_startTimeFrameRateDenominator);
    fields.Time("m_duration", m_duration);
    fields.Rate("m_durationFrameRateNumerator", m_durationFrameRateNumerator);
    fields.Rate("m_durationFrameRateDenominator", m_durationFrameRateDenominator);
    fields.Time("m_reportedClippedStartTime", m_reportedClippedStartTime);
    fields.Time("m_reportedClippedDuration", m_reportedClippedDuration);
    fields.Text("m_reportedPartMapping", m_reportedPartMapping);
    fields.Text("m_markerType", m_markerType);
    fields.Text("m_location", m_location);
    fields.Text("m_target", m_target);
    fields.Text("m_cuePointType", m_cuePointType);
    fields.Heading("m_cuePointParamList");
    DumpMarkerListItems("CuePoint", m_cuePointParamList);
    fields.Text("m_speaker", m_speaker);
    fields.Text("m_probability", m_probability);
    fields.Text("m_componentMetadataInstanceId", m_componentMetadataInstanceId);
    fields.Heading("m_KeywordList");
    DumpMarkerListItems("Keyword", m_KeywordList);
}

void XMPTrack::debug_Dump() const {
    const DumpFrame frame(diagnostics::kRecordIndent, "XMPTrack");
    const FieldLines textFields(diagnostics::kRecordIndent + kFieldOffset, kTrackTextColumn);
    const FieldLines rateFields(diagnostics::kRecordIndent + kFieldOffset, kTrackRateColumn);
    textFields.Text("m_TrackName", m_TrackName);
    textFields.Text("m_TrackType", m_TrackType);
    rateFields.Rate("m_FrameRateNumerator", m_FrameRateNumerator);
    rateFields.Rate("m_FrameRateDenominator", m_FrameRateDenominator);
    int number = 0;
    for (const auto& [startTime, marker] : m_markers) {
        diagnostics::PrintIndent(diagnostics::kRecordIndent + kFieldOffset);
        std::printf("Marker[%d] Key='%lld'", ++number, static_cast<long long>(startTime));
        diagnostics::PrintUnspecifiedSuffix(startTime);
        std::printf("\n");
        marker.debug_Dump();
    }
}

}  // namespace keltemporalxmp
