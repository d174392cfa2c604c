#pragma once
// Both readers on one packet, their answers as text to compare: every field
// of every record, or the error raised. Shared by the differential fuzz
// target and the streaming reader's tests.

#include <algorithm>
#include <exception>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <keltemporalxmp/docops.hpp>
#include <keltemporalxmp/streamread.hpp>

namespace keltemporalxmp::fuzz {

struct Answer {
    bool handedOver = false;  // the streaming reader only
    std::string text;         // the records, or "error ...: " and the message
};

using Info = XMPTemporalMetadataInfo;

inline std::string ErrorText(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const XMP_Error& xmpError) {
        return "error " + std::to_string(xmpError.GetID()) + ": " + xmpError.GetErrMsg();
    } catch (const std::exception& exception) {
        return std::string("error: ") + exception.what();
    } catch (...) {
        return "error of an unknown type";
    }
}

// Every field of a marker or collected record, on one line.
inline void DescribeRecord(std::ostream& out, const Info& record) {
    out << record.GetInfoForm() << " " << record.GetStartTime() << " " << record.GetStartTimeFrameRateNumerator() << "/"
        << record.GetStartTimeFrameRateDenominator() << " " << record.GetDuration() << " "
        << record.GetDurationFrameRateNumerator() << "/" << record.GetDurationFrameRateDenominator() << " clipped "
        << record.GetReportedClippedStartTime() << " " << record.GetReportedClippedDuration();
    for (int field = Info::kInfoField_Name; field <= Info::kInfoField_MarkerID; ++field) {
        out << " [" << *record.GetMarkerFieldPtr(static_cast<Info::_infoFieldEnum>(field)) << "]";
    }
    for (const XMPCuePointParam& cuePoint : record.GetCuePointParamList()) {
        out << " " << *cuePoint.GetKeyPtr() << "=" << *cuePoint.GetValuePtr();
    }
    for (const XMPKeywordData& keyword : record.GetKeywords()) {
        out << " keyword " << keyword.id << " " << keyword.m_Name;
    }
    out << "\n";
}

inline std::string Describe(const std::vector<XMPTrack>& tracks) {
    std::ostringstream out;
    std::string text;
    for (const XMPTrack& track : tracks) {
        track.GetTrackName(&text);
        out << "track " << text;
        track.GetTrackType(&text);
        out << " type " << text << " rate " << track.GetFrameRateNumerator() << "/" << track.GetFrameRateDenominator()
            << "\n";
        for (const auto& [start, marker] : track.GetMarkers()) {
            out << " marker " << start << " ";
            DescribeRecord(out, marker);
        }
    }
    return out.str();
}

inline Answer ToolkitAnswer(std::string_view packet) {
    try {
        SXMPMeta meta(packet.data(), static_cast<XMP_StringLen>(packet.size()));
        XMPDocOpsTemporal document;
        document.OpenXMP(&meta, "");
        return {false, Describe({document.TrackListIteratorBegin(), document.TrackListIteratorEnd()})};
    } catch (...) {
        return {false, ErrorText(std::current_exception())};
    }
}

inline Answer StreamAnswer(std::string_view packet, std::size_t pieceBytes = 0) {
    try {
        PacketTrackReader reader;
        const std::size_t step = pieceBytes == 0 ? std::max<std::size_t>(packet.size(), 1) : pieceBytes;
        for (std::size_t offset = 0; offset < packet.size(); offset += step) {
            if (!reader.Feed(packet.substr(offset, step))) {
                return {true, ""};
            }
        }
        std::vector<XMPTrack> tracks;
        if (!reader.Finish(tracks)) {
            return {true, ""};
        }
        return {false, Describe(tracks)};
    } catch (...) {
        return {false, ErrorText(std::current_exception())};
    }
}

}  // namespace keltemporalxmp::fuzz
