// Golden output of the record dumps: frames, indentation, the column of the
// opening quote, time fields with seconds and the unspecified-time marker.

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <limits>
#include <string>

#include <keltemporalxmp/records.hpp>

namespace keltemporalxmp {
namespace {

constexpr std::int64_t kUnspecified = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kOneSecond = 254016000000;

std::string Captured(const std::function<void()>& dump) {
    testing::internal::CaptureStdout();
    dump();
    return testing::internal::GetCapturedStdout();
}

XMPKeywordData Keyword(const char* name, const char* payload, std::int32_t color) {
    XMPKeywordExtension extension;
    extension.m_TagDescription.m_Payload = payload;
    extension.m_TagDescription.m_ARGBColor = color;
    return XMPKeywordData(name, extension);
}

const char* const kKeywordDump =
    "      [DEBUG keltemporalxmp::XMPKeywordData::debug_Dump()] Entering\n"
    "        m_Name=                         'Tag'\n"
    "        m_Extension:\n"
    "      [DEBUG keltemporalxmp::XMPKeywordExtension::debug_Dump()] Entering\n"
    "      [DEBUG keltemporalxmp::XMPKELTagDescription::debug_Dump()] Entering\n"
    "        m_Payload=                         'blue'\n"
    "        m_ARGBColor=                       '255'\n"
    "        m_Index=                           '0'\n"
    "      [DEBUG keltemporalxmp::XMPKELTagDescription::debug_Dump()] Exiting\n\n"
    "      [DEBUG keltemporalxmp::XMPKeywordExtension::debug_Dump()] Exiting\n\n"
    "      [DEBUG keltemporalxmp::XMPKeywordData::debug_Dump()] Exiting\n\n";

const char* const kCuePointDump =
    "                [DEBUG keltemporalxmp::XMPCuePointParam::debug_Dump] Entering\n"
    "                  m_key=   'speaker'\n"
    "                  m_value= 'Ann'\n"
    "                [DEBUG keltemporalxmp::XMPCuePointParam::debug_Dump] Exiting\n\n";

TEST(RecordDumps, MarkerPrintsEveryFieldTimesInSecondsAndItsLists) {
    XMPTemporalMetadataInfo marker("Intro", "first", kOneSecond, 25, 1, kUnspecified, kUnspecified, 1, "Chapter", "",
                                   "", "", {XMPCuePointParam("speaker", "Ann")}, "Ann", "0.5", "id-1", nullptr);
    marker.AddKeyword(Keyword("Tag", "blue", 255));
    const std::string expected =
        std::string(
            "          [DEBUG keltemporalxmp::XMPTemporalMetadataInfo::debug_Dump()] Entering\n"
            "            m_infoForm=                      '1' = 'kInfoForm_Marker'\n"
            "            m_name=                          'Intro'\n"
            "            m_comment=                       'first'\n"
            "            m_markerID=                      'id-1'\n"
            "            m_reportedContainingInstanceID=  ''\n"
            "            m_reportedTrackName=             ''\n"
            "            m_reportedTrackType=             ''\n"
            "            m_startTime=                     '   254016000000'='   1.000000000000000 secs'\n"
            "            m_startTimeFrameRateNumerator=   '25'\n"
            "            m_startTimeFrameRateDenominator= '1'\n"
            "            m_duration=                      "
            "'9223372036854775807'='36310201.077313147485256 secs'='TIME_UNSPECIFIED'\n"
            "            m_durationFrameRateNumerator=    '9223372036854775807'='TIME_UNSPECIFIED'\n"
            "            m_durationFrameRateDenominator=  '1'\n"
            "            m_reportedClippedStartTime=      '              0'='   0.000000000000000 secs'\n"
            "            m_reportedClippedDuration=       '              0'='   0.000000000000000 secs'\n"
            "            m_reportedPartMapping=           ''\n"
            "            m_markerType=                    'Chapter'\n"
            "            m_location=                      ''\n"
            "            m_target=                        ''\n"
            "            m_cuePointType=                  ''\n"
            "            m_cuePointParamList:\n"
            "              CuePoint[1]:\n") +
        kCuePointDump +
        "            m_speaker=                       'Ann'\n"
        "            m_probability=                   '0.5'\n"
        "            m_componentMetadataInstanceId=   ''\n"
        "            m_KeywordList:\n"
        "              Keyword[1]:\n" +
        kKeywordDump + "          [DEBUG keltemporalxmp::XMPTemporalMetadataInfo::debug_Dump()] Exiting\n\n";
    EXPECT_EQ(Captured([&] { marker.debug_Dump(); }), expected);
    // The nested records print the same on their own.
    EXPECT_EQ(Captured([] { XMPCuePointParam("speaker", "Ann").debug_Dump(); }), kCuePointDump);
    EXPECT_EQ(Captured([] { Keyword("Tag", "blue", 255).debug_Dump(); }), kKeywordDump);
}

TEST(RecordDumps, TrackAlignsRatesAtTheirOwnColumnAndKeysMarkersByStart) {
    XMPTrack track("Cuts", "Chapter", kUnspecified, 1);
    track.AddMarker(XMPTemporalMetadataInfo("late", "", kUnspecified, 0, "", "", "", "", {}, "", "", nullptr, nullptr));
    track.AddMarker(XMPTemporalMetadataInfo("early", "", kOneSecond, 0, "", "", "", "", {}, "", "", nullptr, nullptr));
    const std::string output = Captured([&] { track.debug_Dump(); });

    const std::string head =
        "      [DEBUG keltemporalxmp::XMPTrack::debug_Dump()] Entering\n"
        "        m_TrackName=                         'Cuts'\n"
        "        m_TrackType=                         'Chapter'\n"
        "        m_FrameRateNumerator=   '9223372036854775807'='TIME_UNSPECIFIED'\n"
        "        m_FrameRateDenominator= '1'\n"
        "        Marker[1] Key='254016000000'\n"
        "          [DEBUG keltemporalxmp::XMPTemporalMetadataInfo::debug_Dump()] Entering\n";
    EXPECT_EQ(output.substr(0, head.size()), head);
    EXPECT_NE(output.find("          [DEBUG keltemporalxmp::XMPTemporalMetadataInfo::debug_Dump()] Exiting\n\n"
                          "        Marker[2] Key='9223372036854775807'='TIME_UNSPECIFIED'\n"),
              std::string::npos);
    const std::string tail = "      [DEBUG keltemporalxmp::XMPTrack::debug_Dump()] Exiting\n\n";
    EXPECT_EQ(output.substr(output.size() - tail.size()), tail);
}

TEST(RecordDumps, EmptyListsPrintOnlyTheirHeadings) {
    const XMPTemporalMetadataInfo marker("", "", 0, 0, "", "", "", "", {}, "", "", nullptr, nullptr);
    const std::string output = Captured([&] { marker.debug_Dump(); });
    EXPECT_NE(output.find("            m_cuePointParamList:\n            m_speaker="), std::string::npos);
    EXPECT_NE(output.find("            m_KeywordList:\n          [DEBUG"), std::string::npos);
}

}  // namespace
}  // namespace keltemporalxmp
