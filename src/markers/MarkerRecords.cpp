#include "markers/MarkerRecords.hpp"

#include <vector>

#include <kelcore/UTF.hpp>

#include "records/KeywordCuePoints.hpp"

namespace keltemporalxmp::markers {
namespace {

using Info = XMPTemporalMetadataInfo;

UTF16String WideField(const Info& record, Info::_infoFieldEnum field) {
    return kelcore::UTF8to16(*record.GetMarkerFieldPtr(field));
}

CustomMarkerParam WideCuePoint(const XMPCuePointParam& cuePoint) {
    return {kelcore::UTF8to16(*cuePoint.GetKeyPtr()), kelcore::UTF8to16(*cuePoint.GetValuePtr())};
}

}  // namespace

std::shared_ptr<Marker> MarkerFromRecord(const Info& record, const std::string& trackType) {
    auto marker = std::allocate_shared<Marker>(kelcore::STLAllocator<Marker>(),
                                               *record.GetMarkerFieldPtr(Info::kInfoField_MarkerID));
    marker->SetStartTime(kelmediatypes::TickTime(record.GetStartTime()));
    marker->SetDuration(kelmediatypes::TickTime(record.GetDuration()));
    const std::string& type = *record.GetMarkerFieldPtr(Info::kInfoField_MarkerType);
    marker->SetType(kelcore::UTF8to16(type.empty() ? trackType : type));
    marker->SetName(WideField(record, Info::kInfoField_Name));
    marker->SetComment(WideField(record, Info::kInfoField_Comment));
    marker->SetLocation(WideField(record, Info::kInfoField_Location));
    marker->SetTarget(WideField(record, Info::kInfoField_Target));
    marker->SetCuePointType(WideField(record, Info::kInfoField_CuePointType));
    marker->SetSpeaker(WideField(record, Info::kInfoField_Speaker));
    marker->SetProbability(WideField(record, Info::kInfoField_Probability));

    CustomMarkerParamList cuePoints;
    cuePoints.reserve(record.GetCuePointParamList().size() + record.GetKeywords().size());
    for (const XMPCuePointParam& cuePoint : record.GetCuePointParamList()) {
        cuePoints.push_back(WideCuePoint(cuePoint));
    }
    for (const XMPKeywordData& keyword : record.GetKeywords()) {
        cuePoints.push_back(WideCuePoint(KeywordToCuePoint(keyword)));
    }
    marker->SetCuePointList(cuePoints);
    return marker;
}

Info RecordFromMarker(const Marker& marker) {
    using kelcore::UTF16to8;
    std::vector<XMPCuePointParam> cuePoints;
    cuePoints.reserve(marker.GetCuePointList().size());
    for (const CustomMarkerParam& cuePoint : marker.GetCuePointList()) {
        cuePoints.emplace_back(UTF16to8(cuePoint.key).c_str(), UTF16to8(cuePoint.value).c_str());
    }
    return Info(UTF16to8(marker.GetName()).c_str(), UTF16to8(marker.GetComment()).c_str(),
                marker.GetStartTime().GetTicks(), marker.GetDuration().GetTicks(), "",
                UTF16to8(marker.GetLocation()).c_str(), UTF16to8(marker.GetTarget()).c_str(),
                UTF16to8(marker.GetCuePointType()).c_str(), cuePoints, UTF16to8(marker.GetSpeaker()).c_str(),
                UTF16to8(marker.GetProbability()).c_str(), marker.GetMarkerID().c_str(), marker.GetExtension());
}

}  // namespace keltemporalxmp::markers
